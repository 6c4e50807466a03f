#include "reader/ReadLimits.h"

#include <string>

#include "reader/ReadError.h"

namespace morvanta {

void RequireRoomBefore(std::int64_t end, std::string_view container, std::int64_t countPosition,
                       std::int64_t count, std::int64_t itemSize, std::int64_t firstItem, std::string_view what) {
    if (count <= 0) return;
    const std::int64_t room = firstItem >= 0 && firstItem <= end ? end - firstItem : 0;
    if (count <= room / itemSize) return;
    throw ReadError(countPosition, "the " + std::string(what) + " count " + std::to_string(count) +
                                       " at offset " + std::to_string(countPosition) + " needs at least " +
                                       std::to_string(count * itemSize) + " bytes from offset " +
                                       std::to_string(firstItem) + ", but the " + std::string(container) +
                                       " has " + std::to_string(room) + " there");
}

void RequireLoopCounter16(std::int64_t countPosition, std::int32_t count, std::string_view what) {
    if (count <= kLoopCounter16Limit) return;
    throw ReadError(countPosition, "the " + std::string(what) + " count " + std::to_string(count) +
                                       " at offset " + std::to_string(countPosition) + " is above " +
                                       std::to_string(kLoopCounter16Limit) +
                                       ", the most this list can hold");
}

std::int64_t ReadLength(const ByteReader& file, std::int64_t position, std::string_view what) {
    const std::int32_t length = file.Int32(position);
    if (length < 0) {
        throw ReadError(position, "the " + std::string(what) + " length " + std::to_string(length) +
                                      " at offset " + std::to_string(position) + " is negative");
    }
    return length;
}

}  // namespace morvanta
