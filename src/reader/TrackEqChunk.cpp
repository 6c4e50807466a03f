// The track EQ chunk "tkeq" of the versions from Cool Edit Pro 2.00 to
// Audition 1.5 (docs/format/tracks.md, "The EQ chunk").
#include "model/VersionClasses.h"
#include "reader/ChunkReaders.h"
#include "reader/ReadLimits.h"

namespace morvanta {
namespace {

constexpr std::int64_t kTkeqRecordSize = 88;

bool HasTkeqLayout(std::string_view v) { return Pro200(v) || Pro21(v) || Aud10(v) || Aud15(v); }

}  // namespace

std::int64_t ReadTkeqChunk(ReadContext& ctx, const ChunkHeader& chunk) {
    if (!HasTkeqLayout(ctx.session.SesVersion)) return chunk.End();
    const ByteReader& file = ctx.file;
    const std::int64_t countPosition = chunk.PayloadPosition;
    const std::int32_t count = file.Int32(countPosition);
    RequireLoopCounter16(countPosition, count, "EQ record");
    // The records lie inside the chunk. Measured against the file, every
    // chunk of a file could read all the bytes behind it again, and many
    // small chunks would pile up records by the square of the file's size.
    RequireRoomBefore(chunk.End(), "chunk", countPosition, count, kTkeqRecordSize, countPosition + 4, "EQ record");

    for (std::int32_t i = 0; i < count; ++i) {
        const std::int64_t r = countPosition + 4 + i * kTkeqRecordSize;
        TrackEq eq;
        eq.TrackKey = file.Int32(r);
        eq.LowFrequency = file.Double(r + 8);
        eq.LowGain = file.Double(r + 16);
        eq.HighFrequency = file.Double(r + 24);
        eq.HighGain = file.Double(r + 32);
        eq.MidFrequency = file.Double(r + 40);
        // This chunk keeps the middle Q in front of the middle gain.
        eq.MidQ = file.Double(r + 48);
        eq.MidGain = file.Double(r + 56);
        eq.LowQ = file.Double(r + 64);
        eq.HighQ = file.Double(r + 72);
        eq.EqEnabled = 1;  // a track with a record here has its EQ on
        ctx.session.TrackEqs.push_back(eq);
    }
    return chunk.End();
}

}  // namespace morvanta
