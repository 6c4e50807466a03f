#include "services/NumberText.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <system_error>

namespace morvanta {
namespace {

// A finite, non-negative value as its 15 significant decimal digits:
// value = 0.d1d2...d15 x 10^pointPosition. Rounding to a number of places
// works on these digits, so what is rounded is what would be printed.
struct Digits {
    std::string digits;
    int pointPosition = 0;
};

Digits SignificantDigits(double magnitude) {
    Digits d;
    if (magnitude == 0) {
        d.digits = "0";
        d.pointPosition = 1;
        return d;
    }
    char buffer[64];
    auto [end, ec] =
        std::to_chars(buffer, buffer + sizeof buffer, magnitude, std::chars_format::scientific, 14);
    (void)ec;
    const std::string text(buffer, end);  // d.dddddddddddddde[+-]XX
    const auto e = text.find('e');
    d.digits = text.substr(0, 1) + text.substr(2, e - 2);
    d.pointPosition = std::stoi(text.substr(e + 1)) + 1;
    return d;
}

std::string RoundedFixed(double value, int places) {
    if (!std::isfinite(value)) value = 0;
    const bool negative = std::signbit(value);
    Digits d = SignificantDigits(std::fabs(value));
    // Digits kept: those in front of the point and `places` behind it.
    const int keep = d.pointPosition + places;
    std::string kept;  // the result's digits, without the point
    if (keep < 0) {
        kept = "0";
    } else {
        std::string digits = d.digits;
        if (static_cast<int>(digits.size()) < keep) digits.append(static_cast<std::size_t>(keep) - digits.size(), '0');
        const bool roundUp = keep < static_cast<int>(digits.size()) && digits[static_cast<std::size_t>(keep)] >= '5';
        kept = digits.substr(0, static_cast<std::size_t>(keep));
        if (roundUp) {
            int i = static_cast<int>(kept.size()) - 1;
            for (; i >= 0; --i) {
                if (kept[static_cast<std::size_t>(i)] == '9') {
                    kept[static_cast<std::size_t>(i)] = '0';
                } else {
                    ++kept[static_cast<std::size_t>(i)];
                    break;
                }
            }
            if (i < 0) kept.insert(kept.begin(), '1');
        }
        if (kept.empty()) kept = "0";
    }
    // Split into integer part and `places` decimals.
    if (static_cast<int>(kept.size()) < places + 1)
        kept.insert(0, static_cast<std::size_t>(places + 1) - kept.size(), '0');
    std::string integer = kept.substr(0, kept.size() - static_cast<std::size_t>(places));
    const std::string fraction = kept.substr(kept.size() - static_cast<std::size_t>(places));
    const auto firstNonZero = integer.find_first_not_of('0');
    integer = firstNonZero == std::string::npos ? "0" : integer.substr(firstNonZero);
    const bool zero = integer == "0" && fraction.find_first_not_of('0') == std::string::npos;
    std::string text = (negative && !zero) ? "-" : "";
    text += integer;
    if (places > 0) text += "." + fraction;
    return text;
}

}  // namespace

std::string IntegerText(double value) { return RoundedFixed(value, 0); }

std::string FixedPlacesText(double value, int places) {
    return DecimalPointFix(RoundedFixed(value, places), places);
}

std::string GeneralText(double value) {
    if (!std::isfinite(value) || value == 0) return "0";
    char buffer[64];
    auto [end, ec] =
        std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::general, 15);
    (void)ec;
    std::string text(buffer, end);
    for (char& c : text)
        if (c == 'e') c = 'E';
    return text;
}

std::string PlainNumberText(double value) {
    std::string text = GeneralText(value);
    if (text.starts_with("0.")) text.erase(0, 1);
    else if (text.starts_with("-0.")) text.erase(1, 1);
    return text;
}

std::string DecimalPointFix(std::string text, int places) {
    const auto n = static_cast<std::size_t>(places);
    if (places > 0 && text.size() > n) text[text.size() - n - 1] = '.';
    return text;
}

double RoundTo12Places(double value) {
    if (!std::isfinite(value)) return value;
    return ParseNumberPrefix(RoundedFixed(value, 12));
}

std::int32_t RoundHalfEven(double value) {
    if (std::isnan(value)) return 0;
    const double r = std::nearbyint(value);  // the default mode rounds a half to even
    if (r <= static_cast<double>(std::numeric_limits<std::int32_t>::min()))
        return std::numeric_limits<std::int32_t>::min();
    if (r >= static_cast<double>(std::numeric_limits<std::int32_t>::max()))
        return std::numeric_limits<std::int32_t>::max();
    return static_cast<std::int32_t>(r);
}

double ParseNumberPrefix(const std::string& text) {
    const auto digitAt = [&](std::size_t at) { return at < text.size() && text[at] >= '0' && text[at] <= '9'; };
    std::size_t i = 0;
    while (i < text.size() && (text[i] == ' ' || text[i] == '\t')) ++i;
    bool negative = false;
    if (i < text.size() && (text[i] == '-' || text[i] == '+')) negative = text[i++] == '-';
    // Only what a number of the format can hold is taken: digits, a point,
    // digits, and an exponent when digits follow its "E". Words such as
    // "inf" or "nan" are no number.
    const std::size_t start = i;
    std::size_t digits = 0;
    for (; digitAt(i); ++i) ++digits;
    if (i < text.size() && text[i] == '.')
        for (++i; digitAt(i); ++i) ++digits;
    if (digits == 0) return 0;
    if (i < text.size() && (text[i] == 'e' || text[i] == 'E')) {
        std::size_t e = i + 1;
        if (e < text.size() && (text[e] == '-' || text[e] == '+')) ++e;
        if (digitAt(e)) {
            i = e;
            while (digitAt(i)) ++i;
        }
    }
    // from_chars reads exactly that text; a value beyond the range of a
    // double reads as 0.
    double value = 0;
    const auto [end, ec] = std::from_chars(text.data() + start, text.data() + i, value);
    if (ec != std::errc() || end != text.data() + i) return 0;
    return negative ? -value : value;
}

}  // namespace morvanta
