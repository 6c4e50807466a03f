// <audioClip>, <videoClip> and <clipGroups> of hand-built sessions, compared whole.
#include <gtest/gtest.h>

#include "TestSupport.h"
#include "writer/DocumentWriter.h"

namespace morvanta::testing {
namespace {

SessionFile FileOf(std::int32_t id, const std::string& path, double length = 0, std::int32_t kind = 1) {
    return {.LengthSamples = length, .FileId = id, .Kind = kind, .Path = path};
}

Track TrackOf(std::int32_t id) { return {.TrackId = id, .TrackName = {}}; }

struct Written {
    std::string Text;
    std::vector<Diagnostic> Warnings;
    std::vector<std::int32_t> GroupItemIds;

    // The text and a line for each warning, for a golden file.
    std::string WithWarnings() const {
        std::string text = Text;
        for (const Diagnostic& warning : Warnings) text += "warning: " + warning.Message + "\n";
        return text;
    }
};

Written AudioClipsOf(Session& s, std::vector<std::int32_t> trackIds) {
    Written result;
    const ConvertOptions options;
    DocumentWriter w(s, options, result.Warnings);
    for (std::int32_t id : trackIds) WriteAudioClips(w, TrackOf(id));
    ReportMoreClipsLeftOut(w);
    result.Text = w.out;
    result.GroupItemIds = w.GroupItemIds;
    return result;
}

// The points of this clip on this track, by kind, counted from the clip's
// start in the file; the stretch by the file's length.
TEST(ClipWriter, AnAudioClipTakesItsOwnPointsAndItsStretch) {
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
    ExpectGolden("audio-clip-points-and-stretch.txt", written.Text);
}

// Without a fade row a clip has shape 0 and its fade-out at its end; a row
// gives its shapes.
TEST(ClipWriter, IdsCountPerTrackZOrderOverTheListAndOnlyOverlapsAreMarked) {
    Session s;
    s.SessionFiles = {FileOf(2000001, "a.wav")};
    auto clip = [](std::int32_t id, std::int32_t track, double start, double length, std::int32_t hue = 0,
                   std::int32_t group = 0) {
        return Clip{.ClipId = id, .FileId = 2000001, .Start = start, .Length = length, .TrackId = track,
                    .TrackOrdinal = track - 10000, .Hue = hue, .GroupId = group};
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
    ExpectGolden("audio-clip-ids-and-overlaps.txt", written.Text);
    // The group item number counts every clip of the track.
    EXPECT_EQ(written.GroupItemIds[2], 1);
    EXPECT_EQ(written.GroupItemIds[5], 4);
    EXPECT_EQ(written.GroupItemIds[6], 0);
    EXPECT_EQ(written.GroupItemIds[1], 0) << "no group, no item number";
}

// The shapes are the last row's; a cosine type and a length above 0 stay
// from an earlier row.
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
    ExpectGolden("several-fade-rows.txt", AudioClipsOf(s, {3}).Text);
}

// Only the clip that has a stretch record and is not looped is stretched,
// by its first record; without a file length the ratio is 1.
TEST(ClipWriter, LoopedClipsAndStretchedClips) {
    Session s;
    s.SessionFiles = {FileOf(2000001, "a.wav")};  // no length known
    s.Clips.push_back({.ClipId = 1, .FileId = 2000001, .Length = 10, .TrackId = 1, .Looped = 1});
    s.Clips.push_back({.ClipId = 2, .FileId = 2000001, .Start = 20, .Length = 10, .TrackId = 1});
    s.Clips.push_back({.ClipId = 3, .FileId = 2000001, .Start = 40, .Length = 10, .TrackId = 1, .Looped = 1});
    s.ClipStretches = {{1, 500}, {2, 300}, {2, 900}};
    ExpectGolden("looped-and-stretched-clips.txt", AudioClipsOf(s, {1}).Text);
}

// The clip left out takes no id; the next keeps its place in the list.
TEST(ClipWriter, AClipWhoseFileIsNotListedIsLeftOutWithAWarning) {
    Session s;
    s.SessionFiles = {FileOf(2000001, "a.wav")};
    s.Clips.push_back({.ClipId = 300000004, .FileId = 2000002, .Start = 44100, .TrackId = 10001, .GroupId = 2});
    s.Clips.push_back({.ClipId = 300000005, .FileId = 2000001, .Start = 88200, .TrackId = 10001});
    const Written written = AudioClipsOf(s, {10001});
    ExpectGolden("audio-clip-left-out.txt", written.WithWarnings());
    EXPECT_EQ(written.GroupItemIds[1], kClipLeftOut);
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
    Written written;
    const ConvertOptions options;
    DocumentWriter w(s, options, written.Warnings);
    WriteVideoClips(w, TrackOf(490000));
    written.Text = w.out;
    ExpectGolden("video-clips.txt", written.WithWarnings());
}

// <clipGroups> lists the items the clip writer numbered.
TEST(ClipWriter, GroupsListTheItemsTheClipWriterNumbered) {
    Session s;
    s.SessionFiles = {FileOf(2000001, "a.wav")};
    auto clip = [](std::int32_t id, std::int32_t track, std::int32_t group, std::int32_t fileId = 2000001) {
        return Clip{.ClipId = id, .FileId = fileId, .Start = 10.0 * id, .TrackId = track, .GroupId = group};
    };
    s.Clips.push_back(clip(1, 10001, 1));
    s.Clips.push_back(clip(2, 10001, 2));
    s.Clips.push_back(clip(3, 10001, 1, 2000009));  // its file is not listed: left out, no item
    s.Clips.push_back(clip(4, 10002, 1));
    s.Clips.push_back(clip(5, 10001, 0));
    s.Clips.push_back(clip(6, 10001, 2));
    // Hues 1, 3 and 239 are 1.5, 4.5 and 358.5 degrees: halves go to the even neighbour.
    s.ClipGroups = {{1, 1}, {3, 2}, {239, 3}, {0, 0}};

    std::vector<Diagnostic> warnings;
    const ConvertOptions options;
    DocumentWriter w(s, options, warnings);
    for (std::int32_t id : {10001, 10002}) WriteAudioClips(w, TrackOf(id));
    w.out.clear();
    WriteClipGroups(w);
    ExpectGolden("clip-groups.txt", w.out);
}

}  // namespace
}  // namespace morvanta::testing
