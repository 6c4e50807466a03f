// Payloads of the block chunks "bk25", "bk20", "blk " and "blk2", laid out
// byte by byte from the format's record tables, for every writer version.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "ExampleSessions.h"
#include "SesBuilder.h"

namespace morvanta::testing {

// One block (clip) as a session stores it. Fields a layout has no room for
// are not written.
struct Block {
    std::int32_t BlockId = 1;
    std::int32_t WaveId = 1;
    double LeftGain = 1.0;
    double RightGain = 1.0;
    std::int32_t Start = 0;
    std::int32_t Length = 44100;
    std::int32_t SourceStart = 0;
    std::int32_t Flags = 0;  // 2 locked, 4 muted
    std::int32_t TrackId = 1;
    std::int32_t GroupId = 0;
    std::int32_t Hue = 0;
    std::string Name{};             // the text of "blk " records (Cool Edit 2000 and later)
    std::int32_t SpecialBytes = 0;  // Audition 2.0 blocks of tracks 250000-259999: bytes of the record behind
};

// The fade record behind a block of an Audition 3.0 "bk25".
struct BlockFade {
    std::int32_t FadeInLength = 0;
    std::int32_t FadeOutLength = 0;
    std::int32_t FadeInShape = 0;
    std::int32_t FadeOutShape = 0;
    std::int32_t FadeInType = 0;
    std::int32_t FadeOutType = 0;
};

// Records.
Bytes Bk25Record(const Block& block);       // 72 bytes; SpecialBytes at offset 64
Bytes Bk25FadeRecord(const BlockFade& fade);  // 40 bytes
Bytes Bk20Record(const Block& block);       // 56 bytes, the old "bk20" layout
Bytes BlkRecord(std::string_view version, const Block& block);  // 88 bytes in the version's layout

// Whole payloads for a writer version.
// "bk25" (and "bk20" outside Cool Edit Pro 2.0/2.1 and Audition 1.0): count,
// block size, records. Audition 1.0 has another int32 first and 88-byte
// records; Audition 3.0 puts a fade record behind each block (`fades[i]`, or
// an empty one) and 522 bytes beyond the block size behind a block of the
// video track; Audition 2.0 puts SpecialBytes bytes behind a block of a track
// from 250000 up to 259999.
Bytes Bk25Payload(std::string_view version, const std::vector<Block>& blocks,
                  const std::vector<BlockFade>& fades = {}, std::int32_t blockSize = 72);
// "bk20" of Cool Edit Pro 2.0/2.1 and Audition 1.0: count, 4 bytes, 56-byte records.
Bytes Bk20Payload(const std::vector<Block>& blocks);
// "blk ": count, 88-byte records.
Bytes BlkPayload(std::string_view version, const std::vector<Block>& blocks);

// "blk2" of Cool Edit 2000: count, 40-byte records of a block id and a hue byte.
struct BlockHue {
    std::int32_t BlockId = 1;
    std::uint8_t Hue = 0;
};
Bytes Blk2Payload(const std::vector<BlockHue>& hues);

// Broken block chunks for the fuzz corpus.
void AppendBlockFuzzSeeds(std::vector<NamedFile>& seeds);

}  // namespace morvanta::testing
