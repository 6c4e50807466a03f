// The <effectsRack> of hand-built sessions: the fixed frame, which rows
// become slots, the parameter values and the keyframes.
#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

#include "TestSupport.h"
#include "writer/DocumentWriter.h"

namespace morvanta::testing {
namespace {

using Strings = std::vector<std::string>;

std::string RackOf(const Session& s, const Track& track) {
    std::vector<Diagnostic> warnings;
    const ConvertOptions options;
    DocumentWriter w(s, options, warnings);
    WriteEffectsRack(w, track);
    return w.out;
}

// The lines between the last fixed component and the closing tag.
Strings SlotLines(const std::string& rack) {
    const Strings lines = Lines(rack);
    const auto output = std::find(lines.begin(), lines.end(), R"(<component id="rackOutput" powered="true">)");
    return output + 5 > lines.end() ? Strings{} : Strings(output + 4, lines.end() - 1);
}

Track TrackOf(std::int32_t id, std::int32_t busId = 0) {
    Track t;
    t.TrackId = id;
    t.BusId = busId;
    return t;
}

RackSlot SlotOf(std::int32_t owner, const std::string& effect, std::int32_t slotNumber = 0) {
    RackSlot r;
    r.OwnerId = owner;
    r.EffectName = effect;
    r.SlotNumber = slotNumber;
    return r;
}

RackParameter ParameterOf(std::int32_t owner, const std::string& effect, std::int32_t slot, const std::string& name,
                          double value = 0, const std::string& format = "") {
    RackParameter r;
    r.OwnerId = owner;
    r.EffectName = effect;
    r.ParameterName = name;
    r.Value = value;
    r.ValueFormat = format;
    r.SlotNumber = slot;
    return r;
}

TEST(EffectsRackWriter, ATrackWithOneSlotGetsTheWholeElement) {
    Session s;
    s.RackSlots = {SlotOf(10001, " Studio\\Reverb\\Hall ")};
    s.RackSlots[0].ComponentId = " Audition.Reverb ";
    s.RackSlots[0].PresetText = " <state a=\"1\"/> ";
    s.RackParameters = {ParameterOf(10001, "Studio\\Reverb\\Hall", 0, " Decay ", 1.23456, " 0.000 "),
                        ParameterOf(10002, "Studio\\Reverb\\Hall", 0, "Other owner"),
                        ParameterOf(10001, "Studio\\Reverb\\Hall ", 0, "Mix", 0.5)};
    s.RackAutomation = {{10001, 0, 1, 0, "Power On/Off"}, {10001, 9, 1, 0, "Power On/Off"},
                        {10001, 0, 0.25, 0, " Wet/Dry Mix"}, {10002, 5, 0.5, 0, "Wet/Dry Mix"},
                        {10001, 50, 0.1, 0, "Wet/Dry Mix"}};
    s.EffectAutomation = {{10001, 0, 0.2, 0, 1, "Decay"}, {10001, 5, 0.9, 0, 2, "Decay"},
                          {10001, 10, 0.4, 0, 1, "Decay "}, {10001, 15, 0.9, 1, 1, "Decay"}};
    const std::string key = R"(<parameterKeyframe sampleOffset=")";
    EXPECT_EQ(RackOf(s, TrackOf(10001)),
              "<effectsRack preFader=\"true\">\n"
              "<component id=\"rackMix\" powered=\"true\">\n"
              "<parameter index=\"0\" parameterValue=\"0\">\n"
              "</parameter>\n"
              "<parameter index=\"1\" parameterValue=\"0\">\n"
              "<parameterKeyframes enableSplines=\"false\">\n" +
                  key + "0\" select=\"false\" type=\"linear\" value=\".75\"/>\n" + key +
                  "50\" select=\"false\" type=\"linear\" value=\".9\"/>\n"
                  "</parameterKeyframes>\n"
                  "</parameter>\n"
                  "</component>\n"
                  "<component id=\"rackInput\" powered=\"true\">\n"
                  "<parameter index=\"0\" parameterValue=\"1\"/>\n"
                  "<parameter index=\"1\" parameterValue=\"0\"/>\n"
                  "</component>\n"
                  "<component id=\"rackOutput\" powered=\"true\">\n"
                  "<parameter index=\"0\" parameterValue=\"1\"/>\n"
                  "<parameter index=\"1\" parameterValue=\"0\"/>\n"
                  "</component>\n"
                  "<slot powered=\"true\" slotIndex=\"0\">\n"
                  "<component componentID=\"Audition.Reverb\" editorHeight=\"404\" editorLeft=\"755\" "
                  "editorTop=\"338\" editorVisible=\"false\" editorWidth=\"492\" name=\"Reverb\\Hall\">\n"
                  "<presetChunkData><![CDATA[<state a=\"1\"/>]]></presetChunkData>\n"
                  "<parameter index=\"0\" name=\"Decay\" parameterValue=\"1.235\">\n"
                  "<parameterKeyframes enableSplines=\"false\">\n" +
                  key + "0\" select=\"false\" type=\"linear\" value=\".2\"/>\n" + key +
                  "10\" select=\"false\" type=\"linear\" value=\".4\"/>\n"
                  "</parameterKeyframes>\n"
                  "</parameter>\n"
                  "<parameter index=\"1\" name=\"Mix\" parameterValue=\"0.5000000000\">\n"
                  "</parameter>\n"
                  "</component>\n"
                  "</slot>\n"
                  "</effectsRack>\n");
    EXPECT_EQ(RackOf(s, TrackOf(10002)), "");
}

TEST(EffectsRackWriter, SlotsFollowTheirOwnerAndTheSlotCounter) {
    Session s;
    s.RackSlots = {SlotOf(20001, "Chorus", 0),
                   SlotOf(1, "Echo", 1),  // the track's first effect was dropped
                   SlotOf(20001, "Chorus", 1),
                   SlotOf(10004, "Delay", 7),
                   SlotOf(20001, "Flanger", 4),
                   SlotOf(20002, "Phaser", 1),
                   SlotOf(kBusIdLimit, "Limiter")};
    s.RackSlots[1].EditorHeight = 100;
    s.RackSlots[1].EditorLeft = -5;
    s.RackSlots[1].EditorTop = 300;
    s.RackSlots[1].EditorWidth = 400;
    s.RackParameters = {ParameterOf(1, "Echo", 1, "Time"), ParameterOf(20001, "Chorus", 1, ""),
                        ParameterOf(20001, "Chorus", 0, "Rate"), ParameterOf(20001, "Chorus", 1, "Depth"),
                        ParameterOf(20001, "Chorus", 1, "Feedback")};
    s.RackAutomation = {{1, 0, 0.3, 0, "Wet/Dry Mix"}, {1, 70, 0.3, 0, "Wet/Dry Mix"}};
    Track track = TrackOf(1);
    track.RackPostFader = 1;
    // Two equal points give no keyframes: 16 lines of frame, 4 of the slot.
    const std::string rack = RackOf(s, track);
    EXPECT_EQ(Lines(rack).size(), 20u);
    EXPECT_EQ(Lines(rack).front(), R"(<effectsRack preFader="false">)");
    EXPECT_EQ(SlotLines(rack),
              (Strings{R"(<slot powered="true" slotIndex="0">)",
                       R"(<component componentID="" editorHeight="100" editorLeft="755" editorTop="300" )"
                       R"(editorVisible="false" editorWidth="400" name="Echo">)",
                       "</component>", "</slot>"}));

    // The bus's own rows run 0, 1, then the track's row takes slot 2 and
    // the bus row of SlotNumber 4 no longer fits.
    Strings written;
    for (const std::string& line : SlotLines(RackOf(s, TrackOf(10004, 20001))))
        if (line.starts_with("<slot ") || line.starts_with("<parameter ")) written.push_back(line);
    const std::string value = R"(" parameterValue="0.0000000000">)";
    EXPECT_EQ(written, (Strings{R"(<slot powered="true" slotIndex="0">)",
                                R"(<parameter index="0" name="Rate)" + value,
                                R"(<slot powered="true" slotIndex="1">)",
                                R"(<parameter index="0" name="Depth)" + value,
                                R"(<parameter index="1" name="Feedback)" + value,
                                R"(<slot powered="true" slotIndex="2">)"}));

    // A bus whose first effect was dropped: the frame without a slot.
    const std::string emptyRack = RackOf(s, TrackOf(10005, 20002));
    EXPECT_EQ(Lines(emptyRack).size(), 16u);
    EXPECT_EQ(Lines(emptyRack).back(), "</effectsRack>");
    // Rows of its BusId give a track that is no bus no rack.
    EXPECT_EQ(RackOf(s, TrackOf(7, kBusIdLimit)), "");
}

TEST(EffectsRackWriter, ParameterValuesFollowTheirFormat) {
    Session s;
    s.RackSlots = {SlotOf(1, "Gain")};
    const std::vector<std::pair<double, std::string>> rows = {
        {2.71828, "0.000"}, {1.0 / 3, "0.000000000000"}, {0.5, "0.0*"}, {0.25, ""},
        {2.5, "0"},         {-0.125, "0.00"},             {1.5, "#,##0.00"}};
    for (const auto& [value, format] : rows) s.RackParameters.push_back(ParameterOf(1, "Gain", 0, "P", value, format));
    Strings values;
    for (const std::string& line : LinesStartingWith(RackOf(s, TrackOf(1)), R"(<parameter index=")"))
        if (const auto at = line.find("parameterValue=\""); line.find(" name=") != std::string::npos)
            values.push_back(line.substr(at + 16, line.size() - at - 18));
    EXPECT_EQ(values, (Strings{"2.718", "0.333333333333", "0.5000000000", "0.2500000000", "3", "-0.13",
                               "1.5000000000"}));
}

}  // namespace
}  // namespace morvanta::testing
