// 16-bit characters of a session file as the 8-bit text that the rest of
// the conversion works with (docs/format/tracks.md, "Texts").
#pragma once

#include <iconv.h>

#include <cstdint>
#include <string>

namespace morvanta {

// Writes each 16-bit character code as the bytes of the charset that the
// finished document is recoded from, so that the recoding gives the
// character back. Without a charset that iconv knows, a code below 256
// stands for itself and any other becomes "?", as a code-page conversion
// writes a character it cannot show. Plain ASCII always stays as it is.
class WideTextEncoder {
public:
    explicit WideTextEncoder(const std::string& charset);
    ~WideTextEncoder();
    WideTextEncoder(const WideTextEncoder&) = delete;
    WideTextEncoder& operator=(const WideTextEncoder&) = delete;

    void Append(std::uint16_t unit, std::string& text);

private:
    bool Usable() const;
    iconv_t cd_;
};

}  // namespace morvanta
