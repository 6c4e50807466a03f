// Recoding of finished documents over iconv (part of the C library).
#include "services/Recoding.h"

#include <iconv.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include "services/AtomicFile.h"

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

// One conversion descriptor, closed on every path.
class Converter {
public:
    Converter(std::string_view to, std::string_view from)
        : cd_(::iconv_open(IconvCharsetName(to).c_str(), IconvCharsetName(from).c_str())) {}
    ~Converter() {
        if (Valid()) ::iconv_close(cd_);
    }
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;

    bool Valid() const { return cd_ != reinterpret_cast<iconv_t>(-1); }

    // Converts all of `in`. An input sequence that cannot be converted is
    // stepped over (one byte, or one whole UTF-8 character when the input is
    // UTF-8) and `bad` is put out in its place.
    std::string Run(std::string_view in, std::string_view bad, bool inputIsUtf8) {
        std::string out;
        auto* source = const_cast<char*>(in.data());
        std::size_t sourceLeft = in.size();
        while (sourceLeft > 0) {
            const int error = Drain(&source, &sourceLeft, out);
            if (error == 0) break;
            // EINVAL: an incomplete sequence at the very end.
            if (error != EILSEQ && error != EINVAL) throw std::runtime_error(std::strerror(error));
            out += bad;
            const std::size_t step = inputIsUtf8 ? Utf8Length(static_cast<unsigned char>(*source)) : 1;
            source += std::min(step, sourceLeft);
            sourceLeft -= std::min(step, sourceLeft);
        }
        // A null source flushes the state of a stateful decoder (CP1258
        // holds back a base letter for a combining mark).
        if (const int error = Drain(nullptr, nullptr, out); error != 0) throw std::runtime_error(std::strerror(error));
        return out;
    }

private:
    static std::size_t Utf8Length(unsigned char lead) {
        return lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 1;
    }

    // Converts as much as iconv can take; 0 or the errno that stopped it.
    int Drain(char** source, std::size_t* sourceLeft, std::string& out) {
        for (;;) {
            char buffer[4096];
            char* target = buffer;
            std::size_t targetLeft = sizeof buffer;
            const std::size_t done = ::iconv(cd_, source, sourceLeft, &target, &targetLeft);
            const int error = done == static_cast<std::size_t>(-1) ? errno : 0;
            out.append(buffer, static_cast<std::size_t>(target - buffer));
            if (error != E2BIG) return error;
        }
    }

    iconv_t cd_;
};

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

bool IsKnownCharset(std::string_view charset) {
    if (charset.empty()) return false;
    return Converter(kUtf8, charset).Valid();
}

std::optional<std::string> CharsetForLanguage(std::string_view name) {
    const std::string upper = Upper(name);
    for (const LanguageRow& row : LanguageTable)
        if (Upper(row.Language) == upper || Upper(row.Charset) == upper) return std::string(row.Charset);
    if (IsKnownCharset(name)) return std::string(name);
    return std::nullopt;
}

std::string ReadConvertedFile(const std::filesystem::path& Sourcefile, std::string_view CharSet) {
    std::ifstream in(Sourcefile, std::ios::binary);
    if (!in) throw std::runtime_error("cannot open " + Sourcefile.string() + ": " + std::strerror(errno));
    std::ostringstream bytes;
    bytes << in.rdbuf();
    if (in.bad()) throw std::runtime_error("cannot read " + Sourcefile.string());
    Converter converter(kUtf8, CharSet);
    if (!converter.Valid()) throw std::runtime_error("unknown charset \"" + std::string(CharSet) + "\"");
    return converter.Run(bytes.str(), kReplacementCharacter, false);
}

void WriteConvertedFile(const std::filesystem::path& Getfile, std::string_view text, std::string_view CharSet) {
    std::string content;
    if (Upper(CharSet) == kUtf8) {
        content.reserve(kByteOrderMark.size() + text.size());
        content += kByteOrderMark;
        content += text;
    } else {
        Converter converter(CharSet, kUtf8);
        if (!converter.Valid()) throw std::runtime_error("unknown charset \"" + std::string(CharSet) + "\"");
        content = converter.Run(text, "?", true);
    }
    WriteFileAtomically(Getfile, content);
}

void RecodeToUtf8(const std::filesystem::path& document, std::string_view charset) {
    WriteConvertedFile(document, ReadConvertedFile(document, charset), kUtf8);
}

}  // namespace morvanta
