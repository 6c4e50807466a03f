// Bounds-checked little-endian reads at absolute file positions. Every read
// names its position and width; a read that does not fit in the file throws
// ReadError with the offset, so no reader can run past the end.
#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace morvanta {

class ByteReader {
public:
    explicit ByteReader(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

    std::int64_t Size() const { return static_cast<std::int64_t>(bytes_.size()); }
    bool Contains(std::int64_t position, std::int64_t count) const {
        return position >= 0 && count >= 0 && position <= Size() && count <= Size() - position;
    }

    std::uint8_t Byte(std::int64_t position) const;
    std::int16_t Int16(std::int64_t position) const;
    std::int32_t Int32(std::int64_t position) const;
    double Double(std::int64_t position) const;
    std::span<const std::uint8_t> Bytes(std::int64_t position, std::int64_t count) const;

    // Four characters, as the tags of chunks and wave entries are stored.
    std::string Tag(std::int64_t position) const;
    // Bytes up to, not including, the first zero byte or the end of the file.
    std::string TextToZero(std::int64_t position) const;
    // Every non-zero byte of a field, in order: zero bytes are dropped.
    std::string NonZeroBytes(std::int64_t position, std::int64_t count) const;

    // Throws unless [position, position + count) lies in the file.
    void Require(std::int64_t position, std::int64_t count, const char* what) const;

private:
    std::span<const std::uint8_t> bytes_;
};

}  // namespace morvanta
