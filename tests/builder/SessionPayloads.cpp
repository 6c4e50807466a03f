// Payload layouts of the session-level chunks and the media lists.
#include "SessionPayloads.h"

namespace morvanta::testing {
namespace {

// Tags and kinds are four characters, padded with blanks.
std::string FourCharacters(const std::string& text) {
    std::string four = text.substr(0, 4);
    four.resize(4, ' ');
    return four;
}

}  // namespace

Bytes HeaderBytes(std::int32_t sampleRate, double masterVolume, std::int32_t smpteStart, std::int16_t timeFormat,
                  double envelopeScale) {
    Bytes b;
    b.Int32(sampleRate).Zeros(12).Double(masterVolume).Zeros(8).Int32(smpteStart);
    b.PadTo(300).Int16(timeFormat).PadTo(352).Double(envelopeScale).PadTo(400);
    return b;
}

std::vector<std::uint8_t> HeaderPayload(std::int32_t sampleRate, double masterVolume, std::int32_t smpteStart,
                                        std::int16_t timeFormat, double envelopeScale) {
    return HeaderBytes(sampleRate, masterVolume, smpteStart, timeFormat, envelopeScale).Data();
}

Bytes StatBytes(std::int32_t selectionStart, std::int32_t selectionEnd) {
    return Bytes().Zeros(32).Int32(selectionStart).Int32(selectionEnd).Zeros(8);
}

Bytes TempoBytes(double tempo, std::int32_t beatsPerBar, std::int32_t subdivisions, std::int32_t noteLength) {
    return Bytes().Double(tempo).Int32(beatsPerBar).Int32(subdivisions).Zeros(16).Int32(noteLength);
}

Bytes GroupBytes(const std::vector<GroupEntry>& groups) {
    Bytes b;
    b.Int32(static_cast<std::int32_t>(groups.size()));
    for (const GroupEntry& g : groups) b.Int32(g.GroupId).Int32(g.Colour).Zeros(8);
    return b;
}

Bytes CueBytes(const std::vector<CueEntry>& cues, CueLayout layout) {
    Bytes b;
    b.Int32(static_cast<std::int32_t>(cues.size()));
    for (const CueEntry& cue : cues) {
        b.Int32(cue.Start).Int32(cue.Length).Int16(0).Int16(0).ZeroText(cue.Name);
        if (layout == CueLayout::WithCueType) b.Text(FourCharacters(cue.CueType));
        b.ZeroText(cue.Comment);
    }
    return b;
}

Bytes LoopBytes(const std::vector<StretchEntry>& records) {
    Bytes b;
    b.Int32(static_cast<std::int32_t>(records.size()));
    for (const StretchEntry& r : records) {
        Bytes record;
        record.Int32(r.ClipId).PadTo(40).Int32(r.StretchedLength).PadTo(176);
        b.Append(record);
    }
    return b;
}

Bytes MetronomeBytes(std::int32_t soundSet, std::int32_t enabled, const std::string& pattern,
                     const std::string& firstText) {
    Bytes b;
    b.Zeros(40).Int32(soundSet).Int32(enabled);
    b.Int32(static_cast<std::int32_t>(firstText.size() + 1)).ZeroText(firstText);
    b.Int32(static_cast<std::int32_t>(pattern.size() + 1)).ZeroText(pattern);
    return b;
}

Bytes WaveEntryBytes(const WaveEntry& entry, WaveLayout layout) {
    Bytes tail;  // what follows EntrySize
    tail.Int32(entry.WaveId).Zeros(4).ZeroText(entry.Name);
    if (layout == WaveLayout::Padded) tail.Zeros(4).Int32(entry.LengthSamples);
    return Bytes().Text(FourCharacters(entry.Tag)).Int32(static_cast<std::int32_t>(tail.Size())).Append(tail);
}

Bytes WaveListBytes(const std::vector<WaveEntry>& entries, WaveLayout layout, const Bytes& after,
                    std::int32_t listLength) {
    Bytes list;
    for (const WaveEntry& entry : entries) list.Append(WaveEntryBytes(entry, layout));
    return Bytes()
        .Int32(listLength >= 0 ? listLength : static_cast<std::int32_t>(list.Size()))
        .Append(list)
        .Append(after);
}

Bytes WideWaveListBytes(const std::vector<WideWaveEntry>& entries) {
    Bytes b;
    for (const WideWaveEntry& entry : entries) {
        Bytes tail;  // from WaveId to the end of the entry
        tail.Int32(entry.WaveId).Zeros(12);
        for (char16_t unit : entry.Name) tail.Int16(static_cast<std::int16_t>(unit));
        tail.Int16(0);
        b.Text(FourCharacters(entry.Kind)).Int32(static_cast<std::int32_t>(tail.Size())).Append(tail);
    }
    return b;
}

}  // namespace morvanta::testing
