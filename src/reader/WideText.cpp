#include "reader/WideText.h"

namespace morvanta {

WideTextEncoder::WideTextEncoder(const std::string& charset) {
    if (charset.empty()) return;
    converter_.emplace(charset, "UTF-16LE");
    if (!converter_->Valid()) converter_.reset();
}

void WideTextEncoder::Append(std::uint16_t unit, std::string& text) {
    if (unit < 128 || !converter_) {
        text.push_back(unit < 256 ? static_cast<char>(unit) : '?');
        return;
    }
    const char in[2] = {static_cast<char>(unit & 0xFF), static_cast<char>(unit >> 8)};
    if (!converter_->AppendCharacter(std::string_view(in, 2), text)) text.push_back('?');
}

}  // namespace morvanta
