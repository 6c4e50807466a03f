// Checks on counts and lengths taken from a session file, made before a
// reader loops or allocates by them. Each failure names the offset of the
// field, so a bad file fails alone with a message that points into it.
#pragma once

#include <cstdint>
#include <string_view>

#include "reader/ByteReader.h"

namespace morvanta {

// The largest count a 16-bit loop counter of the format holds.
inline constexpr std::int32_t kLoopCounter16Limit = 32767;

// Fails when `count` items of at least `itemSize` bytes each cannot lie
// between `firstItem` and `end`, the end of the `container` ("file",
// "chunk"). `countPosition` is where the count was read. A count of 0 or
// less passes: its loop does not run.
void RequireRoomBefore(std::int64_t end, std::string_view container, std::int64_t countPosition,
                       std::int64_t count, std::int64_t itemSize, std::int64_t firstItem, std::string_view what);

// The same, up to the end of the file.
inline void RequireRoomFor(const ByteReader& file, std::int64_t countPosition, std::int64_t count,
                           std::int64_t itemSize, std::int64_t firstItem, std::string_view what) {
    RequireRoomBefore(file.Size(), "file", countPosition, count, itemSize, firstItem, what);
}

// Fails when a count is above what a 16-bit loop counter holds.
void RequireLoopCounter16(std::int64_t countPosition, std::int32_t count, std::string_view what);

// The int32 length at `position`, which moves a reader on to what follows
// it. A negative length would turn the reading back, so it fails.
std::int64_t ReadLength(const ByteReader& file, std::int64_t position, std::string_view what);

}  // namespace morvanta
