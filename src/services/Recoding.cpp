// Recoding over iconv (part of the C library).
#include "services/Recoding.h"

#include <iconv.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <stdexcept>

namespace morvanta {
namespace {

constexpr std::string_view kUtf8 = "UTF-8";
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view kReplacementCharacter = "\xEF\xBF\xBD";

std::string Upper(std::string_view text) {
    std::string out(text);
    std::transform(out.begin(), out.end(), out.begin(),
                   [](unsigned char c) { return static_cast<char>(c >= 'a' && c <= 'z' ? c - 32 : c); });
    return out;
}

iconv_t Descriptor(void* handle) { return static_cast<iconv_t>(handle); }

const iconv_t kNoDescriptor = reinterpret_cast<iconv_t>(static_cast<std::intptr_t>(-1));

std::size_t Utf8Length(unsigned char lead) { return lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 1; }

}  // namespace

std::string IconvCharsetName(std::string_view charset) {
    const std::string upper = Upper(charset);
    if (upper == "X-EUC") return "EUC-JP";
    // The Windows form of Shift JIS: iconv's plain SHIFT_JIS reads the bytes
    // of the backslash and the tilde as a yen sign and an overline, which
    // would break every path of the document.
    if (upper == "SHIFT-JIS") return "CP932";
    if (upper == "GB2312") return "EUC-CN";
    if (upper == "WINDOWS-1251") return "CP1251";
    if (upper == "WINDOWS-874") return "CP874";
    if (upper == "WINDOWS-1258") return "CP1258";
    if (upper == "KOI8-R" || upper == "BIG5" || upper == "EUC-KR" || upper.starts_with("ISO-8859-")) return upper;
    return std::string(charset);
}

TextConverter::TextConverter(std::string_view to, std::string_view from)
    : handle_(::iconv_open(IconvCharsetName(to).c_str(), IconvCharsetName(from).c_str())) {}

TextConverter::~TextConverter() {
    if (Valid()) ::iconv_close(Descriptor(handle_));
}

bool TextConverter::Valid() const { return Descriptor(handle_) != kNoDescriptor; }

std::string TextConverter::Convert(std::string_view in, std::string_view bad, bool inputIsUtf8) {
    std::string out;
    out.reserve(in.size() + in.size() / 8);
    auto* source = const_cast<char*>(in.data());
    std::size_t sourceLeft = in.size();
    while (sourceLeft > 0) {
        const int error = Drain(&source, &sourceLeft, out);
        if (error == 0) break;
        // EINVAL: an incomplete sequence at the very end.
        if (error != EILSEQ && error != EINVAL) throw std::runtime_error(std::strerror(error));
        out += bad;
        const std::size_t step =
            std::min(inputIsUtf8 ? Utf8Length(static_cast<unsigned char>(*source)) : 1, sourceLeft);
        source += step;
        sourceLeft -= step;
    }
    // A null source flushes the state of a stateful decoder (CP1258 holds
    // back a base letter for a combining mark) and makes it ready for the next text.
    if (const int error = Drain(nullptr, nullptr, out); error != 0) throw std::runtime_error(std::strerror(error));
    return out;
}

bool TextConverter::AppendCharacter(std::string_view in, std::string& out) {
    char buffer[16];
    auto* source = const_cast<char*>(in.data());
    std::size_t sourceLeft = in.size();
    char* target = buffer;
    std::size_t targetLeft = sizeof buffer;
    const iconv_t cd = Descriptor(handle_);
    if (::iconv(cd, &source, &sourceLeft, &target, &targetLeft) == static_cast<std::size_t>(-1)) {
        ::iconv(cd, nullptr, nullptr, nullptr, nullptr);  // back to the initial state
        return false;
    }
    out.append(buffer, static_cast<std::size_t>(target - buffer));
    return true;
}

// Converts as much as iconv can take; 0 or the errno that stopped it.
int TextConverter::Drain(char** source, std::size_t* sourceLeft, std::string& out) {
    for (;;) {
        char buffer[4096];
        char* target = buffer;
        std::size_t targetLeft = sizeof buffer;
        const std::size_t done = ::iconv(Descriptor(handle_), source, sourceLeft, &target, &targetLeft);
        const int error = done == static_cast<std::size_t>(-1) ? errno : 0;
        out.append(buffer, static_cast<std::size_t>(target - buffer));
        if (error != E2BIG) return error;
    }
}

bool IsKnownCharset(std::string_view charset) {
    if (charset.empty()) return false;
    return TextConverter(kUtf8, charset).Valid();
}

std::optional<std::string> CharsetForLanguage(std::string_view name) {
    const std::string upper = Upper(name);
    for (const LanguageRow& row : LanguageTable)
        if (Upper(row.Language) == upper || Upper(row.Charset) == upper) return std::string(row.Charset);
    if (IsKnownCharset(name)) return std::string(name);
    return std::nullopt;
}

std::string DecodeText(std::string_view bytes, std::string_view charset) {
    TextConverter converter(kUtf8, charset);
    if (!converter.Valid()) throw std::runtime_error("unknown charset \"" + std::string(charset) + "\"");
    return converter.Convert(bytes, kReplacementCharacter, false);
}

std::string EncodeText(std::string_view text, std::string_view charset) {
    if (Upper(charset) == kUtf8) {
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
