// Recoding documents and texts between a session's code page and UTF-8.
#include "services/Recoding.h"

#include <stdexcept>

#include "services/TextHelpers.h"

namespace morvanta {
namespace {

constexpr std::string_view kUtf8 = "UTF-8";
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view kReplacementCharacter = "\xEF\xBF\xBD";

}  // namespace

bool IsKnownCharset(std::string_view charset) {
    if (charset.empty()) return false;
    return TextConverter(kUtf8, charset).Valid();
}

std::optional<std::string> CharsetForLanguage(std::string_view name) {
    const std::string upper = AsciiUpper(name);
    for (const LanguageRow& row : LanguageTable)
        if (AsciiUpper(row.Language) == upper || AsciiUpper(row.Charset) == upper) return std::string(row.Charset);
    if (IsKnownCharset(name)) return std::string(name);
    return std::nullopt;
}

std::string DecodeText(std::string_view bytes, std::string_view charset) {
    TextConverter converter(kUtf8, charset);
    if (!converter.Valid()) throw std::runtime_error("unknown charset \"" + std::string(charset) + "\"");
    return converter.Convert(bytes, kReplacementCharacter, false);
}

std::string EncodeText(std::string_view text, std::string_view charset) {
    if (AsciiUpper(charset) == kUtf8) {
        std::string content;
        content.reserve(kByteOrderMark.size() + text.size());
        content += kByteOrderMark;
        content += text;
        return content;
    }
    TextConverter converter(charset, kUtf8);
    if (!converter.Valid()) throw std::runtime_error("unknown charset \"" + std::string(charset) + "\"");
    return converter.Convert(text, "?", true);
}

std::string RecodeToUtf8(std::string_view document, std::string_view charset) {
    return EncodeText(DecodeText(document, charset), kUtf8);
}

}  // namespace morvanta
