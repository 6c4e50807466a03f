#include "SesBuilder.h"

#include <bit>

namespace morvanta::testing {

Bytes& Bytes::Byte(std::uint8_t value) {
    data_.push_back(value);
    return *this;
}

Bytes& Bytes::Int16(std::int16_t value) {
    const auto u = static_cast<std::uint16_t>(value);
    data_.push_back(static_cast<std::uint8_t>(u & 0xFF));
    data_.push_back(static_cast<std::uint8_t>(u >> 8));
    return *this;
}

Bytes& Bytes::Int32(std::int32_t value) {
    const auto u = static_cast<std::uint32_t>(value);
    for (int shift = 0; shift < 32; shift += 8) data_.push_back(static_cast<std::uint8_t>((u >> shift) & 0xFF));
    return *this;
}

Bytes& Bytes::Double(double value) {
    const auto u = std::bit_cast<std::uint64_t>(value);
    for (int shift = 0; shift < 64; shift += 8) data_.push_back(static_cast<std::uint8_t>((u >> shift) & 0xFF));
    return *this;
}

Bytes& Bytes::Text(std::string_view text) {
    for (char c : text) data_.push_back(static_cast<std::uint8_t>(c));
    return *this;
}

Bytes& Bytes::ZeroText(std::string_view text) { return Text(text).Byte(0); }

Bytes& Bytes::Zeros(std::size_t count) {
    data_.insert(data_.end(), count, 0);
    return *this;
}

Bytes& Bytes::Append(const Bytes& other) {
    data_.insert(data_.end(), other.data_.begin(), other.data_.end());
    return *this;
}

Bytes& Bytes::PadTo(std::size_t size) {
    if (data_.size() < size) data_.resize(size, 0);
    return *this;
}

SesBuilder& SesBuilder::Chunk(std::string_view tag, const Bytes& payload) {
    return ChunkWithLength(tag, static_cast<std::int32_t>(payload.Size()), payload);
}

SesBuilder& SesBuilder::ChunkWithLength(std::string_view tag, std::int32_t declaredLength, const Bytes& payload) {
    std::string fourCharacters(tag.substr(0, 4));
    fourCharacters.resize(4, ' ');
    chunks_.Text(fourCharacters).Int32(declaredLength).Append(payload);
    return *this;
}

SesBuilder& SesBuilder::Version(std::string_view text, std::size_t paddedSize) {
    return Chunk("vers", Bytes().Text(text).PadTo(paddedSize));
}

SesBuilder& SesBuilder::DeclaredLength(std::int32_t length) {
    declaredLength_ = length;
    return *this;
}

SesBuilder& SesBuilder::Trailer(const Bytes& bytes) {
    trailer_.Append(bytes);
    return *this;
}

std::vector<std::uint8_t> SesBuilder::Build() const {
    const auto size = static_cast<std::int32_t>(12 + chunks_.Size());
    Bytes file;
    file.Text("COOLNESS").Int32(declaredLength_.value_or(size)).Append(chunks_).Append(trailer_);
    return file.Data();
}

}  // namespace morvanta::testing
