#include "reader/WideText.h"

#include <array>
#include <cstdint>

#include "services/Recoding.h"

namespace morvanta {
namespace {

const iconv_t kNoConversion = reinterpret_cast<iconv_t>(static_cast<std::intptr_t>(-1));

}  // namespace

WideTextEncoder::WideTextEncoder(const std::string& charset)
    : cd_(charset.empty() ? kNoConversion : iconv_open(IconvCharsetName(charset).c_str(), "UTF-16LE")) {}

WideTextEncoder::~WideTextEncoder() {
    if (Usable()) iconv_close(cd_);
}

bool WideTextEncoder::Usable() const { return cd_ != kNoConversion; }

void WideTextEncoder::Append(std::uint16_t unit, std::string& text) {
    if (unit < 128 || !Usable()) {
        text.push_back(unit < 256 ? static_cast<char>(unit) : '?');
        return;
    }
    std::array<char, 2> in{static_cast<char>(unit & 0xFF), static_cast<char>(unit >> 8)};
    std::array<char, 8> out{};
    char* inPtr = in.data();
    char* outPtr = out.data();
    std::size_t inLeft = in.size();
    std::size_t outLeft = out.size();
    if (iconv(cd_, &inPtr, &inLeft, &outPtr, &outLeft) == static_cast<std::size_t>(-1)) {
        iconv(cd_, nullptr, nullptr, nullptr, nullptr);  // back to the initial state
        text.push_back('?');
        return;
    }
    text.append(out.data(), static_cast<std::size_t>(outPtr - out.data()));
}

}  // namespace morvanta
