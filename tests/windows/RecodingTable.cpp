// Prints what the recoding makes of every character of the twelve
// languages' charsets, so that two builds (the Linux one over iconv, the
// Windows one over the system's code pages) can be held to each other:
// scripts/test-windows compares the two tables line for line.
//
// Per charset: each single byte 80-FF, each pair of a lead byte 81-FE and
// a trail byte 40-FE, each triple 8F A1-FE A1-FE (JIS X 0212 in EUC-JP),
// read into UTF-8; then each 16-bit character U+0080-U+FFFF written in the
// charset, from UTF-8 (as documents are) and from UTF-16LE (as the wide
// names of a session are).
#include <cstdio>
#include <string>
#include <string_view>

#include "services/Recoding.h"

namespace {

std::string Hex(std::string_view bytes) {
    static const char* const kDigits = "0123456789ABCDEF";
    std::string text;
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        text += kDigits[byte >> 4];
        text += kDigits[byte & 0xF];
    }
    return text.empty() ? "-" : text;
}

std::string Utf8(unsigned code) {
    std::string text;
    if (code < 0x800) {
        text += static_cast<char>(0xC0 | (code >> 6));
    } else {
        text += static_cast<char>(0xE0 | (code >> 12));
        text += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
    }
    text += static_cast<char>(0x80 | (code & 0x3F));
    return text;
}

void Line(std::string_view charset, std::string_view from, const std::string& to) {
    std::printf("%.*s %s %s\n", static_cast<int>(charset.size()), charset.data(), Hex(from).c_str(), to.c_str());
}

}  // namespace

int main() {
    using morvanta::LanguageRow;
    using morvanta::LanguageTable;
    using morvanta::TextConverter;
    const std::string_view replacement = "\xEF\xBF\xBD";
    for (const LanguageRow& row : LanguageTable) {
        TextConverter decoder("UTF-8", row.Charset);
        TextConverter encoder(row.Charset, "UTF-8");
        TextConverter wide(row.Charset, "UTF-16LE");
        if (!decoder.Valid() || !encoder.Valid() || !wide.Valid()) {
            std::printf("%.*s unknown\n", static_cast<int>(row.Charset.size()), row.Charset.data());
            continue;
        }
        for (unsigned lead = 0x80; lead <= 0xFF; ++lead) {
            const std::string one(1, static_cast<char>(lead));
            Line(row.Charset, one, Hex(decoder.Convert(one, replacement, false)));
        }
        for (unsigned lead = 0x81; lead <= 0xFE; ++lead) {
            for (unsigned trail = 0x40; trail <= 0xFE; ++trail) {
                const std::string two{static_cast<char>(lead), static_cast<char>(trail)};
                Line(row.Charset, two, Hex(decoder.Convert(two, replacement, false)));
            }
        }
        for (unsigned second = 0xA1; second <= 0xFE; ++second) {
            for (unsigned third = 0xA1; third <= 0xFE; ++third) {
                const std::string three{'\x8F', static_cast<char>(second), static_cast<char>(third)};
                Line(row.Charset, three, Hex(decoder.Convert(three, replacement, false)));
            }
        }
        for (unsigned code = 0x80; code <= 0xFFFF; ++code) {
            if (code >= 0xD800 && code <= 0xDFFF) continue;
            const std::string text = Utf8(code);
            const std::string unit{static_cast<char>(code & 0xFF), static_cast<char>(code >> 8)};
            std::string fromUnit;
            if (!wide.AppendCharacter(unit, fromUnit)) fromUnit = "?";
            Line(row.Charset, text, Hex(encoder.Convert(text, "?", true)) + " " + Hex(fromUnit));
        }
    }
    return 0;
}
