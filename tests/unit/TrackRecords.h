// One-line texts of the raw track records, so that tests compare whole
// records exactly and show every field when they differ.
#pragma once

#include <charconv>
#include <string>
#include <vector>

#include "model/Session.h"

namespace morvanta::testing {

// The shortest text that reads back as the same double.
inline std::string Num(double value) {
    char buffer[64];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    return std::string(buffer, result.ptr);
}

inline std::string Describe(const SesTrack& t) {
    return "'" + t.Name + "' id " + std::to_string(t.TrackId) + " gains " + Num(t.GainHigh) + "/" +
           Num(t.GainLow) + " state " + std::to_string(t.StateCode) + " solo " + std::to_string(t.SoloCode) +
           " pan " + Num(t.Pan) + " bus " + std::to_string(t.BusId) + " out " + std::to_string(t.OutputBusId) +
           " height " + std::to_string(t.TrackHeight) + " phase " + std::to_string(t.PhaseInverted) + " post " +
           std::to_string(t.RackPostFader) + " mode " + std::to_string(t.AutomationMode);
}

inline std::string Describe(const Track& t) {
    return "'" + t.TrackName + "' id " + std::to_string(t.TrackId) + " ordinal " + std::to_string(t.TrackOrdinal) +
           " volume " + Num(t.Volume) + " bus " + std::to_string(t.BusId) + " out " +
           std::to_string(t.OutputBusId) + " muted " + std::to_string(t.Muted) + " soloed " +
           std::to_string(t.Soloed) + " pan " + Num(t.Pan) + " height " + std::to_string(t.TrackHeight) +
           " post " + std::to_string(t.RackPostFader) + " phase " + std::to_string(t.PhaseInverted) + " mode " +
           std::to_string(t.AutomationMode);
}

inline std::string Describe(const TrackPoint& p) {
    return std::to_string(p.TrackId) + " @" + std::to_string(p.SampleOffset) + " " + Num(p.Value);
}

inline std::string Describe(const NamedAutomationPoint& p) {
    return std::to_string(p.TrackId) + " slot " + std::to_string(p.SendSlot) + " '" + p.ParameterName + "' @" +
           std::to_string(p.SampleOffset) + " " + Num(p.Value);
}

// The slots that the file filled; empty ones are left out.
inline std::string Describe(const TrackSend& s) {
    std::string text = std::to_string(s.TrackId);
    for (std::size_t k = 0; k < s.Slots.size(); ++k) {
        const SendSlotSettings& slot = s.Slots[k];
        if (slot.OutputBus == 0 && slot.Level == 0 && slot.Pan == 0 && slot.PreFader == 0) continue;
        text += " [" + std::to_string(k) + ": bus " + std::to_string(slot.OutputBus) + " level " +
                Num(slot.Level) + " pan " + Num(slot.Pan) + " pre " + std::to_string(slot.PreFader) + "]";
    }
    return text;
}

inline std::string Describe(const TrackEq& e) {
    return std::to_string(e.TrackKey) + " low " + Num(e.LowFrequency) + "/" + Num(e.LowGain) + "/" + Num(e.LowQ) +
           " mid " + Num(e.MidFrequency) + "/" + Num(e.MidGain) + "/" + Num(e.MidQ) + " high " +
           Num(e.HighFrequency) + "/" + Num(e.HighGain) + "/" + Num(e.HighQ) + " on " + std::to_string(e.EqEnabled);
}

inline std::string Describe(const EnvelopePoint& p) {
    return std::to_string(p.ClipId) + " kind " + std::to_string(p.Kind) + " @" + std::to_string(p.SamplePosition) +
           " " + Num(p.Value);
}

template <class Record>
std::vector<std::string> Describe(const std::vector<Record>& records) {
    std::vector<std::string> lines;
    for (const Record& record : records) lines.push_back(Describe(record));
    return lines;
}

}  // namespace morvanta::testing
