// The <effectsRack> of a track that owns rack slots (docs/format/tracks.md,
// "Effects rack"): the fixed rackMix, rackInput and rackOutput components,
// then one <slot> per RackSlots row that belongs to the track.
//
// RackSlots, RackParameters, EffectAutomation and RackAutomation are plain
// zero-based lists like every model list but Clips (docs/format/model.md):
// they have no element 0. Where the format speaks of the "row number" r of a
// slot, counted from 1 in RackSlots, that is its position + 1, and that is
// what EffectAutomation::SlotRow holds (the readers store the size of
// RackSlots right after appending the slot).
#include <algorithm>
#include <compare>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "model/RackTurns.h"
#include "services/NumberText.h"
#include "services/TextHelpers.h"
#include "writer/DocumentWriter.h"
#include "writer/Keyframes.h"
#include "writer/PositionIndex.h"

namespace morvanta {

// A parameter's rows: the slot's owner and trimmed effect name, and the
// slot counter s of the rack being written.
struct RackParameterKey {
    std::int32_t OwnerId{};
    std::string EffectName;  // blanks trimmed
    std::int32_t SlotNumber{};
    auto operator<=>(const RackParameterKey&) const = default;
};

// A parameter's points: track, slot counter, slot row (1-based) and name.
struct EffectPointKey {
    std::int32_t TrackId{};
    std::int32_t SlotNumber{};
    std::int32_t SlotRow{};
    std::string Name;  // blanks trimmed
    auto operator<=>(const EffectPointKey&) const = default;
};

// The rack-level points of a track by their name.
struct RackPointKey {
    std::int32_t TrackId{};
    std::string Name;  // blanks trimmed
    auto operator<=>(const RackPointKey&) const = default;
};

// Built once per document: looking through the rack lists for every track,
// slot and parameter would cost their lengths multiplied together.
struct RackLookups {
    explicit RackLookups(const Session& s)
        : slots(s.RackSlots, [](const RackSlot& row) { return row.OwnerId; }),
          parameters(s.RackParameters,
                     [](const RackParameter& row) {
                         return RackParameterKey{row.OwnerId, TrimBlanks(row.EffectName), row.SlotNumber};
                     }),
          effectPoints(s.EffectAutomation,
                       [](const EffectAutomationPoint& p) {
                           return EffectPointKey{p.TrackId, p.SlotNumber, p.SlotRow, TrimBlanks(p.ParameterName)};
                       }),
          rackPoints(s.RackAutomation, [](const NamedAutomationPoint& p) {
              return RackPointKey{p.TrackId, TrimBlanks(p.ParameterName)};
          }) {}

    PositionIndex<std::int32_t> slots;  // RackSlots by OwnerId
    PositionIndex<RackParameterKey> parameters;
    PositionIndex<EffectPointKey> effectPoints;  // EffectAutomation
    PositionIndex<RackPointKey> rackPoints;      // RackAutomation
};

namespace {

const RackLookups& RackLookupsOf(DocumentWriter& w) {
    if (!w.rackLookups) w.rackLookups = std::make_shared<const RackLookups>(w.session);
    return *w.rackLookups;
}

constexpr std::string_view kDefaultValueFormat = "0.0000000000";

// A value printed with a number pattern of the catalogues. The patterns they
// carry are one or more "0" for the integer digits, optionally followed by a
// point and one or more "0" for the decimals ("0", "0.000",
// "0.000000000000"): rounded as FixedPlacesText, a half away from zero, the
// integer part padded with zeros to the pattern's digits. Any other pattern
// ("#", grouping, exponents, literals) gives no text.
std::optional<std::string> ZeroPatternText(double value, std::string_view pattern) {
    const std::size_t integerDigits = std::min(pattern.find_first_not_of('0'), pattern.size());
    if (integerDigits == 0) return std::nullopt;
    int decimals = 0;
    if (integerDigits < pattern.size()) {
        const std::string_view fraction = pattern.substr(integerDigits + 1);
        if (pattern[integerDigits] != '.' || fraction.empty() ||
            fraction.find_first_not_of('0') != std::string_view::npos)
            return std::nullopt;
        decimals = static_cast<int>(fraction.size());
    }
    std::string text = FixedPlacesText(value, decimals);
    const std::size_t sign = text.starts_with('-') ? 1 : 0;
    const std::size_t point = std::min(text.find('.'), text.size());
    if (point - sign < integerDigits) text.insert(sign, integerDigits - (point - sign), '0');
    return text;
}

// The parameterValue of a rack parameter: the value rounded to 12 places,
// printed with the row's ValueFormat. An empty format, one that holds "*",
// or one that ZeroPatternText does not know takes "0.0000000000". With a
// pattern of more than one character the character in front of its last
// length - 2 characters becomes a full stop whatever the pattern printed
// there; for a two-character pattern that is the text's last character.
std::string ParameterValueText(double value, const std::string& valueFormat) {
    std::string format = TrimBlanks(valueFormat);
    if (format.empty() || format.find('*') != std::string::npos) format = kDefaultValueFormat;
    const double rounded = RoundTo12Places(value);
    std::optional<std::string> text = ZeroPatternText(rounded, format);
    if (!text) {
        format = kDefaultValueFormat;
        text = ZeroPatternText(rounded, format);
    }
    if (format.size() > 1) {
        const std::size_t tail = format.size() - 2;
        if (text->size() > tail) (*text)[text->size() - tail - 1] = '.';
    }
    return *text;
}

// EffectName as the slot names it: trimmed, and behind the first backslash
// when it holds one.
std::string SlotName(const std::string& effectName) {
    std::string name = TrimBlanks(effectName);
    const auto backslash = name.find('\\');
    return backslash == std::string::npos ? name : name.substr(backslash + 1);
}

std::string GeometryText(std::int32_t value, const char* fallback) {
    return value > 0 ? IntegerText(value) : std::string(fallback);
}

void WriteRackMix(DocumentWriter& w, const RackLookups& lookups, const Track& track) {
    const Session& session = w.session;
    w.Line(R"(<component id="rackMix" powered="true">)");
    // The points of this track whose name, without its blanks, is `name`.
    auto pointsOf = [&](const char* name) {
        return lookups.rackPoints.Select(session.RackAutomation, RackPointKey{track.TrackId, name});
    };
    w.Line(R"(<parameter index="0" parameterValue="0">)");
    WriteRuledKeyframes(w, pointsOf("Power On/Off"),
                        [](const NamedAutomationPoint& point) { return PlainNumberText(point.Value); });
    w.Line("</parameter>");
    w.Line(R"(<parameter index="1" parameterValue="0">)");
    WriteRuledKeyframes(w, pointsOf("Wet/Dry Mix"),
                        [](const NamedAutomationPoint& point) { return PlainNumberText(1 - point.Value); });
    w.Line("</parameter>");
    w.Line("</component>");
    for (const char* id : {"rackInput", "rackOutput"}) {
        w.Line(std::string(R"(<component id=")") + id + R"(" powered="true">)");
        w.Line(R"(<parameter index="0" parameterValue="1"/>)");
        w.Line(R"(<parameter index="1" parameterValue="0"/>)");
        w.Line("</component>");
    }
}

// Slot `s` of the rack, from RackSlots position `position`.
void WriteSlot(DocumentWriter& w, const RackLookups& lookups, const Track& track, std::size_t position,
               std::int32_t s) {
    const Session& session = w.session;
    const RackSlot& slot = session.RackSlots[position];
    const auto slotRow = static_cast<std::int32_t>(position + 1);

    w.Line(R"(<slot powered="true" slotIndex=")" + IntegerText(s) + R"(">)");
    w.Line(R"(<component componentID=")" + w.Text(TrimBlanks(slot.ComponentId)) + R"(" editorHeight=")" +
           GeometryText(slot.EditorHeight, "404") + R"(" editorLeft=")" + GeometryText(slot.EditorLeft, "755") +
           R"(" editorTop=")" + GeometryText(slot.EditorTop, "338") + R"(" editorVisible="false" editorWidth=")" +
           GeometryText(slot.EditorWidth, "492") + R"(" name=")" + w.Text(SlotName(slot.EffectName)) + R"(">)");
    if (const std::string preset = TrimBlanks(slot.PresetText); !preset.empty())
        w.Line("<presetChunkData><![CDATA[" + preset + "]]></presetChunkData>");

    // The parameter rows keep the SlotNumber of the file's rack; only those
    // that equal s belong to this slot.
    int p = 0;
    for (std::size_t i :
         lookups.parameters.Positions(RackParameterKey{slot.OwnerId, TrimBlanks(slot.EffectName), s})) {
        const RackParameter& row = session.RackParameters[i];
        const std::string name = TrimBlanks(row.ParameterName);
        if (name.empty()) continue;
        w.Line(R"(<parameter index=")" + IntegerText(p) + R"(" name=")" + w.Text(name) + R"(" parameterValue=")" +
               ParameterValueText(row.Value, row.ValueFormat) + R"(">)");
        ++p;
        WriteRuledKeyframes(
            w, lookups.effectPoints.Select(session.EffectAutomation, EffectPointKey{track.TrackId, s, slotRow, name}),
            [](const EffectAutomationPoint& point) { return PlainNumberText(point.Value); });
        w.Line("</parameter>");
    }
    w.Line("</component>");
    w.Line("</slot>");
}

}  // namespace

void WriteEffectsRack(DocumentWriter& w, const Track& track) {
    const RackLookups& lookups = RackLookupsOf(w);
    const std::vector<RackTurn> turns = RackTurns(track, lookups.slots.Positions(track.TrackId),
                                                  lookups.slots.Positions(track.BusId), w.session.RackSlots);
    if (turns.empty()) return;

    w.Line(std::string(R"(<effectsRack preFader=")") + (track.RackPostFader == 1 ? "false" : "true") + R"(">)");
    WriteRackMix(w, lookups, track);
    for (const RackTurn& turn : turns)
        if (turn.Written) WriteSlot(w, lookups, track, turn.Row, turn.SlotIndex);
    w.Line("</effectsRack>");
}

}  // namespace morvanta
