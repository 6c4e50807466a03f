// Payloads of the session-level chunks and the media lists, laid out byte by
// byte as docs/format/session.md and docs/format/media.md describe them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "SesBuilder.h"

namespace morvanta::testing {

// "hdr " of the size real files have. As the first chunk, its payload offsets
// 300 and 352 are the file offsets 320 (TimeFormat) and 372 (envelope scale).
Bytes HeaderBytes(std::int32_t sampleRate, double masterVolume = 1.0, std::int32_t smpteStart = 0,
                  std::int16_t timeFormat = 0, double envelopeScale = 1.0);
std::vector<std::uint8_t> HeaderPayload(std::int32_t sampleRate, double masterVolume = 1.0,
                                        std::int32_t smpteStart = 0, std::int16_t timeFormat = 0,
                                        double envelopeScale = 1.0);

// "stat": 48 bytes with the selection at 32 and 36.
Bytes StatBytes(std::int32_t selectionStart, std::int32_t selectionEnd);

// "tmpo": 36 bytes.
Bytes TempoBytes(double tempo, std::int32_t beatsPerBar, std::int32_t subdivisions, std::int32_t noteLength);

struct GroupEntry {
    std::int32_t GroupId{};
    std::int32_t Colour{};
};
// "grps" / "grp2": a count and 16-byte records.
Bytes GroupBytes(const std::vector<GroupEntry>& groups);

struct CueEntry {
    std::int32_t Start{};
    std::int32_t Length{};
    std::string Name;
    std::string Comment;
    std::string CueType = "rgn ";
};
// "cues": a count and variable records. The oldest layout has no CueType.
enum class CueLayout { WithCueType, WithoutCueType };
Bytes CueBytes(const std::vector<CueEntry>& cues, CueLayout layout);

struct StretchEntry {
    std::int32_t ClipId{};
    std::int32_t StretchedLength{};
};
// "loop": a count and 176-byte records.
Bytes LoopBytes(const std::vector<StretchEntry>& records);

// "mtro": 40 skipped bytes, sound set, enabled, then two counted texts; the
// pattern is stored with a closing zero byte inside its count.
Bytes MetronomeBytes(std::int32_t soundSet, std::int32_t enabled, const std::string& pattern,
                     const std::string& firstText = "Metronome");

struct WaveEntry {
    std::string Tag;  // four characters
    std::int32_t WaveId{};
    std::string Name;
    std::int32_t LengthSamples{};
};
// Entries of "LIST". Packed: the next entry follows the name's zero byte
// (Cool Edit 2000, Cool Edit Pro 1.2). Padded: four bytes and LengthSamples
// follow it. EntrySize counts from its own end to the end of the entry.
enum class WaveLayout { Packed, Padded };
Bytes WaveEntryBytes(const WaveEntry& entry, WaveLayout layout);
// A whole "LIST" payload: ListLength (the entries' byte count unless given)
// and the entries, then `after` (a "LISTFILE" end, padding...).
Bytes WaveListBytes(const std::vector<WaveEntry>& entries, WaveLayout layout, const Bytes& after = Bytes(),
                    std::int32_t listLength = -1);

struct WideWaveEntry {
    std::string Kind = "wav ";
    std::int32_t WaveId{};
    std::u16string Name;  // without the terminating zero unit, which is added
};
// "WLST": entries of kind, EntrySize, WaveId, 12 skipped bytes and the name.
Bytes WideWaveListBytes(const std::vector<WideWaveEntry>& entries);

}  // namespace morvanta::testing
