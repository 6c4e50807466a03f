// Readers of the media lists: "LIST" with 8-bit names and "WLST" with 16-bit
// names (docs/format/media.md).
#include <array>
#include <cstdint>

#include "model/VersionClasses.h"
#include "reader/ChunkReaders.h"
#include "reader/ReadError.h"
#include "reader/WideText.h"

namespace morvanta {
namespace {

// Where the walk goes on behind a "LIST" chunk without a list.
constexpr std::int64_t kEmptyListStepShort = 16;
constexpr std::int64_t kEmptyListStepLong = 28;
// Tag, EntrySize, WaveId and four skipped bytes stand ahead of a name.
constexpr std::int64_t kEntryHeadBytes = 16;
// Behind the name's zero byte of the later versions: four bytes, then
// LengthSamples (Audition 1.5 on).
constexpr std::int64_t kEntryTailBytes = 8;
constexpr std::int64_t kLengthBehindName = 4;

// A "WLST" entry: kind, EntrySize, WaveId, twelve skipped bytes, the name.
constexpr std::int64_t kWideNameOffset = 24;
constexpr std::int64_t kWideCountedFrom = 8;

// Versions whose entries follow each other directly behind the name.
bool PackedEntries(const std::string& v) { return Ce2000(v) || Pro12(v); }

// The name buffers of a sound file's wave lists lie inside their entries,
// so together they are never longer than the file. Entries whose buffers
// overlap could otherwise make a file of a few megabytes take hours.
void SpendOnNames(ReadContext& ctx, std::int64_t bytes, std::int64_t position) {
    ctx.WaveNameBytes += bytes;
    if (ctx.WaveNameBytes <= 2 * ctx.file.Size() + 64) return;
    throw ReadError(position, "the wave list names reach offset " + std::to_string(position) +
                                  " again and again: they describe more than the file's " +
                                  std::to_string(ctx.file.Size()) + " bytes can hold");
}

}  // namespace

std::int64_t ReadWaveList(ReadContext& ctx, const ChunkHeader& chunk) {
    const ByteReader& file = ctx.file;
    const std::string& v = ctx.session.SesVersion;
    const std::int64_t p = chunk.PayloadPosition;
    if (chunk.PayloadLength <= 0) {
        const bool shortStep = Pro200(v) || Pro12(v) || Pro21(v) || Aud10(v);
        return p + (shortStep ? kEmptyListStepShort : kEmptyListStepLong);
    }
    // This length, not the chunk's, decides where the next chunk starts.
    const std::int32_t listLength = file.Int32(p);
    std::int64_t cursor = p + 4;
    const std::int64_t next = p + 4 + static_cast<std::int64_t>(listLength);
    // With the language option the later versions take their names from "WLST".
    if (ctx.options.NonEnglish && !(Ce2000(v) || Pro20(v) || Pro21(v) || Pro12(v) || Aud10(v))) return next;
    if (listLength == 0) return cursor;

    const bool packed = PackedEntries(v);
    const bool withLength = Aud15(v) || Aud20(v) || Aud30(v);
    // The name's buffer: EntrySize - 16 bytes, and 8 bytes more in the
    // versions without the tail behind the name.
    const std::int64_t bufferShortfall = packed ? 8 : 16;
    std::int64_t consumed = 0;
    for (;;) {
        const std::string tag = file.Tag(cursor);
        if (tag == "LIST" && file.Tag(cursor + 4) == "FILE") break;
        const std::int32_t entrySize = file.Int32(cursor + 4);
        SesWave wave;
        wave.Tag = tag;
        wave.WaveId = file.Int32(cursor + 8);
        const std::int64_t bufferLength = static_cast<std::int64_t>(entrySize) - bufferShortfall;
        if (bufferLength < 0)
            throw ReadError(cursor + 4, "the wave list entry at offset " + std::to_string(cursor) +
                                            " declares a size of " + std::to_string(entrySize) +
                                            ", too small for its name");
        // The name is every non-zero byte of its buffer; the walk goes on by
        // the length of the name found, not by the entry's size.
        SpendOnNames(ctx, bufferLength, cursor + kEntryHeadBytes);
        const std::string name = file.NonZeroBytes(cursor + kEntryHeadBytes, bufferLength);
        const std::int64_t end = cursor + kEntryHeadBytes + static_cast<std::int64_t>(name.size()) + 1;
        wave.Name = FixedText(name);
        if (packed) {
            consumed += static_cast<std::int64_t>(name.size()) + 17;
        } else {
            if (withLength) wave.LengthSamples = file.Int32(end + kLengthBehindName);
            consumed += static_cast<std::int64_t>(name.size()) + 25;
        }
        ctx.session.SesWaves.push_back(std::move(wave));
        if (consumed >= listLength) break;
        cursor = packed ? end : end + kEntryTailBytes;
    }
    return next;
}

std::int64_t ReadWideWaveList(ReadContext& ctx, const ChunkHeader& chunk) {
    const ByteReader& file = ctx.file;
    const std::int64_t p = chunk.PayloadPosition;
    if (chunk.PayloadLength <= 0) return p + kEmptyListStepLong;
    WideTextEncoder encoder(ctx.options.Charset);
    const std::int64_t end = chunk.End();
    std::int64_t entry = p;
    for (;;) {
        const std::string kind = file.Tag(entry);
        const std::int32_t entrySize = file.Int32(entry + 4);
        if (entrySize < kWideNameOffset - kWideCountedFrom)
            throw ReadError(entry + 4, "the 16-bit wave list entry at offset " + std::to_string(entry) +
                                           " declares a size of " + std::to_string(entrySize) +
                                           ", too small for its name");
        SesWave wave;
        wave.Tag = kind == "wav " ? kind : "    ";
        wave.WaveId = file.Int32(entry + 8);
        // The terminating zero unit is inside the count; it stays for now.
        const std::int64_t units = (static_cast<std::int64_t>(entrySize) - 16) / 2;
        SpendOnNames(ctx, units * 2, entry + kWideNameOffset);
        const auto bytes = file.Bytes(entry + kWideNameOffset, units * 2);
        std::string name;
        for (std::size_t i = 0; i + 1 < bytes.size(); i += 2)
            encoder.Append(static_cast<std::uint16_t>(bytes[i] | (bytes[i + 1] << 8)), name);
        wave.Name = FixedText(name);
        ctx.session.SesWaves.push_back(std::move(wave));
        entry += kWideCountedFrom + entrySize;
        if (entry >= end) break;
    }
    return end;
}

}  // namespace morvanta
