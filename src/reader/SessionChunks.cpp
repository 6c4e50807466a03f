// Readers of this chunk family. Until a reader is built, its chunk is
// stepped over by its payload length, so nothing behind it is misread.
#include "reader/ChunkReaders.h"

namespace morvanta {

std::int64_t ReadHeaderChunk(ReadContext& ctx, const ChunkHeader& chunk) { return SkipChunk(ctx, chunk); }

std::int64_t ReadStatChunk(ReadContext& ctx, const ChunkHeader& chunk) { return SkipChunk(ctx, chunk); }

std::int64_t ReadTempoChunk(ReadContext& ctx, const ChunkHeader& chunk) { return SkipChunk(ctx, chunk); }

std::int64_t ReadGroupChunk(ReadContext& ctx, const ChunkHeader& chunk) { return SkipChunk(ctx, chunk); }

std::int64_t ReadCueChunk(ReadContext& ctx, const ChunkHeader& chunk) { return SkipChunk(ctx, chunk); }

std::int64_t ReadLoopChunk(ReadContext& ctx, const ChunkHeader& chunk) { return SkipChunk(ctx, chunk); }

std::int64_t ReadMetronomeChunk(ReadContext& ctx, const ChunkHeader& chunk) { return SkipChunk(ctx, chunk); }

}  // namespace morvanta
