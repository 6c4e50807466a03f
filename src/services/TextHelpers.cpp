#include "services/TextHelpers.h"

namespace morvanta {

std::string AsciiUpper(std::string_view text) {
    std::string out(text);
    for (char& c : out)
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    return out;
}

std::string TrimBlanks(std::string_view text) {
    const auto first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) return {};
    const auto last = text.find_last_not_of(' ');
    return std::string(text.substr(first, last - first + 1));
}

std::string ReplaceAll(std::string subject, std::string_view find, std::string_view replacement) {
    if (find.empty()) return subject;
    const bool loops = replacement.find(find) != std::string_view::npos;
    std::size_t from = 0;
    for (auto at = subject.find(find); at != std::string::npos; at = subject.find(find, from)) {
        subject.replace(at, find.size(), replacement);
        // Searching again from the start gives the same result as going on
        // from the replacement's start, which keeps this linear.
        from = loops ? at + replacement.size() : (at >= find.size() ? at - find.size() + 1 : 0);
    }
    return subject;
}

std::string EscapeText(std::string_view text, bool blanksToo) {
    std::string result(text);
    if (blanksToo) result = ReplaceAll(result, " ", "%20");
    // Through a character that cannot occur, since "&amp;" holds "&".
    result = ReplaceAll(result, "&", std::string_view("\0", 1));
    return ReplaceAll(result, std::string_view("\0", 1), "&amp;");
}

std::string EscapeMarkup(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (const char c : text) {
        if (c == '<') result += "&lt;";
        else if (c == '>') result += "&gt;";
        else if (c == '"') result += "&quot;";
        else result += c;
    }
    return result;
}

std::string SeparateHyphens(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (const char c : text) {
        if (c == '-' && !result.empty() && result.back() == '-') result += ' ';
        result += c;
    }
    return result;
}

std::string HexByte(std::uint8_t value) {
    static constexpr char kDigits[] = "0123456789ABCDEF";
    return {kDigits[value >> 4], kDigits[value & 15]};
}

std::string HexWord(std::uint32_t value) {
    std::string text;
    for (int shift = 24; shift >= 0; shift -= 8) text += HexByte(static_cast<std::uint8_t>(value >> shift));
    return text;
}

std::string FileNameOf(std::string_view path) {
    const auto at = path.find_last_of("\\/");
    return std::string(at == std::string_view::npos ? path : path.substr(at + 1));
}

std::string MakeCommentSafe(std::string_view text, bool nonEnglish) {
    if (!nonEnglish) return std::string(text);
    // Every code put out lies between 0x21 and 0xFF: always two digits.
    auto hex = [](int value) { return HexByte(static_cast<std::uint8_t>(value)); };
    std::string result;
    for (char ch : text) {
        const int c = static_cast<unsigned char>(ch);
        if (c == 63) result += '@';
        else if ((c >= 39 && c <= 126) || c == 38) result += ch;
        else if (c == 32 || c == 33 || c == 35 || c == 36) result += "%" + hex(c);
        else if (c < 65) result += "%" + hex(130 - c);
        else result += "%" + hex(c);
    }
    return result;
}

std::size_t Utf8At(std::string_view text, std::size_t at, std::uint32_t& code) {
    const auto lead = static_cast<unsigned char>(text[at]);
    std::size_t length = 0;
    if (lead < 0x80) {
        code = lead;
        return 1;
    }
    if (lead >= 0xC2 && lead <= 0xDF) length = 2, code = lead & 0x1Fu;
    else if (lead >= 0xE0 && lead <= 0xEF) length = 3, code = lead & 0x0Fu;
    else if (lead >= 0xF0 && lead <= 0xF4) length = 4, code = lead & 0x07u;
    else return 0;
    if (text.size() - at < length) return 0;
    for (std::size_t k = 1; k < length; ++k) {
        const auto next = static_cast<unsigned char>(text[at + k]);
        if ((next & 0xC0) != 0x80) return 0;
        code = (code << 6) | (next & 0x3Fu);
    }
    if ((length == 3 && code < 0x800) || (length == 4 && (code < 0x10000 || code > 0x10FFFF))) return 0;
    if (code >= 0xD800 && code <= 0xDFFF) return 0;
    return length;
}

bool IsUtf8(std::string_view text) {
    std::uint32_t code = 0;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t length = Utf8At(text, at, code);
        if (length == 0) return false;
        at += length;
    }
    return true;
}

}  // namespace morvanta
