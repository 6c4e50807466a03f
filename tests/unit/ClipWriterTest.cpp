// <audioClip> and <videoClip> of hand-built sessions, line by line.
#include <gtest/gtest.h>

#include "TestSupport.h"
#include "writer/DocumentWriter.h"

namespace morvanta::testing {
namespace {

SessionFile FileOf(std::int32_t id, const std::string& path, double length = 0, std::int32_t kind = 1) {
    SessionFile f;
    f.LengthSamples = length;
    f.FileId = id;
    f.Kind = kind;
    f.Path = path;
    return f;
}

Track TrackOf(std::int32_t id) {
    Track t;
    t.TrackId = id;
    return t;
}

struct Written {
    std::string Text;
    std::vector<Diagnostic> Warnings;
};

Written AudioClipsOf(Session& s, std::vector<std::int32_t> trackIds) {
    Written result;
    const ConvertOptions options;
    DocumentWriter w{s, options, result.Warnings, {}};
    for (std::int32_t id : trackIds) WriteAudioClips(w, TrackOf(id));
    ReportMoreClipsLeftOut(w);
    result.Text = w.out;
    return result;
}

std::vector<std::string> LinesStartingWith(const std::string& text, const std::string& start) {
    std::vector<std::string> found;
    for (const std::string& line : Lines(text))
        if (line.starts_with(start)) found.push_back(line);
    return found;
}

TEST(ClipWriter, AnAudioClipWithEverything) {
    Session s;
    s.SessionFiles = {FileOf(2000009, "C:\\a.wav"), FileOf(2000001, "C:\\b.wav", 88200)};
    s.Clips.push_back({.ClipId = 300000005, .FileId = 2000001, .SourceStart = 1000, .Start = 44100, .Length = 22050,
                       .TrackId = 10001, .TrackOrdinal = 1, .FileKind = 1, .Muted = 1, .Locked = 1, .Gain = 0.5,
                       .Hue = 112});
    s.ClipFades = {{300000005, 100, 19, 1, 50, 2, 0}};
    s.ClipPoints = {
        {300000005, 1, 0, 1.0, 10001},
        {300000005, 2, 10, 0.0, 10001},
        {300000005, 1, 500, 2.0, 10002},  // another track's point of the same id
        {300000006, 1, 600, 2.0, 10001},  // another clip's
        {300000005, 1, 11025, 0.5, 10001},
        {300000005, 0, 700, 2.0, 10001},  // its clip was not found
        {300000005, 1, 22050, 0.0, 10001},
        {300000005, 2, 20, 0.75, 10001},
    };
    s.ClipStretches = {{300000005, 44100}};
    const Written written = AudioClipsOf(s, {10001});
    EXPECT_TRUE(written.Warnings.empty());
    EXPECT_EQ(written.Text,
              R"(<audioClip clipAutoCrossfade="true" crossFadeHeadClipID="-1" crossFadeTailClipID="-1" endPoint="66150" fileID="1" hue="168" id="0" lockedInTime="true" looped="false" name="" offline="false" select="false" sourceInPoint="1000" sourceOutPoint="23050" startPoint="44100" zOrder="1">
<component componentID="Audition.Fader" id="clipGain" name="volume">
<parameter index="0" name="volume" parameterValue="0">
<parameterKeyframes enableSplines="false">
<parameterKeyframe sampleOffset="1000" select="false" type="linear" value="0.65000000"/>
<parameterKeyframe sampleOffset="12025" select="false" type="linear" value="0.47657951"/>
<parameterKeyframe sampleOffset="23050" select="false" type="linear" value="0.00000000"/>
</parameterKeyframes>
</parameter>
<parameter index="1" name="static gain" parameterValue=".5"/>
</component>
<component componentID="Audition.Mute" id="clipMute" name="Mute" powered="true">
<parameter index="0" parameterValue="0"/>
<parameter index="1" name="mute" parameterValue="1"/>
</component>
<component componentID="Audition.StereoPanner" id="clipPan" name="StereoPanner">
<parameter index="0" name="Pan" parameterValue="0">
<parameterKeyframes enableSplines="false">
<parameterKeyframe sampleOffset="1010" select="false" type="linear" value="0"/>
<parameterKeyframe sampleOffset="1020" select="false" type="linear" value=".75"/>
</parameterKeyframes>
</parameter>
</component>
<fadeIn crossFadeLinkType="linkedAsymmetric" endPoint="100" shape="19" startPoint="0" type="cosine"/>
<fadeOut crossFadeLinkType="linkedAsymmetric" endPoint="22050" shape="2" startPoint="22000" type="log"/>
<clipStretch adaptiveWindowSize="37" pitchAdjustment="0" preserveFormants="true" stretchMode="realtime" stretchQuality="high" stretchRatio="0.5" stretchType="solo" transientSensitivity="40"/></audioClip>
)");
}

TEST(ClipWriter, AClipWithoutPointsOrFadeRowHasEmptyKeyframesAndPlainFades) {
    Session s;
    s.SessionFiles = {FileOf(2000001, "b.wav")};
    s.Clips.push_back({.ClipId = 7, .FileId = 2000001, .Start = 0.5, .Length = 99.5, .TrackId = 3, .Gain = 1});
    EXPECT_EQ(AudioClipsOf(s, {3}).Text,
              R"(<audioClip clipAutoCrossfade="true" crossFadeHeadClipID="-1" crossFadeTailClipID="-1" endPoint="100" fileID="0" hue="0" id="0" lockedInTime="false" looped="false" name="" offline="false" select="false" sourceInPoint="0" sourceOutPoint="100" startPoint="1" zOrder="1">
<component componentID="Audition.Fader" id="clipGain" name="volume">
<parameter index="0" name="volume" parameterValue="0">
<parameterKeyframes enableSplines="false">
</parameterKeyframes>
</parameter>
<parameter index="1" name="static gain" parameterValue="1"/>
</component>
<component componentID="Audition.Mute" id="clipMute" name="Mute" powered="true">
<parameter index="0" parameterValue="0"/>
<parameter index="1" name="mute" parameterValue="0"/>
</component>
<component componentID="Audition.StereoPanner" id="clipPan" name="StereoPanner">
<parameter index="0" name="Pan" parameterValue="0">
<parameterKeyframes enableSplines="false">
</parameterKeyframes>
</parameter>
</component>
<fadeIn crossFadeLinkType="linkedAsymmetric" endPoint="0" shape="0" startPoint="0" type="log"/>
<fadeOut crossFadeLinkType="linkedAsymmetric" endPoint="100" shape="0" startPoint="100" type="log"/>
</audioClip>
)");
}

TEST(ClipWriter, IdsCountPerTrackZOrderOverTheListAndOnlyOverlapsAreMarked) {
    Session s;
    s.SessionFiles = {FileOf(2000001, "a.wav")};
    auto clip = [](std::int32_t id, std::int32_t track, double start, double length, std::int32_t hue = 0,
                   std::int32_t group = 0) {
        return Clip{.ClipId = id, .FileId = 2000001, .Start = start, .Length = length, .TrackId = track,
                    .Hue = hue, .GroupId = group};
    };
    s.Clips.push_back(clip(1, 10001, 0, 100, 1));          // overlaps the next
    s.Clips.push_back(clip(2, 10001, 50, 100, 40, 1));     // touches the next
    s.Clips.push_back(clip(3, 10001, 150, 100.4));         // ends at 250.4, "250"
    s.Clips.push_back(clip(4, 10001, 249.6, 10));          // starts at "250"; no fade row
    s.Clips.push_back(clip(5, 10001, 255, 10, 0, 1));      // overlapped by the clip before
    s.Clips.push_back(clip(6, 10002, 0, 500, 0, 1));       // another track: no mark from clip 5
    s.ClipFades = {{1, 0, 19, 0, 0, 19, 0}, {2, 0, 19, 0, 0, 19, 0}, {3, 0, 19, 0, 0, 19, 0},
                   {5, 0, 19, 0, 0, 19, 0}, {6, 0, 19, 0, 0, 19, 0}};
    const Written written = AudioClipsOf(s, {10002, 10001});
    const std::string common = R"(" lockedInTime="false" looped="false" name="" offline="false" select="false" sourceInPoint="0" sourceOutPoint=")";
    EXPECT_EQ(LinesStartingWith(written.Text, "<audioClip "),
              (std::vector<std::string>{
                  R"(<audioClip clipAutoCrossfade="true" crossFadeHeadClipID="-1" crossFadeTailClipID="-1" endPoint="500" fileID="0" hue="0" id="0)" + common + R"(500" startPoint="0" zOrder="6">)",
                  R"(<audioClip clipAutoCrossfade="true" crossFadeHeadClipID="-1" crossFadeTailClipID="1" endPoint="100" fileID="0" hue="1.5" id="0)" + common + R"(100" startPoint="0" zOrder="1">)",
                  R"(<audioClip clipAutoCrossfade="true" crossFadeHeadClipID="1" crossFadeTailClipID="-1" endPoint="150" fileID="0" hue="60" id="1)" + common + R"(100" startPoint="50" zOrder="2">)",
                  R"(<audioClip clipAutoCrossfade="true" crossFadeHeadClipID="-1" crossFadeTailClipID="-1" endPoint="250" fileID="0" hue="0" id="2)" + common + R"(100" startPoint="150" zOrder="3">)",
                  R"(<audioClip clipAutoCrossfade="true" crossFadeHeadClipID="-1" crossFadeTailClipID="-1" endPoint="260" fileID="0" hue="0" id="3)" + common + R"(10" startPoint="250" zOrder="4">)",
                  R"(<audioClip clipAutoCrossfade="true" crossFadeHeadClipID="1" crossFadeTailClipID="-1" endPoint="265" fileID="0" hue="0" id="4)" + common + R"(10" startPoint="255" zOrder="5">)",
              }));
    // A fade row gives shape 19, no row shape 0.
    EXPECT_EQ(LinesStartingWith(written.Text, "<fadeIn ")[4],
              R"(<fadeIn crossFadeLinkType="linkedAsymmetric" endPoint="0" shape="0" startPoint="0" type="log"/>)");
    EXPECT_EQ(LinesStartingWith(written.Text, "<fadeIn ")[5],
              R"(<fadeIn crossFadeLinkType="linkedAsymmetric" endPoint="0" shape="19" startPoint="0" type="log"/>)");
    // The group item number counts every clip of the track.
    EXPECT_EQ(s.Clips[2].GroupItemId, 1);
    EXPECT_EQ(s.Clips[5].GroupItemId, 4);
    EXPECT_EQ(s.Clips[6].GroupItemId, 0);
    EXPECT_EQ(s.Clips[1].GroupItemId, 0) << "no group, no item number";
}

TEST(ClipWriter, SeveralFadeRowsOfOneClipIdAreReadInListOrder) {
    Session s;
    s.SessionFiles = {FileOf(2000001, "a.wav")};
    // Two clips share the id; each reads all its rows.
    s.Clips.push_back({.ClipId = 7, .FileId = 2000001, .Length = 1000, .TrackId = 3});
    s.Clips.push_back({.ClipId = 7, .FileId = 2000001, .Start = 5000, .Length = 2000, .TrackId = 3});
    s.ClipFades = {
        {7, 100, 3, 1, 0, 4, 0},
        {8, 999, 1, 0, 999, 1, 0},  // another clip's
        {7, 0, 5, 0, 300, 6, 1},
        {7, 0, 9, 0, 0, 8, 0},
    };
    // The shapes are the last row's; a cosine type and a length above 0
    // stay from an earlier row.
    EXPECT_EQ(LinesStartingWith(AudioClipsOf(s, {3}).Text, "<fade"),
              (std::vector<std::string>{
                  R"(<fadeIn crossFadeLinkType="linkedAsymmetric" endPoint="100" shape="9" startPoint="0" type="cosine"/>)",
                  R"(<fadeOut crossFadeLinkType="linkedAsymmetric" endPoint="1000" shape="8" startPoint="700" type="cosine"/>)",
                  R"(<fadeIn crossFadeLinkType="linkedAsymmetric" endPoint="100" shape="9" startPoint="0" type="cosine"/>)",
                  R"(<fadeOut crossFadeLinkType="linkedAsymmetric" endPoint="2000" shape="8" startPoint="1700" type="cosine"/>)"}));
}

TEST(ClipWriter, LoopedClipsAndStretchedClips) {
    Session s;
    s.SessionFiles = {FileOf(2000001, "a.wav")};  // no length known
    s.Clips.push_back({.ClipId = 1, .FileId = 2000001, .Length = 10, .TrackId = 1, .Looped = 1});
    s.Clips.push_back({.ClipId = 2, .FileId = 2000001, .Start = 20, .Length = 10, .TrackId = 1});
    s.Clips.push_back({.ClipId = 3, .FileId = 2000001, .Start = 40, .Length = 10, .TrackId = 1, .Looped = 1});
    s.ClipStretches = {{1, 500}, {2, 300}, {2, 900}};
    const std::string text = AudioClipsOf(s, {1}).Text;
    std::vector<std::string> looped;
    for (const std::string& line : LinesStartingWith(text, "<audioClip "))
        looped.push_back(line.substr(line.find("looped="), 14));
    EXPECT_EQ(looped, (std::vector<std::string>{R"(looped="true" )", R"(looped="false")", R"(looped="false")"}));
    // Only the clip that has a stretch record and is not looped is stretched,
    // by its first record; without a file length the ratio is 1.
    const auto lines = Lines(text);
    std::vector<std::string> closing;
    for (const std::string& line : lines)
        if (line.ends_with("</audioClip>")) closing.push_back(line);
    EXPECT_EQ(closing,
              (std::vector<std::string>{
                  "</audioClip>",
                  R"(<clipStretch adaptiveWindowSize="37" pitchAdjustment="0" preserveFormants="true" stretchMode="realtime" stretchQuality="high" stretchRatio="1" stretchType="solo" transientSensitivity="40"/></audioClip>)",
                  "</audioClip>"}));
}

TEST(ClipWriter, AClipWhoseFileIsNotListedIsLeftOutWithAWarning) {
    Session s;
    s.SessionFiles = {FileOf(2000001, "a.wav")};
    s.Clips.push_back({.ClipId = 300000004, .FileId = 2000002, .Start = 44100, .TrackId = 10001, .GroupId = 2});
    s.Clips.push_back({.ClipId = 300000005, .FileId = 2000001, .Start = 88200, .TrackId = 10001});
    const Written written = AudioClipsOf(s, {10001});
    const auto opening = LinesStartingWith(written.Text, "<audioClip ");
    ASSERT_EQ(opening.size(), 1u);
    EXPECT_NE(opening[0].find(R"( id="0" )"), std::string::npos) << "the left-out clip took no id";
    EXPECT_NE(opening[0].find(R"( zOrder="2">)"), std::string::npos);
    EXPECT_EQ(written.Text.find("44100"), std::string::npos);
    ASSERT_EQ(written.Warnings.size(), 1u);
    EXPECT_EQ(written.Warnings[0].Message,
              "audio clip 300000004 on track 10001 at sample 44100 refers to file 2000002, which the session does "
              "not list: the clip is left out");
    EXPECT_EQ(s.Clips[1].GroupItemId, kClipLeftOut);
}

TEST(ClipWriter, PastAHundredLeftOutClipsAreOnlyCounted) {
    Session s;
    for (int i = 0; i < 102; ++i)
        s.Clips.push_back({.ClipId = 300000000 + i, .FileId = 2000002, .Start = 100.0 * i, .TrackId = 10001});
    const Written written = AudioClipsOf(s, {10001});
    EXPECT_EQ(written.Text, "");
    ASSERT_EQ(written.Warnings.size(), 101u);
    EXPECT_EQ(written.Warnings[99].Message,
              "audio clip 300000099 on track 10001 at sample 9900 refers to file 2000002, which the session does "
              "not list: the clip is left out");
    EXPECT_EQ(written.Warnings[100].Message,
              "2 more clips refer to files that the session does not list: they are left out");
}

TEST(ClipWriter, VideoClipsSayWhetherTheirFileIsHere) {
    TempDir dir;
    WriteFile(dir / "here.avi", std::string("video"));
    const std::string herePath = (dir / "here.avi").string();
    Session s;
    s.SessionFiles = {FileOf(2000001, "C:\\Video\\away.avi", 0, 3), FileOf(2000002, herePath + "  ", 0, 3)};
    s.Clips.push_back({.ClipId = 82847048, .FileId = 2000001, .SourceStart = 10, .Start = 100, .Length = 50,
                       .TrackId = 490000, .FileKind = 3, .Locked = 1});
    s.Clips.push_back({.ClipId = 82847048, .FileId = 2000002, .SourceStart = 10, .Start = 200, .Length = 50,
                       .TrackId = 490000, .FileKind = 3});
    s.Clips.push_back({.ClipId = 82847048, .FileId = 2000003, .Start = 300, .TrackId = 490000, .FileKind = 3});
    std::vector<Diagnostic> warnings;
    const ConvertOptions options;
    DocumentWriter w{s, options, warnings, {}};
    WriteVideoClips(w, TrackOf(490000));
    EXPECT_EQ(w.out,
              R"(<videoClip endPoint="-1" fileID="0" hue="-1" id="0" lockedInTime="true" name="away.avi" offline="false" select="false" sourceInPoint="10" sourceOutPoint="-1" startPoint="100" zOrder="0">
<videoFormat />
</videoClip>
<videoClip endPoint="-1" fileID="1" hue="-1" id="0" lockedInTime="false" name="here.avi" offline="false" select="false" sourceInPoint="10" sourceOutPoint="60" startPoint="200" zOrder="0">
<videoFormat />
</videoClip>
)");
    ASSERT_EQ(warnings.size(), 1u);
    EXPECT_EQ(warnings[0].Message,
              "video clip 82847048 on track 490000 at sample 300 refers to file 2000003, which the session does not "
              "list: the clip is left out");
}

}  // namespace
}  // namespace morvanta::testing
