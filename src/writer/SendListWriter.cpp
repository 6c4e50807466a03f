// The <sendList> of a track: always 16 slots (docs/format/tracks.md,
// "Sends").
#include "services/Conversions.h"
#include "writer/DocumentWriter.h"
#include "writer/Keyframes.h"
#include "writer/NumberText.h"
#include "writer/TextHelpers.h"

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
std::int32_t SendOutput(const Session& session, std::int32_t outputBus) {
    if (outputBus <= 0) return outputBus;
    for (const Track& track : session.Tracks)
        if (track.BusId == outputBus) return track.TrackId;
    return outputBus;
}

void WriteSlot(DocumentWriter& w, const Track& track, const SendSlotSettings& slot, std::size_t k) {
    const Session& session = w.session;
    const auto slotNumber = static_cast<std::int32_t>(k);
    auto named = [&](const char* name) {
        return [&track, slotNumber, name](const NamedAutomationPoint& point) {
            return point.TrackId == track.TrackId && point.SendSlot == slotNumber &&
                   TrimBlanks(point.ParameterName) == name;
        };
    };
    auto plainValue = [](const NamedAutomationPoint& point) { return PlainNumberText(point.Value); };
    const std::int32_t output = SendOutput(session, slot.OutputBus);

    w.Line(std::string(R"(<sendSlot preFader=")") + (slot.PreFader == 1 ? "true" : "false") +
           R"(" sendOutputID=")" + PlainNumberText(output) + R"(" slotIndex=")" + PlainNumberText(slotNumber) +
           R"(">)");
    w.Line(std::string(R"(<component id="sendComponent" powered=")") + (output > 0 ? "true" : "false") + R"(">)");

    const auto power = named("Power On/Off");
    const PointSelection powerPoints = CountParameterPoints(session.SendAutomation, power);
    w.Line(std::string(R"(<parameter index="0" name="Power On/Off" parameterValue=")") +
           (powerPoints.Found ? "1" : "0") + R"(">)");
    WriteRuledKeyframes(w, session.SendAutomation, powerPoints, power, plainValue);
    w.Line("</parameter>");

    // The level stands as stored; its keyframes are fader positions.
    const auto level = named("Level");
    const PointSelection levelPoints = CountParameterPoints(session.SendAutomation, level);
    w.Line(R"(<parameter index="1" name="Level" parameterValue=")" + PlainNumberText(slot.Level) + R"(">)");
    WriteRuledKeyframes(w, session.SendAutomation, levelPoints, level, [](const NamedAutomationPoint& point) {
        return PlainNumberText(GetNormalizedValue(ConvertGain(point.Value)));
    });
    w.Line("</parameter>");
    w.Line("</component>");

    const auto pan = named("Pan");
    const PointSelection panPoints = CountParameterPoints(session.SendAutomation, pan);
    w.Line(R"(<component componentID="Audition.StereoPanner" id="sendPan" name="StereoPanner" powered="true">)");
    w.Line(R"(<parameter index="0" name="Pan" parameterValue=")" + PlainNumberText(slot.Pan) + R"(">)");
    WriteRuledKeyframes(w, session.SendAutomation, panPoints, pan, plainValue);
    w.Line("</parameter>");
    w.Line("</component>");
    w.Line("</sendSlot>");
}

}  // namespace

void WriteSendList(DocumentWriter& w, const Track& track) {
    const TrackSend* sends = nullptr;
    for (const TrackSend& record : w.session.TrackSends) {
        if (record.TrackId == track.TrackId) {
            sends = &record;
            break;
        }
    }
    w.Line("<sendList>");
    for (std::size_t k = 0; k < kSendSlotCount; ++k) {
        if (sends) WriteSlot(w, track, sends->Slots[k], k);
        else WriteDefaultSlot(w, k);
    }
    w.Line("</sendList>");
}

}  // namespace morvanta
