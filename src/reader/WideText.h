// 16-bit characters of a session file as the 8-bit text that the rest of
// the conversion works with (docs/format/tracks.md, "Texts").
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "services/Recoding.h"

namespace morvanta {

// Writes each 16-bit character code as the bytes of the charset that the
// finished document is recoded from, so that the recoding gives the
// character back. Without a charset that iconv knows, a code below 256
// stands for itself and any other becomes "?", as a code-page conversion
// writes a character it cannot show. Plain ASCII always stays as it is.
// One encoder serves a whole chunk.
class WideTextEncoder {
public:
    explicit WideTextEncoder(const std::string& charset);

    void Append(std::uint16_t unit, std::string& text);

private:
    std::optional<TextConverter> converter_;
};

}  // namespace morvanta
