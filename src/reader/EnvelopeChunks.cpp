// The clip envelope chunks "ep20" and "envp", both read into EnvelopePoints
// (docs/format/tracks.md, "Clip envelopes"). The dispatcher reads "envp"
// only while EnvelopePoints is still empty.
#include "reader/ChunkReaders.h"
#include "reader/ReadLimits.h"
#include "services/NumberText.h"

namespace morvanta {
namespace {

constexpr std::int32_t kVolumeLane = 1;
constexpr std::int32_t kPanLane = 2;

constexpr std::int64_t kEp20GroupHead = 16;
constexpr std::int64_t kEp20LaneHead = 12;
constexpr std::int64_t kEp20PointSize = 12;
constexpr std::int64_t kEnvpGroupHead = 16;
constexpr std::int64_t kEnvpPointSize = 24;

// The items a count announces lie inside the chunk. Measured against the
// file, each of many small chunks could read every point behind it again,
// and the points would pile up by the square of the file's size.
void RequireRoomInChunk(const ChunkHeader& chunk, std::int64_t countPosition, std::int32_t count,
                        std::int64_t itemSize, std::int64_t firstItem, const char* what) {
    RequireRoomBefore(chunk.End(), "chunk", countPosition, count, itemSize, firstItem, what);
}

// The counts of "ep20" are held in 16-bit loop counters.
std::int32_t Ep20Count(const ByteReader& file, const ChunkHeader& chunk, std::int64_t position,
                       std::int64_t itemSize, const char* what) {
    const std::int32_t count = file.Int32(position);
    RequireLoopCounter16(position, count, what);
    RequireRoomInChunk(chunk, position, count, itemSize, position + 4, what);
    return count;
}

}  // namespace

std::int64_t ReadEp20Chunk(ReadContext& ctx, const ChunkHeader& chunk) {
    if (chunk.PayloadLength <= 0) return chunk.End();
    const ByteReader& file = ctx.file;
    Session& session = ctx.session;
    std::int64_t p = chunk.PayloadPosition;
    const std::int32_t groups = Ep20Count(file, chunk, p, kEp20GroupHead, "envelope group");
    p += 4;
    for (std::int32_t g = 0; g < groups; ++g) {
        const std::int32_t clipId = file.Int32(p + 8);
        const std::int32_t lanes = Ep20Count(file, chunk, p + 12, kEp20LaneHead, "envelope lane");
        p += kEp20GroupHead;
        for (std::int32_t l = 0; l < lanes; ++l) {
            const std::int32_t points = file.Int32(p);
            RequireLoopCounter16(p, points, "envelope point");
            RequireRoomInChunk(chunk, p, points, kEp20PointSize, p + kEp20LaneHead, "envelope point");
            const std::int32_t kind = file.Int32(p + 4);
            p += kEp20LaneHead;
            // A lane of another kind is read over and not stored.
            const bool stored = kind == kVolumeLane || kind == kPanLane;
            for (std::int32_t i = 0; i < points && stored; ++i) {
                const std::int64_t point = p + i * kEp20PointSize;
                const double value = file.Double(point + 4);
                session.EnvelopePoints.push_back(
                    {clipId, kind, file.Int32(point),
                     kind == kVolumeLane ? session.EnvelopeGainScale * value : value});
            }
            if (points > 0) p += points * kEp20PointSize;
        }
    }
    return chunk.End();
}

std::int64_t ReadEnvpChunk(ReadContext& ctx, const ChunkHeader& chunk) {
    if (chunk.PayloadLength <= 0) return chunk.End();
    const ByteReader& file = ctx.file;
    Session& session = ctx.session;
    std::int64_t p = chunk.PayloadPosition;
    const std::int32_t groups = file.Int32(p);
    RequireRoomInChunk(chunk, p, groups, kEnvpGroupHead, p + 4, "envelope group");
    p += 4;
    for (std::int32_t g = 0; g < groups; ++g) {
        const std::int32_t clipId = file.Int32(p + 4);
        const std::int32_t volumeCount = file.Int32(p + 8);
        const std::int32_t panCount = file.Int32(p + 12);
        const std::int64_t volumeCountPosition = p + 8;
        const std::int64_t panCountPosition = p + 12;
        p += kEnvpGroupHead;
        RequireRoomInChunk(chunk, volumeCountPosition, volumeCount, kEnvpPointSize, p, "volume point");
        for (std::int32_t i = 0; i < volumeCount; ++i, p += kEnvpPointSize) {
            // Rounded to 12 places first, then scaled.
            const double value = RoundTo12Places(file.Double(p + 8)) * session.EnvelopeGainScale;
            session.EnvelopePoints.push_back({clipId, kVolumeLane, file.Int32(p), value});
        }
        RequireRoomInChunk(chunk, panCountPosition, panCount, kEnvpPointSize, p, "pan point");
        for (std::int32_t i = 0; i < panCount; ++i, p += kEnvpPointSize)
            session.EnvelopePoints.push_back({clipId, kPanLane, file.Int32(p), file.Double(p + 8)});
    }
    return chunk.End();
}

}  // namespace morvanta
