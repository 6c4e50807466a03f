// Recoding texts between the code page a session was made in and UTF-8:
// the twelve languages a user can pick, and the routines over the one
// converter (services/Platform.h) that every recoding of the program goes
// through.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "services/Platform.h"

namespace morvanta {

struct LanguageRow {
    std::string_view Language;
    std::string_view Charset;
};

// In list order: the list index of a language is its row.
inline constexpr std::array<LanguageRow, 12> LanguageTable{{
    {"Central European", "ISO-8859-2"},
    {"Cyrillic", "WINDOWS-1251"},
    {"Greek", "ISO-8859-7"},
    {"Japanese 1", "SHIFT-JIS"},
    {"Japanese 2", "X-EUC"},
    {"Korean", "EUC-KR"},
    {"Russian", "koi8-r"},
    {"Simple Chinese", "GB2312"},
    {"Thai", "WINDOWS-874"},
    {"Traditional Chinese", "BIG5"},
    {"Vietnamese", "WINDOWS-1258"},
    {"Western", "ISO-8859-1"},
}};

// Whether the system can decode text of that charset.
bool IsKnownCharset(std::string_view charset);

// The charset a user means by a language name of the table or by a charset
// name (either in any case); nothing when the system does not know it.
std::optional<std::string> CharsetForLanguage(std::string_view name);

// The bytes decoded from `charset` into UTF-8; a sequence the charset does
// not define becomes U+FFFD. Throws std::runtime_error for an unknown charset.
std::string DecodeText(std::string_view bytes, std::string_view charset);

// The UTF-8 `text` encoded in `charset`; "UTF-8" puts the byte order mark
// EF BB BF in front. A character the charset lacks becomes "?". Throws
// std::runtime_error for an unknown charset.
std::string EncodeText(std::string_view text, std::string_view charset);

// A finished document read in `charset` and given back as UTF-8, with the
// byte order mark.
std::string RecodeToUtf8(std::string_view document, std::string_view charset);

}  // namespace morvanta
