// Readers of the small session-level chunks: header, selection, tempo,
// groups, cues, stretch records and metronome (docs/format/session.md).
#include "model/VersionClasses.h"
#include "reader/ChunkReaders.h"
#include "reader/ReadError.h"
#include "reader/ReadLimits.h"
#include "services/NumberText.h"

namespace morvanta {
namespace {

// Fixed places of the file, not of the chunk, read while "hdr " is handled.
constexpr std::int64_t kTimeFormatOffset = 320;
constexpr std::int64_t kEnvelopeScaleOffset = 372;
constexpr std::int32_t kTimeFormatNeedsMoreThan = 324;
constexpr std::int32_t kEnvelopeScaleNeedsMoreThan = 372;

constexpr std::int64_t kHeaderBytes = 36;
constexpr std::int64_t kStatBytes = 48;
constexpr std::int64_t kTempoBytes = 36;
constexpr std::int64_t kGroupRecordBytes = 16;
constexpr std::int64_t kLoopRecordBytes = 176;
// Start, Length and two 16-bit values; the texts may be empty.
constexpr std::int64_t kSmallestCueBytes = 12;

// A Pro12 cue has no CueType and stands as if it held "rgn ".
constexpr std::int32_t kRegionCueType = 'r' | ('g' << 8) | ('n' << 16) | (' ' << 24);

// The low 16 bits, as a value held in a 16-bit field.
std::int32_t Low16(std::int32_t value) { return static_cast<std::int16_t>(value & 0xFFFF); }

// The records of every chunk of one kind lie in their own payloads, so
// together they fit in the file. A count is checked against the rest of the
// file only, and chunks whose records reach over the chunks behind them
// could otherwise pile up records quadratically in the file's size.
void RequireRoomForAll(const ByteReader& file, std::int64_t countPosition, std::size_t held, std::int32_t count,
                       std::int64_t itemSize, std::string_view what, std::string_view whatPlural) {
    if (count <= 0) return;
    const std::int64_t total = static_cast<std::int64_t>(held) + count;
    if (total <= file.Size() / itemSize) return;
    throw ReadError(countPosition, "the " + std::string(what) + " count " + std::to_string(count) + " at offset " +
                                       std::to_string(countPosition) + " brings the " + std::string(whatPlural) +
                                       " of this file to " + std::to_string(total) + ", more than its " +
                                       std::to_string(file.Size()) + " bytes can hold");
}

}  // namespace

std::int64_t ReadHeaderChunk(ReadContext& ctx, const ChunkHeader& chunk) {
    // The probe wants only the version text.
    if (ctx.VersionOnly) return chunk.End();
    const ByteReader& file = ctx.file;
    Session& s = ctx.session;
    const std::int64_t p = chunk.PayloadPosition;
    // The first 36 bytes are read whatever the chunk's own length says.
    file.Require(p, kHeaderBytes, "the session header");
    s.SampleRate = file.Int32(p);
    s.MasterVolume = file.Double(p + 16);
    s.SmpteStart = file.Int32(p + 32);
    if (ctx.DeclaredLength > kTimeFormatNeedsMoreThan) s.TimeFormat = file.Int16(kTimeFormatOffset);
    // Only an exact 2.0 doubles the clip envelope values; anything else, or
    // nothing read at all, leaves them as they are.
    double scale = 1.0;
    if (ctx.DeclaredLength > kEnvelopeScaleNeedsMoreThan) scale = file.Double(kEnvelopeScaleOffset);
    s.EnvelopeGainScale = scale == 2.0 ? 2.0 : 1.0;
    return chunk.End();
}

std::int64_t ReadStatChunk(ReadContext& ctx, const ChunkHeader& chunk) {
    const std::int64_t p = chunk.PayloadPosition;
    ctx.file.Require(p, kStatBytes, "the selection record");
    ctx.session.SelectionStart = ctx.file.Int32(p + 32);
    ctx.session.SelectionEnd = ctx.file.Int32(p + 36);
    return chunk.End();
}

std::int64_t ReadTempoChunk(ReadContext& ctx, const ChunkHeader& chunk) {
    const auto& version = ctx.session.SesVersion;
    if (Aud10(version)) return chunk.End();
    const ByteReader& file = ctx.file;
    Session& s = ctx.session;
    const std::int64_t p = chunk.PayloadPosition;
    file.Require(p, kTempoBytes, "the tempo record");
    s.Tempo = file.Double(p);
    s.BeatsPerBar = file.Int32(p + 8);
    // Subdivisions and NoteLength are 16-bit values of the session; a larger
    // value keeps its low 16 bits.
    s.Subdivisions = Low16(file.Int32(p + 12));
    if (!Pro200(version)) s.NoteLength = Low16(file.Int32(p + 32));
    return chunk.End();
}

std::int64_t ReadGroupChunk(ReadContext& ctx, const ChunkHeader& chunk) {
    if (chunk.PayloadLength <= 0) return chunk.End();
    const ByteReader& file = ctx.file;
    const std::int64_t p = chunk.PayloadPosition;
    const std::int32_t count = file.Int32(p);
    RequireRoomFor(file, p, count, kGroupRecordBytes, p + 4, "group");
    RequireRoomForAll(file, p, ctx.session.ClipGroups.size(), count, kGroupRecordBytes, "group", "groups");
    const bool ce2000 = Ce2000(ctx.session.SesVersion);
    for (std::int32_t i = 0; i < count; ++i) {
        const std::int64_t record = p + 4 + i * kGroupRecordBytes;
        ClipGroup group;
        group.GroupId = file.Int32(record);
        const std::int32_t colour = file.Int32(record + 4);
        if (ce2000) {
            // Cool Edit 2000 keeps a colour number; 112 / (value + 1) puts it
            // on the hue scale of 0 to 240.
            const double divisor = static_cast<double>(colour) + 1.0;
            if (divisor == 0)
                throw ReadError(record + 4, "the group colour -1 at offset " + std::to_string(record + 4) +
                                                " gives no hue (112 / 0)");
            group.Hue = RoundHalfEven(112.0 / divisor);
        } else {
            group.Hue = colour;
        }
        ctx.session.ClipGroups.push_back(group);
    }
    return chunk.End();
}

std::int64_t ReadCueChunk(ReadContext& ctx, const ChunkHeader& chunk) {
    const ByteReader& file = ctx.file;
    const std::int64_t p = chunk.PayloadPosition;
    // Without a payload there are no records, and the count is not needed:
    // an empty chunk may be the last bytes of the file.
    if (chunk.PayloadLength <= 0) return chunk.End();
    // The count is a 16-bit number of the session.
    const std::int32_t count = Low16(file.Int32(p));
    RequireRoomFor(file, p, count, kSmallestCueBytes, p + 4, "cue");
    RequireRoomForAll(file, p, ctx.session.SesCues.size(), count, kSmallestCueBytes, "cue", "cues");
    const bool pro12 = Pro12(ctx.session.SesVersion);
    std::int64_t at = p + 4;
    for (std::int32_t i = 0; i < count; ++i) {
        SesCue cue;
        cue.Start = file.Int32(at);
        cue.Length = file.Int32(at + 4);
        at += 12;
        // Each text runs to its zero byte, or to the end of the file.
        const std::string name = file.TextToZero(at);
        at += static_cast<std::int64_t>(name.size()) + 1;
        if (pro12) {
            cue.CueType = kRegionCueType;
        } else {
            cue.CueType = file.Int32(at);
            at += 4;
        }
        const std::string comment = file.TextToZero(at);
        at += static_cast<std::int64_t>(comment.size()) + 1;
        cue.Name = FixedText(name);
        cue.Comment = FixedText(comment);
        ctx.session.SesCues.push_back(std::move(cue));
    }
    return chunk.End();
}

std::int64_t ReadLoopChunk(ReadContext& ctx, const ChunkHeader& chunk) {
    const auto& version = ctx.session.SesVersion;
    if (!(Aud15(version) || Aud20(version) || Aud30(version))) return chunk.End();
    if (chunk.PayloadLength <= 0) return chunk.End();
    const ByteReader& file = ctx.file;
    const std::int64_t p = chunk.PayloadPosition;
    const std::int32_t count = file.Int32(p);
    RequireRoomFor(file, p, count, kLoopRecordBytes, p + 4, "stretch record");
    RequireRoomForAll(file, p, ctx.session.ClipStretches.size(), count, kLoopRecordBytes, "stretch record",
                      "stretch records");
    for (std::int32_t i = 0; i < count; ++i) {
        const std::int64_t record = p + 4 + i * kLoopRecordBytes;
        file.Require(record, kLoopRecordBytes, "a stretch record");
        ctx.session.ClipStretches.push_back({file.Int32(record), file.Int32(record + 40)});
    }
    return chunk.End();
}

std::int64_t ReadMetronomeChunk(ReadContext& ctx, const ChunkHeader& chunk) {
    const auto& version = ctx.session.SesVersion;
    if (Pro200(version) || Aud10(version)) return chunk.End();
    const ByteReader& file = ctx.file;
    Session& s = ctx.session;
    const std::int64_t p = chunk.PayloadPosition;
    s.MetronomeSoundSet = file.Int32(p + 40);
    s.MetronomeEnabled = file.Int32(p + 44);
    const std::int64_t unusedLength = ReadLength(file, p + 48, "metronome text");
    file.Require(p + 52, unusedLength, "the first metronome text");
    const std::int64_t patternAt = p + 52 + unusedLength;
    const std::int64_t patternLength = ReadLength(file, patternAt, "metronome pattern");
    const auto pattern = file.Bytes(patternAt + 4, patternLength);
    std::string text;
    for (std::uint8_t b : pattern) {
        if (b == 0) break;
        text.push_back(static_cast<char>(b));
    }
    s.MetronomePattern = std::move(text);
    return chunk.End();
}

}  // namespace morvanta
