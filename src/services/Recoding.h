// Recoding texts between the code page a session was made in and UTF-8:
// the twelve languages a user can pick, and one converter over iconv that
// every recoding of the program goes through.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

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

// The name iconv knows a charset of the table by ("X-EUC" is EUC-JP,
// "GB2312" the EUC form of GB 2312, ...); any other name is passed on as it is.
std::string IconvCharsetName(std::string_view charset);

// Whether iconv can decode text of that charset.
bool IsKnownCharset(std::string_view charset);

// The charset a user means by a language name of the table or by a charset
// name (either in any case); nothing when iconv does not know it.
std::optional<std::string> CharsetForLanguage(std::string_view name);

// One conversion from one charset to another, opened once and used for as
// many texts as the caller has (a whole chunk's names, a whole document).
class TextConverter {
public:
    TextConverter(std::string_view to, std::string_view from);
    ~TextConverter();
    TextConverter(const TextConverter&) = delete;
    TextConverter& operator=(const TextConverter&) = delete;

    // False when iconv does not know one of the two charsets.
    bool Valid() const;

    // Converts all of `in`. A sequence that cannot be converted is stepped
    // over (one byte, or one whole UTF-8 character when `inputIsUtf8`) and
    // `bad` is put out in its place. Throws std::runtime_error on any other fault.
    std::string Convert(std::string_view in, std::string_view bad, bool inputIsUtf8);

    // Appends the conversion of one whole character to `out`; false, with
    // `out` untouched, when the target charset cannot show it.
    bool AppendCharacter(std::string_view in, std::string& out);

private:
    int Drain(char** source, std::size_t* sourceLeft, std::string& out);

    void* handle_;
};

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
