#include "reader/ByteReader.h"

#include <bit>
#include <cstring>

#include "reader/ReadError.h"

namespace morvanta {

void ByteReader::Require(std::int64_t position, std::int64_t count, const char* what) const {
    if (Contains(position, count)) return;
    std::string message = std::string(what) + " of " + std::to_string(count) + " byte" +
                          (count == 1 ? "" : "s") + " at offset " + std::to_string(position);
    if (position < 0 || position > Size())
        message += " lies outside the file of " + std::to_string(Size()) + " bytes";
    else
        message += " runs past the end of the file (" + std::to_string(Size() - position) +
                   " bytes left)";
    throw ReadError(position, message);
}

std::uint8_t ByteReader::Byte(std::int64_t position) const {
    Require(position, 1, "a byte");
    return bytes_[static_cast<std::size_t>(position)];
}

std::int16_t ByteReader::Int16(std::int64_t position) const {
    Require(position, 2, "a 16-bit integer");
    const auto* p = bytes_.data() + position;
    return static_cast<std::int16_t>(static_cast<std::uint16_t>(p[0] | (p[1] << 8)));
}

std::int32_t ByteReader::Int32(std::int64_t position) const {
    Require(position, 4, "a 32-bit integer");
    const auto* p = bytes_.data() + position;
    const std::uint32_t u = static_cast<std::uint32_t>(p[0]) | (static_cast<std::uint32_t>(p[1]) << 8) |
                            (static_cast<std::uint32_t>(p[2]) << 16) |
                            (static_cast<std::uint32_t>(p[3]) << 24);
    return static_cast<std::int32_t>(u);
}

double ByteReader::Double(std::int64_t position) const {
    Require(position, 8, "a double");
    const auto* p = bytes_.data() + position;
    std::uint64_t u = 0;
    for (int i = 7; i >= 0; --i) u = (u << 8) | p[i];
    return std::bit_cast<double>(u);
}

std::span<const std::uint8_t> ByteReader::Bytes(std::int64_t position, std::int64_t count) const {
    Require(position, count, "a field");
    return bytes_.subspan(static_cast<std::size_t>(position), static_cast<std::size_t>(count));
}

std::string ByteReader::Tag(std::int64_t position) const {
    auto b = Bytes(position, 4);
    return std::string(b.begin(), b.end());
}

std::string ByteReader::TextToZero(std::int64_t position) const {
    Require(position, 0, "a text");
    std::string text;
    for (auto i = static_cast<std::size_t>(position); i < bytes_.size() && bytes_[i] != 0; ++i)
        text.push_back(static_cast<char>(bytes_[i]));
    return text;
}

std::string ByteReader::NonZeroBytes(std::int64_t position, std::int64_t count) const {
    std::string text;
    for (std::uint8_t b : Bytes(position, count))
        if (b != 0) text.push_back(static_cast<char>(b));
    return text;
}

}  // namespace morvanta
