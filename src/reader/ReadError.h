// A fault in a session file: a read past the end, a length or count that
// points outside the file, a value that cannot be held. It carries the byte
// offset; the chunk walk adds the chunk's tag. The file then fails alone.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

namespace morvanta {

class ReadError : public std::runtime_error {
public:
    ReadError(std::int64_t offset, const std::string& message)
        : std::runtime_error(message), Offset(offset) {}

    std::int64_t Offset;
    std::string ChunkTag;  // empty outside a chunk
};

}  // namespace morvanta
