// The track elements of the document: the loop, each element's attributes,
// the fader, mute and pan components with their keyframes, the EQ search
// and the send list.
#include <gtest/gtest.h>

#include <algorithm>

#include "TestSupport.h"
#include "writer/ExportSesx.h"

namespace morvanta::testing {
namespace {

using Strings = std::vector<std::string>;

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

// The lines from the first one that holds `mark` to the first `end` line
// behind it.
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

bool StartsWithAny(const std::string& line, const Strings& prefixes) {
    for (const std::string& prefix : prefixes)
        if (line.starts_with(prefix)) return true;
    return false;
}

TEST(TrackWriter, ElementsTheirAttributesAndTheirChildrenInOrder) {
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
    Strings skeleton;
    const auto tracks = std::find(lines.begin(), lines.end(), "<tracks>");
    for (const std::string& line : Strings(tracks, lines.end())) {
        if (StartsWithAny(line, {"<audioTrack", "<busTrack", "<masterTrack", "<videoTrack", "</audioTrack",
                                 "</busTrack", "</masterTrack", "</videoTrack", "<trackParameters",
                                 "</trackParameters", "<name>",
                                 "<trackAudioParameters", "</trackAudioParameters", "<trackOutput", "<trackInput",
                                 "<sendList", "</sendList"}) ||
            (line.starts_with("<component componentID=") && line.find("id=\"track") != std::string::npos))
            skeleton.push_back(line);
        if (line == "</tracks>") break;
    }
    const std::string fader =
        R"(<component componentID="Audition.Fader" id="trackFader" name="volume" powered="true">)";
    const std::string mute = R"(<component componentID="Audition.Mute" id="trackMute" name="Mute" powered="true">)";
    const std::string pan =
        R"(<component componentID="Audition.StereoPanner" id="trackPan" name="StereoPanner" powered="true">)";
    const std::string eq = R"(<component componentID="Audition.EQ" id="trackEQ" name="EQ" powered="false">)";
    auto audioParameters = [&](const std::string& mode, const std::string& solo, const std::string& output,
                               const std::string& input) {
        return Strings{R"(<trackAudioParameters audioChannelType="stereo" automationMode=")" + mode +
                           R"(" monitoring="false" recordArmed="false" solo=")" + solo + R"(" soloSafe="false">)",
                       R"(<trackOutput outputID=")" + output + R"(" type="trackID"/>)",
                       R"(<trackInput inputID=")" + input + R"("/>)",
                       fader,
                       mute,
                       pan,
                       eq,
                       "</trackAudioParameters>",
                       "<sendList>",
                       "</sendList>"};
    };
    Strings expected{R"(<videoTrack id="0" select="false">)", R"(<trackParameters trackHeight="118">)",
                     "<name>Film</name>", "</trackParameters>", "</videoTrack>"};
    auto add = [&](const Strings& more) { expected.insert(expected.end(), more.begin(), more.end()); };
    add({R"(<audioTrack automationLaneOpenState="false" id="1" index="0" phaseInverted="true" select="false" solo="false" soloSafe="false">)",
         R"(<trackParameters trackHeight="66">)", "<name>A &amp; B <c></name>", "</trackParameters>"});
    add(audioParameters("0", "false", "10000", "1"));
    add({"</audioTrack>"});
    add({R"(<busTrack automationLaneOpenState="false" id="10004" index="1" phaseInverted="false" select="false" solo="true" soloSafe="false">)",
         R"(<trackParameters trackHeight="0">)", "<name>Bus</name>", "</trackParameters>"});
    add(audioParameters("1", "true", "10000", "-1"));
    add({"</busTrack>"});
    add({R"(<busTrack automationLaneOpenState="false" id="10005" index="2" phaseInverted="false" select="false" solo="false" soloSafe="false">)",
         R"(<trackParameters trackHeight="66">)", "<name>Same bus</name>", "</trackParameters>"});
    add(audioParameters("1", "false", "10000", "-1"));
    add({"</busTrack>"});
    // The last bus track with the number counts; an unknown bus is the master.
    add({R"(<audioTrack automationLaneOpenState="false" id="2" index="3" phaseInverted="false" select="false" solo="false" soloSafe="false">)",
         R"(<trackParameters trackHeight="66">)", "<name>Fed</name>", "</trackParameters>"});
    add(audioParameters("1", "false", "10005", "1"));
    add({"</audioTrack>"});
    add({R"(<audioTrack automationLaneOpenState="false" id="3" index="4" phaseInverted="false" select="false" solo="false" soloSafe="false">)",
         R"(<trackParameters trackHeight="66">)", "<name>Unknown bus</name>", "</trackParameters>"});
    add(audioParameters("1", "false", "10000", "1"));
    add({"</audioTrack>"});
    // The session's own master comes last, once, at height 48.
    add({R"(<masterTrack automationLaneOpenState="true" id="10000" index="5" select="false">)",
         R"(<trackParameters trackHeight="48">)", "<name>Master</name>", "</trackParameters>"});
    add(audioParameters("1", "false", "10000", "1"));
    add({"</masterTrack>"});
    EXPECT_EQ(skeleton, expected);
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

TEST(TrackWriter, MuteAndPanComponents) {
    Session session;
    Track track = MakeTrack(1, 1, "T");
    track.Muted = 1;
    track.Pan = -30;
    session.Tracks = {track};
    session.TrackMutePoints = {{1, 0, 1.0}, {1, 10, 0.5}, {1, 20, 0.49}};
    session.TrackPanPoints = {{1, 0, 0.5}, {1, 30, 0.65}};
    const Strings lines = Write(session);
    const std::string keyframe = R"(<parameterKeyframe sampleOffset=")";
    // The file's mute envelope runs the other way from the parameter.
    EXPECT_EQ(Block(lines, R"(id="trackMute")", "</component>"),
              (Strings{R"(<component componentID="Audition.Mute" id="trackMute" name="Mute" powered="true">)",
                       R"(<parameter index="0" parameterValue="0"/>)",
                       R"(<parameter index="1" name="mute" parameterValue="1">)",
                       R"(<parameterKeyframes enableSplines="false">)",
                       keyframe + R"(0" select="false" type="linear" value="0"/>)",
                       keyframe + R"(10" select="false" type="linear" value="0"/>)",
                       keyframe + R"(20" select="false" type="linear" value="1"/>)", "</parameterKeyframes>",
                       "</parameter>", "</component>"}));
    EXPECT_EQ(Block(lines, R"(id="trackPan")", "</component>"),
              (Strings{R"(<component componentID="Audition.StereoPanner" id="trackPan" name="StereoPanner" powered="true">)",
                       R"(<parameter index="0" name="Pan" parameterValue="-30">)",
                       R"(<parameterKeyframes enableSplines="false">)",
                       keyframe + R"(0" select="false" type="linear" value=".5"/>)",
                       keyframe + R"(30" select="false" type="linear" value=".65"/>)", "</parameterKeyframes>",
                       "</parameter>", "</component>"}));
}

TEST(TrackWriter, TheEqRecordOfATrackByOrdinalOrId) {
    Session session;
    session.SampleRate = 44100;
    session.Tracks = {MakeTrack(10001, 1, "By id"), MakeTrack(5, 2, "By ordinal"), MakeTrack(6, 3, "None")};
    TrackEq byOrdinal;
    byOrdinal.TrackKey = 2;
    byOrdinal.LowFrequency = 1000;
    byOrdinal.LowQ = 150;
    byOrdinal.LowGain = 0;
    byOrdinal.MidFrequency = 20;
    byOrdinal.MidQ = 25000;
    byOrdinal.MidGain = -12;
    byOrdinal.HighFrequency = 22050;
    byOrdinal.HighQ = 1;
    byOrdinal.HighGain = 3;
    byOrdinal.EqEnabled = 0;  // still supplies the values
    TrackEq byId;
    byId.TrackKey = 10001;
    byId.EqEnabled = 1;
    session.TrackEqs = {byOrdinal, byId};
    const Strings lines = Write(session);

    EXPECT_EQ(Block(lines, R"(id="trackEQ")", "</component>", 0)[0],
              R"(<component componentID="Audition.EQ" id="trackEQ" name="EQ" powered="true">)");
    const Strings none = Block(lines, R"(id="trackEQ")", "</component>", 2);
    EXPECT_EQ(none[0], R"(<component componentID="Audition.EQ" id="trackEQ" name="EQ" powered="false">)");
    EXPECT_EQ(none[5], R"x(<parameter index="4" name="EQ Band 1 (Center Frequency)" parameterValue="0.001251"/>)x");

    const Strings found = Block(lines, R"(id="trackEQ")", "</component>", 1);
    ASSERT_EQ(found.size(), 46u);
    Strings computed;
    for (std::size_t index : {4u, 5u, 6u, 7u, 11u, 12u, 13u, 14u, 19u, 20u, 21u, 22u, 29u, 30u})
        computed.push_back(found[index + 1]);
    EXPECT_EQ(found[0], R"(<component componentID="Audition.EQ" id="trackEQ" name="EQ" powered="false">)");
    EXPECT_EQ(computed,
              (Strings{R"x(<parameter index="4" name="EQ Band 1 (Center Frequency)" parameterValue="0.0444848"/>)x",
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
    TrackEq two;
    two.TrackKey = 2;
    two.EqEnabled = 1;
    TrackEq three;
    three.TrackKey = 3;
    three.EqEnabled = 0;
    session.TrackEqs = {two, three};
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

TEST(TrackWriter, SendSlotsWithAndWithoutARecord) {
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
    // An empty slot of a record keeps its sendPan.
    EXPECT_EQ(Block(lines, R"(slotIndex="2")", "</sendSlot>"),
              (Strings{R"(<sendSlot preFader="false" sendOutputID="0" slotIndex="2">)",
                       R"(<component id="sendComponent" powered="false">)",
                       R"(<parameter index="0" name="Power On/Off" parameterValue="0">)", "</parameter>",
                       R"(<parameter index="1" name="Level" parameterValue="0">)", "</parameter>", "</component>",
                       R"(<component componentID="Audition.StereoPanner" id="sendPan" name="StereoPanner" powered="true">)",
                       R"(<parameter index="0" name="Pan" parameterValue="0">)", "</parameter>", "</component>",
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

    // The bus tracks have no record: 16 slots of the short form.
    const Strings busSlots = Block(lines, R"(<sendList>)", "</sendList>", 1);
    ASSERT_EQ(busSlots.size(), 2u + 16 * 6);
    EXPECT_EQ(Strings(busSlots.begin() + 91, busSlots.end()),
              (Strings{R"(<sendSlot preFader="false" sendOutputID="0" slotIndex="15">)",
                       R"(<component id="sendComponent" powered="false">)",
                       R"(<parameter index="0" name="Power On/Off" parameterValue="0"/>)",
                       R"(<parameter index="1" name="Level" parameterValue="0"/>)", "</component>", "</sendSlot>",
                       "</sendList>"}));
}

TEST(TrackWriter, TheImplicitMasterIsSoloedWhenAnyTrackIs) {
    Session session;
    session.MasterVolume = 0.7;
    Track soloed = MakeTrack(1, 1, "Solo");
    soloed.Soloed = 1;
    session.Tracks = {soloed, MakeTrack(2, 2, "Plain")};
    const Strings master = Block(Write(session), "<masterTrack", "</masterTrack>");
    ASSERT_EQ(master.size(), 68u);
    EXPECT_EQ(Strings(master.begin(), master.begin() + 12),
              (Strings{R"(<masterTrack automationLaneOpenState="true" id="10000" index="2" select="false">)",
                       R"(<trackParameters trackHeight="48">)", "<name>", "Master", "</name>", "</trackParameters>",
                       R"(<trackAudioParameters audioChannelType="stereo" automationMode="1" monitoring="false" recordArmed="false" solo="true" soloSafe="false">)",
                       R"(<trackOutput outputID="1" type="hardwareOutput"/>)", R"(<trackInput inputID="1"/>)",
                       R"(<component componentID="Audition.Fader" id="trackFader" name="volume" powered="true">)",
                       R"(<parameter index="0" name="volume" parameterValue=".7"/>)",
                       R"(<parameter index="1" name="static gain" parameterValue="1"/>)"}));
}

}  // namespace
}  // namespace morvanta::testing
