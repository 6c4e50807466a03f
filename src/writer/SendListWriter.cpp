// The <sendList> of a track: always 16 slots (docs/format/tracks.md,
// "Sends").
#include "services/Conversions.h"
#include "writer/DocumentWriter.h"
#include "writer/Keyframes.h"
#include "services/NumberText.h"
#include "services/TextHelpers.h"
#include "writer/TrackLookups.h"

namespace morvanta {
namespace {

void WriteDefaultSlot(DocumentWriter& w, std::size_t k) {
    w.Line(R"(<sendSlot preFader="false" sendOutputID="0" slotIndex=")" + std::to_string(k) + R"(">)");
    w.Line(R"(<component id="sendComponent" powered="false">)");
    w.Line(R"(<parameter index="0" name="Power On/Off" parameterValue="0"/>)");
    w.Line(R"(<parameter index="1" name="Level" parameterValue="0"/>)");
    w.Line("</component>");
    w.Line("</sendSlot>");
}

// The bus track that a send feeds: the first track with that BusId. A bus
// that no track has leaves the number as it is.
std::int32_t SendOutput(const DocumentWriter& w, const TrackLookups& lookups, std::int32_t outputBus) {
    if (outputBus <= 0) return outputBus;
    const auto bus = lookups.busTracks.First(outputBus);
    return bus ? w.Tracks[*bus].TrackId : outputBus;
}

void WriteSlot(DocumentWriter& w, const TrackLookups& lookups, const Track& track, const SendSlotSettings& slot,
               std::size_t k) {
    const Session& session = w.session;
    const auto slotNumber = static_cast<std::int32_t>(k);
    // The points of this slot whose name, without its blanks, is `name`.
    auto pointsOf = [&](const char* name) {
        return lookups.sendPoints.Select(session.SendAutomation, SendParameterKey{track.TrackId, slotNumber, name});
    };
    auto plainValue = [](const NamedAutomationPoint& point) { return PlainNumberText(point.Value); };
    const std::int32_t output = SendOutput(w, lookups, slot.OutputBus);

    w.Line(std::string(R"(<sendSlot preFader=")") + (slot.PreFader == 1 ? "true" : "false") +
           R"(" sendOutputID=")" + PlainNumberText(output) + R"(" slotIndex=")" + PlainNumberText(slotNumber) +
           R"(">)");
    w.Line(std::string(R"(<component id="sendComponent" powered=")") + (output > 0 ? "true" : "false") + R"(">)");

    const auto power = pointsOf("Power On/Off");
    w.Line(std::string(R"(<parameter index="0" name="Power On/Off" parameterValue=")") +
           (power.empty() ? "0" : "1") + R"(">)");
    WriteRuledKeyframes(w, power, plainValue);
    w.Line("</parameter>");

    // The level stands as stored; its keyframes are fader positions.
    w.Line(R"(<parameter index="1" name="Level" parameterValue=")" + PlainNumberText(slot.Level) + R"(">)");
    WriteRuledKeyframes(w, pointsOf("Level"), [](const NamedAutomationPoint& point) {
        return PlainNumberText(GetNormalizedValue(ConvertGain(point.Value)));
    });
    w.Line("</parameter>");
    w.Line("</component>");

    w.Line(R"(<component componentID="Audition.StereoPanner" id="sendPan" name="StereoPanner" powered="true">)");
    w.Line(R"(<parameter index="0" name="Pan" parameterValue=")" + PlainNumberText(slot.Pan) + R"(">)");
    WriteRuledKeyframes(w, pointsOf("Pan"), plainValue);
    w.Line("</parameter>");
    w.Line("</component>");
    w.Line("</sendSlot>");
}

}  // namespace

void WriteSendList(DocumentWriter& w, const Track& track) {
    const TrackLookups& lookups = TrackLookupsOf(w);
    // The first record of the track, when it has any.
    const auto sends = lookups.sends.First(track.TrackId);
    w.Line("<sendList>");
    for (std::size_t k = 0; k < kSendSlotCount; ++k) {
        if (sends) WriteSlot(w, lookups, track, w.session.TrackSends[*sends].Slots[k], k);
        else WriteDefaultSlot(w, k);
    }
    w.Line("</sendList>");
}

}  // namespace morvanta
