// Recoding a finished document from the code page its session was made in
// to UTF-8: the twelve languages a user can pick, and the two file routines
// of the pass, over iconv.
#pragma once

#include <array>
#include <filesystem>
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

// The whole file decoded from `CharSet` into UTF-8. A byte sequence the
// charset does not define becomes U+FFFD. Throws std::runtime_error naming
// the path when the file cannot be read or the charset is unknown.
std::string ReadConvertedFile(const std::filesystem::path& Sourcefile, std::string_view CharSet);

// Replaces the file, atomically, with the UTF-8 `text` encoded in `CharSet`;
// "UTF-8" puts the byte order mark EF BB BF in front. A character the
// charset lacks becomes "?". Throws std::runtime_error naming the path.
void WriteConvertedFile(const std::filesystem::path& Getfile, std::string_view text, std::string_view CharSet);

// The pass of a conversion run: the document read in `charset` and saved
// again as UTF-8 under the same name.
void RecodeToUtf8(const std::filesystem::path& document, std::string_view charset);

}  // namespace morvanta
