// The track elements of the document: the loop, each element's attributes
// and routing, the keyframe rule, the EQ values and the send slots.
#include <gtest/gtest.h>

#include <algorithm>

#include "TestSupport.h"
#include "services/NumberText.h"
#include "writer/ExportSesx.h"

namespace morvanta::testing {
namespace {

Track MakeTrack(std::int32_t id, std::int32_t ordinal, const std::string& name) {
    return {
        .TrackId = id, .TrackOrdinal = ordinal, .AutomationMode = 1, .Volume = 1, .TrackHeight = 66, .TrackName = name};
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

// The blocks as lines of text, each block under a title.
std::string Titled(const std::vector<std::pair<std::string, Strings>>& blocks) {
    std::string text;
    for (const auto& [title, block] : blocks) {
        text += "## " + title + "\n";
        for (const std::string& line : block) text += line + "\n";
    }
    return text;
}

// The elements, their parameters and their routing; the children in
// between are pinned by the golden documents. The last bus track with the
// number counts; an unknown bus is the master. The session's own master
// comes last, once, at height 48.
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
    ExpectGolden("track-elements.txt", Titled({{"elements", written}}));
}

TEST(TrackWriter, KeyframesOnlyForMoreThanTwoPointsOrTwoThatDiffer) {
    std::vector<std::pair<std::string, Strings>> blocks;
    for (const std::vector<double>& volume :
         std::vector<std::vector<double>>{{}, {0.5}, {0.5, 0.5}, {1.0, 0.5}, {1.0, 1.0, 1.0}}) {
        Session session;
        Track track = MakeTrack(1, 1, "T");
        track.Volume = 0.9;
        session.Tracks = {track, MakeTrack(2, 2, "Other")};
        std::string title = "points";
        for (std::size_t i = 0; i < volume.size(); ++i) {
            session.TrackVolumePoints.push_back({1, static_cast<std::int32_t>(10 * i), volume[i]});
            session.TrackVolumePoints.push_back({2, 5, 0.1});  // another track's points are not selected
            title += " " + GeneralText(volume[i]);
        }
        blocks.push_back({title, Block(Write(session), R"(id="trackFader")", "</component>")});
    }
    ExpectGolden("track-fader-keyframes.txt", Titled(blocks));
}

// A record that is off still gives its values, at the session's rate; the
// ends of the frequency range and the smallest and largest Q.
TEST(TrackWriter, AnEqRecordThatIsOffStillGivesItsValues) {
    Session session;
    session.SampleRate = 44100;
    session.Tracks = {MakeTrack(5, 2, "By ordinal")};
    session.TrackEqs = {{.TrackKey = 2, .LowFrequency = 1000, .LowGain = 0, .HighFrequency = 22050, .HighGain = 3,
                         .MidFrequency = 20, .MidGain = -12, .MidQ = 25000, .LowQ = 150, .HighQ = 1, .EqEnabled = 0}};
    ExpectGolden("track-eq-off.txt", Titled({{"EQ", Block(Write(session), R"(id="trackEQ")", "</component>")}}));
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
    ExpectGolden("tracks-sharing-an-id.txt",
                 Titled({{"One", Block(lines, R"(id="trackFader")", "</component>", 0)},
                         {"One again", Block(lines, R"(id="trackFader")", "</component>", 1)},
                         {"One, slot 0", Block(lines, R"(slotIndex="0")", "</sendSlot>", 0)},
                         {"One again, slot 0", Block(lines, R"(slotIndex="0")", "</sendSlot>", 1)}}));
}

// Slot 0 goes to the first bus track with the number; one power point
// gives "1" and no keyframes; the level stays the slot's own. Slot 3's
// unknown bus keeps its number; the pan points are this slot's.
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
    ExpectGolden("send-slots.txt", Titled({{"slot 0", Block(lines, R"(slotIndex="0")", "</sendSlot>")},
                                           {"slot 3", Block(lines, R"(slotIndex="3")", "</sendSlot>")}}));
}

TEST(TrackWriter, TheImplicitMasterIsSoloedWhenAnyTrackIs) {
    Session session;
    Track soloed = MakeTrack(1, 1, "Solo");
    soloed.Soloed = 1;
    session.Tracks = {soloed, MakeTrack(2, 2, "Plain")};
    EXPECT_EQ(Block(Write(session), "<masterTrack", "</masterTrack>").at(6),
              R"(<trackAudioParameters audioChannelType="stereo" automationMode="1" monitoring="false" )"
              R"(recordArmed="false" solo="true" soloSafe="false">)");
}

}  // namespace
}  // namespace morvanta::testing
