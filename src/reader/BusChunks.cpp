// Readers of this chunk family. Until a reader is built, its chunk is
// stepped over by its payload length, so nothing behind it is misread.
#include "reader/ChunkReaders.h"

namespace morvanta {

std::int64_t ReadBusChunk(ReadContext& ctx, const ChunkHeader& chunk) { return SkipChunk(ctx, chunk); }

}  // namespace morvanta
