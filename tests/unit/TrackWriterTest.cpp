// The track elements of the document: the loop, each element's attributes
// and routing, the keyframe rule, the EQ values and the send slots.
#include <gtest/gtest.h>

#include <algorithm>

#include "TestSupport.h"
#include "writer/ExportSesx.h"

namespace morvanta::testing {
namespace {

Track MakeTrack(std::int32_t id, std::int32_t ordinal, const std::string& name) {
    Track t;
    t.TrackId = id;
    t.TrackOrdinal = ordinal;
    t.TrackName = name;
    t.Volume = 1;
    t.TrackHeight = 66;
    t.AutomationMode = 1;
    return t;
}

Strings Write(Session& session) {
    std::vector<Diagnostic> warnings;
    return Lines(ExportSesxFile(session, {}, "t.sesx", warnings));
}

// The lines from the first one that holds `mark`, after `skip` others, to
// the first `end` line behind it.
Strings Block(const Strings& lines, const std::string& mark, const std::string& end, std::size_t skip = 0) {
    Strings block;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (lines[i].find(mark) == std::string::npos) continue;
        if (skip-- > 0) continue;
        for (std::size_t j = i; j < lines.size(); ++j) {
            block.push_back(lines[j]);
            if (lines[j] == end) return block;
        }
    }
    return block;
}

// The elements, their parameters and their routing; the children in
// between are pinned by the golden documents.
TEST(TrackWriter, ElementsTheirAttributesAndTheirRouting) {
    Session session;
    Track master = MakeTrack(10000, 1, "Master");
    master.TrackHeight = 130;
    Track video = MakeTrack(490000, 1, " Film ");
    video.TrackHeight = 118;
    Track audio = MakeTrack(1, 2, "A & B <c>");
    audio.AutomationMode = 0;
    audio.PhaseInverted = 1;
    Track bus = MakeTrack(10004, 3, "Bus");
    bus.BusId = 20001;
    bus.AutomationMode = 2;
    bus.Soloed = 1;
    bus.TrackHeight = 0;
    Track sameBus = MakeTrack(10005, 4, "Same bus");
    sameBus.BusId = 20001;
    Track fed = MakeTrack(2, 5, "Fed");
    fed.OutputBusId = 20001;
    fed.AutomationMode = 7;
    Track unknownBus = MakeTrack(3, 6, "Unknown bus");
    unknownBus.OutputBusId = 20009;
    Track secondMaster = MakeTrack(10000, 7, "Dropped");
    session.Tracks = {master, video, audio, bus, sameBus, fed, unknownBus, secondMaster};

    const Strings lines = Write(session);
    Strings written;
    const auto end = std::find(lines.begin(), lines.end(), "</tracks>");
    for (auto line = std::find(lines.begin(), end, "<tracks>"); line != end; ++line)
        for (const char* start : {"<audioTrack", "<busTrack", "<masterTrack", "<videoTrack", "<trackParameters",
                                  "<name>", "<trackAudioParameters", "<trackOutput", "<trackInput"})
            if (line->starts_with(start)) written.push_back(*line);
    auto open = [](const std::string& element, const std::string& id, const std::string& index, const std::string& phase,
                   const std::string& solo) {
        return "<" + element + R"( automationLaneOpenState="false" id=")" + id + R"(" index=")" + index +
               R"(" phaseInverted=")" + phase + R"(" select="false" solo=")" + solo + R"(" soloSafe="false">)";
    };
    auto rest = [](const std::string& height, const std::string& name, const std::string& mode,
                   const std::string& solo, const std::string& output, const std::string& input) {
        return Strings{R"(<trackParameters trackHeight=")" + height + R"(">)", "<name>" + name + "</name>",
                       R"(<trackAudioParameters audioChannelType="stereo" automationMode=")" + mode +
                           R"(" monitoring="false" recordArmed="false" solo=")" + solo + R"(" soloSafe="false">)",
                       R"(<trackOutput outputID=")" + output + R"(" type="trackID"/>)",
                       R"(<trackInput inputID=")" + input + R"("/>)"};
    };
    Strings expected{R"(<videoTrack id="0" select="false">)", R"(<trackParameters trackHeight="118">)",
                     "<name>Film</name>"};
    auto add = [&](const std::string& opening, const Strings& more) {
        expected.push_back(opening);
        expected.insert(expected.end(), more.begin(), more.end());
    };
    add(open("audioTrack", "1", "0", "true", "false"), rest("66", "A &amp; B <c>", "0", "false", "10000", "1"));
    add(open("busTrack", "10004", "1", "false", "true"), rest("0", "Bus", "1", "true", "10000", "-1"));
    add(open("busTrack", "10005", "2", "false", "false"), rest("66", "Same bus", "1", "false", "10000", "-1"));
    // The last bus track with the number counts; an unknown bus is the master.
    add(open("audioTrack", "2", "3", "false", "false"), rest("66", "Fed", "1", "false", "10005", "1"));
    add(open("audioTrack", "3", "4", "false", "false"), rest("66", "Unknown bus", "1", "false", "10000", "1"));
    // The session's own master comes last, once, at height 48.
    add(R"(<masterTrack automationLaneOpenState="true" id="10000" index="5" select="false">)",
        rest("48", "Master", "1", "false", "10000", "1"));
    EXPECT_EQ(written, expected);
}

TEST(TrackWriter, KeyframesOnlyForMoreThanTwoPointsOrTwoThatDiffer) {
    struct Case {
        std::vector<double> Volume;
        Strings Expected;
    };
    const std::string first = R"(<parameter index="0" name="volume" parameterValue=")";
    const std::string keyframe = R"(<parameterKeyframe sampleOffset=")";
    const std::vector<Case> cases{
        {{}, {first + R"(.9">)"}},
        {{0.5}, {first + R"(.5">)"}},
        {{0.5, 0.5}, {first + R"(.5">)"}},
        {{1.0, 0.5},
         {first + R"(.5">)", R"(<parameterKeyframes enableSplines="false">)",
          keyframe + R"(0" select="false" type="linear" value=".65"/>)",
          keyframe + R"(10" select="false" type="linear" value=".476579506619273"/>)", "</parameterKeyframes>"}},
        {{1.0, 1.0, 1.0},
         {first + R"(1">)", R"(<parameterKeyframes enableSplines="false">)",
          keyframe + R"(0" select="false" type="linear" value=".65"/>)",
          keyframe + R"(10" select="false" type="linear" value=".65"/>)",
          keyframe + R"(20" select="false" type="linear" value=".65"/>)", "</parameterKeyframes>"}},
    };
    for (const Case& c : cases) {
        Session session;
        Track track = MakeTrack(1, 1, "T");
        track.Volume = 0.9;
        session.Tracks = {track, MakeTrack(2, 2, "Other")};
        for (std::size_t i = 0; i < c.Volume.size(); ++i) {
            session.TrackVolumePoints.push_back({1, static_cast<std::int32_t>(10 * i), c.Volume[i]});
            session.TrackVolumePoints.push_back({2, 5, 0.1});  // another track's points are not selected
        }
        Strings expected{R"(<component componentID="Audition.Fader" id="trackFader" name="volume" powered="true">)"};
        expected.insert(expected.end(), c.Expected.begin(), c.Expected.end());
        expected.insert(expected.end(), {"</parameter>", R"(<parameter index="1" name="static gain" parameterValue="1"/>)",
                                         "</component>"});
        EXPECT_EQ(Block(Write(session), R"(id="trackFader")", "</component>"), expected) << c.Volume.size();
    }
}

// A record that is off still gives its values, at the session's rate; the
// ends of the frequency range and the smallest and largest Q.
TEST(TrackWriter, AnEqRecordThatIsOffStillGivesItsValues) {
    Session session;
    session.SampleRate = 44100;
    session.Tracks = {MakeTrack(5, 2, "By ordinal")};
    session.TrackEqs = {{.TrackKey = 2, .LowFrequency = 1000, .LowGain = 0, .HighFrequency = 22050, .HighGain = 3,
                         .MidFrequency = 20, .MidGain = -12, .MidQ = 25000, .LowQ = 150, .HighQ = 1, .EqEnabled = 0}};
    const Strings found = Block(Write(session), R"(id="trackEQ")", "</component>");
    ASSERT_EQ(found.size(), 46u);
    Strings computed{found[0]};
    for (std::size_t index : {4u, 5u, 6u, 7u, 11u, 12u, 13u, 14u, 19u, 20u, 21u, 22u, 29u, 30u})
        computed.push_back(found[index + 1]);
    EXPECT_EQ(computed,
              (Strings{R"(<component componentID="Audition.EQ" id="trackEQ" name="EQ" powered="false">)",
                       R"x(<parameter index="4" name="EQ Band 1 (Center Frequency)" parameterValue="0.0444848"/>)x",
                       R"x(<parameter index="5" name="EQ Band 1 (Q)" parameterValue=".015"/>)x",
                       R"x(<parameter index="6" name="EQ Band 1 (Gain)" parameterValue="0.5000000"/>)x",
                       R"(<parameter index="7" name="EQ Band 1 Enable" parameterValue="1"/>)",
                       R"(<parameter index="11" name="EQ Band 2 Enable" parameterValue="0"/>)",
                       R"x(<parameter index="12" name="EQ Band 3 (Center Frequency)" parameterValue="0.0000000"/>)x",
                       R"x(<parameter index="13" name="EQ Band 3 (Q)" parameterValue="2.5"/>)x",
                       R"x(<parameter index="14" name="EQ Band 3 (Gain)" parameterValue="0.3000000"/>)x",
                       R"(<parameter index="19" name="EQ Band 4 Enable" parameterValue="0"/>)",
                       R"x(<parameter index="20" name="EQ Band 5 (Center Frequency)" parameterValue="1.0000000"/>)x",
                       R"x(<parameter index="21" name="EQ Band 5 (Q)" parameterValue=".0001"/>)x",
                       R"x(<parameter index="22" name="EQ Band 5 (Gain)" parameterValue=".55"/>)x",
                       R"(<parameter index="29" name="Low Shelf Enable" parameterValue="0"/>)",
                       R"(<parameter index="30" name="High Shelf Enable" parameterValue="0"/>)"}));
}

TEST(TrackWriter, TheFirstEqRecordThatNamesATrackEitherWayCounts) {
    Session session;
    session.SampleRate = 44100;
    // The key 2 is the ordinal of the first track and the id of the second,
    // the key 3 the other way round.
    session.Tracks = {MakeTrack(3, 2, "First"), MakeTrack(2, 3, "Second")};
    session.TrackEqs = {{.TrackKey = 2, .EqEnabled = 1}, {.TrackKey = 3, .EqEnabled = 0}};
    const Strings lines = Write(session);
    const std::string on = R"(<component componentID="Audition.EQ" id="trackEQ" name="EQ" powered="true">)";
    EXPECT_EQ(Block(lines, R"(id="trackEQ")", "</component>", 0)[0], on) << "by ordinal, before the id's record";
    EXPECT_EQ(Block(lines, R"(id="trackEQ")", "</component>", 1)[0], on) << "by id, before the ordinal's record";
}

TEST(TrackWriter, TracksThatShareAnIdShareTheirPointsAndTheirFirstSendRecord) {
    Session session;
    Track bus = MakeTrack(10004, 3, "Bus");
    bus.BusId = 20001;
    session.Tracks = {MakeTrack(1, 1, "One"), MakeTrack(1, 2, "One again"), bus};
    session.TrackVolumePoints = {{1, 0, 1.0}, {2, 5, 0.1}, {1, 10, 0.5}, {1, 20, 1.0}};
    TrackSend first;
    first.TrackId = 1;
    first.Slots[0] = {20001, 0.5, 0, 0};
    TrackSend second = first;
    second.Slots[0] = {0, 0.75, 0, 1};
    session.TrackSends = {first, second};
    const Strings lines = Write(session);
    const std::string keyframe = R"(<parameterKeyframe sampleOffset=")";
    const Strings volume{R"(<component componentID="Audition.Fader" id="trackFader" name="volume" powered="true">)",
                         R"(<parameter index="0" name="volume" parameterValue="1">)",
                         R"(<parameterKeyframes enableSplines="false">)",
                         keyframe + R"(0" select="false" type="linear" value=".65"/>)",
                         keyframe + R"(10" select="false" type="linear" value=".476579506619273"/>)",
                         keyframe + R"(20" select="false" type="linear" value=".65"/>)",
                         "</parameterKeyframes>",
                         "</parameter>",
                         R"(<parameter index="1" name="static gain" parameterValue="1"/>)",
                         "</component>"};
    EXPECT_EQ(Block(lines, R"(id="trackFader")", "</component>", 0), volume);
    EXPECT_EQ(Block(lines, R"(id="trackFader")", "</component>", 1), volume);
    const std::string slot = R"(<sendSlot preFader="false" sendOutputID="10004" slotIndex="0">)";
    EXPECT_EQ(Block(lines, R"(slotIndex="0")", "</sendSlot>", 0)[0], slot);
    EXPECT_EQ(Block(lines, R"(slotIndex="0")", "</sendSlot>", 1)[0], slot);
}

TEST(TrackWriter, SendSlotsFindTheirBusAndTheirOwnPoints) {
    Session session;
    Track bus = MakeTrack(10004, 2, "Bus");
    bus.BusId = 20001;
    Track sameBus = MakeTrack(10005, 3, "Same bus");
    sameBus.BusId = 20001;
    session.Tracks = {MakeTrack(1, 1, "Sender"), bus, sameBus};
    TrackSend sends;
    sends.TrackId = 1;
    sends.Slots[0] = {20001, 0.5, 25, 1};
    sends.Slots[3] = {20009, 0.25, 0, 0};
    session.TrackSends = {sends};
    session.SendAutomation = {{1, 0, 1.0, 0, "Level"},        {1, 0, 1.0, 0, "Power On/Off"},
                              {1, 40, 0.5, 0, "Level "},      {1, 0, 0.25, 3, "Pan"},
                              {1, 50, 0.75, 3, "Pan"},        {2, 0, 0.1, 3, "Pan"},
                              {1, 60, 0.5, 3, "pan"}};
    const Strings lines = Write(session);
    const std::string keyframe = R"(<parameterKeyframe sampleOffset=")";

    // The first bus track with the number; one power point gives "1" and
    // no keyframes; the level stays the slot's own.
    EXPECT_EQ(Block(lines, R"(slotIndex="0")", "</sendSlot>"),
              (Strings{R"(<sendSlot preFader="true" sendOutputID="10004" slotIndex="0">)",
                       R"(<component id="sendComponent" powered="true">)",
                       R"(<parameter index="0" name="Power On/Off" parameterValue="1">)", "</parameter>",
                       R"(<parameter index="1" name="Level" parameterValue=".5">)",
                       R"(<parameterKeyframes enableSplines="false">)",
                       keyframe + R"(0" select="false" type="linear" value=".65"/>)",
                       keyframe + R"(40" select="false" type="linear" value=".476579506619273"/>)",
                       "</parameterKeyframes>", "</parameter>", "</component>",
                       R"(<component componentID="Audition.StereoPanner" id="sendPan" name="StereoPanner" powered="true">)",
                       R"(<parameter index="0" name="Pan" parameterValue="25">)", "</parameter>", "</component>",
                       "</sendSlot>"}));
    // An unknown bus keeps its number; the pan points are this slot's.
    const Strings slot3 = Block(lines, R"(slotIndex="3")", "</sendSlot>");
    ASSERT_EQ(slot3.size(), 16u);
    EXPECT_EQ(slot3[0], R"(<sendSlot preFader="false" sendOutputID="20009" slotIndex="3">)");
    EXPECT_EQ(Strings(slot3.begin() + 7, slot3.end()),
              (Strings{R"(<component componentID="Audition.StereoPanner" id="sendPan" name="StereoPanner" powered="true">)",
                       R"(<parameter index="0" name="Pan" parameterValue="0">)",
                       R"(<parameterKeyframes enableSplines="false">)",
                       keyframe + R"(0" select="false" type="linear" value=".25"/>)",
                       keyframe + R"(50" select="false" type="linear" value=".75"/>)", "</parameterKeyframes>",
                       "</parameter>", "</component>", "</sendSlot>"}));
}

TEST(TrackWriter, TheImplicitMasterIsSoloedWhenAnyTrackIs) {
    Session session;
    Track soloed = MakeTrack(1, 1, "Solo");
    soloed.Soloed = 1;
    session.Tracks = {soloed, MakeTrack(2, 2, "Plain")};
    const Strings master = Block(Write(session), "<masterTrack", "</masterTrack>");
    ASSERT_GE(master.size(), 7u);
    EXPECT_EQ(master[6], R"(<trackAudioParameters audioChannelType="stereo" automationMode="1" monitoring="false" )"
                         R"(recordArmed="false" solo="true" soloSafe="false">)");
}

}  // namespace
}  // namespace morvanta::testing
