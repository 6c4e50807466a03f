// Builds session files byte by byte for tests, examples and fuzz seeds:
// the header, chunks with their lengths, the version text, padding. Each
// chunk family adds helpers for its own payload layouts.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace morvanta::testing {

// A little-endian byte sequence under construction.
class Bytes {
public:
    Bytes& Byte(std::uint8_t value);
    Bytes& Int16(std::int16_t value);
    Bytes& Int32(std::int32_t value);
    Bytes& Double(double value);
    Bytes& Text(std::string_view text);          // the characters, no terminator
    Bytes& ZeroText(std::string_view text);      // the characters and a zero byte
    Bytes& Zeros(std::size_t count);
    Bytes& Append(const Bytes& other);
    // Pads with zero bytes up to `size` bytes in all.
    Bytes& PadTo(std::size_t size);

    std::size_t Size() const { return data_.size(); }
    const std::vector<std::uint8_t>& Data() const { return data_; }

private:
    std::vector<std::uint8_t> data_;
};

class SesBuilder {
public:
    // A chunk with its tag and the payload's own length.
    SesBuilder& Chunk(std::string_view tag, const Bytes& payload);
    // A chunk whose length field says something other than its payload size.
    SesBuilder& ChunkWithLength(std::string_view tag, std::int32_t declaredLength, const Bytes& payload);
    // The "vers" chunk: the text and zero bytes up to `paddedSize` (if larger).
    SesBuilder& Version(std::string_view text, std::size_t paddedSize = 0);
    // Overrides the header's DeclaredLength, which is otherwise the file size.
    SesBuilder& DeclaredLength(std::int32_t length);
    // Bytes behind the chunks that the header's length does not cover.
    SesBuilder& Trailer(const Bytes& bytes);

    std::vector<std::uint8_t> Build() const;

private:
    Bytes chunks_;
    Bytes trailer_;
    std::optional<std::int32_t> declaredLength_;
};

}  // namespace morvanta::testing
