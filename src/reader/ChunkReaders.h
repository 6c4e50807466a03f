// The chunk readers the dispatcher routes to. Each takes the chunk and
// returns the position of the next chunk; most return chunk.End().
#pragma once

#include "reader/ImportSes.h"

namespace morvanta {

std::int64_t SkipChunk(ReadContext&, const ChunkHeader& chunk);

// Session-level chunks.
std::int64_t ReadHeaderChunk(ReadContext&, const ChunkHeader&);     // "hdr "
std::int64_t ReadStatChunk(ReadContext&, const ChunkHeader&);       // "stat"
std::int64_t ReadTempoChunk(ReadContext&, const ChunkHeader&);      // "tmpo"
std::int64_t ReadGroupChunk(ReadContext&, const ChunkHeader&);      // "grps", "grp2"
std::int64_t ReadCueChunk(ReadContext&, const ChunkHeader&);        // "cues"
std::int64_t ReadLoopChunk(ReadContext&, const ChunkHeader&);       // "loop"
std::int64_t ReadMetronomeChunk(ReadContext&, const ChunkHeader&);  // "mtro"

// Wave lists.
std::int64_t ReadWaveList(ReadContext&, const ChunkHeader&);      // "LIST"
std::int64_t ReadWideWaveList(ReadContext&, const ChunkHeader&);  // "WLST"

// Block chunks.
std::int64_t ReadBk25Chunk(ReadContext&, const ChunkHeader&);
std::int64_t ReadBk20Chunk(ReadContext&, const ChunkHeader&);
std::int64_t ReadBlkChunk(ReadContext&, const ChunkHeader&);
std::int64_t ReadBlk2Chunk(ReadContext&, const ChunkHeader&);

// Tracks, their EQ, clip envelopes, buses, effect racks.
std::int64_t ReadTrackChunk(ReadContext&, const ChunkHeader&);  // "trks", "TRKS"
std::int64_t ReadTkeqChunk(ReadContext&, const ChunkHeader&);
std::int64_t ReadEp20Chunk(ReadContext&, const ChunkHeader&);
std::int64_t ReadEnvpChunk(ReadContext&, const ChunkHeader&);
std::int64_t ReadBusChunk(ReadContext&, const ChunkHeader&);        // "BUSS", "buss"
std::int64_t ReadTrackRackChunk(ReadContext&, const ChunkHeader&);  // "tkfx"

}  // namespace morvanta
