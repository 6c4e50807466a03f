#include "services/Conversions.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace morvanta {
namespace {

// Fader curve: 0 dB at 0.65 and -15 dB at 0.3 (and, by symmetry about 0 dB,
// +15 dB at 1.0) fix the constant of the exponential law.
const double kFaderUnity = 0.65;
const double kFaderK = 15.0 / std::log10(0.65 / 0.3);

// Equaliser band gains span -30 to +30 dB.
constexpr double kEqGainRangeDb = 30.0;

}  // namespace

double ConvertGain(double gain) {
    if (!(gain > 0)) return kSilenceDb;
    return 20.0 * std::log10(gain);
}

double ConvertGainBack(double db) {
    if (!(db > kSilenceDb)) return 0.0;
    // Beyond about +6165 dB no double is left; the largest one stands for it.
    return std::min(std::pow(10.0, db / 20.0), std::numeric_limits<double>::max());
}

double GetNormalizedValue(double db) {
    if (std::isnan(db) || db <= kSilenceDb) return 0.0;
    const double v = db <= 0 ? kFaderUnity * std::pow(10.0, db / kFaderK)
                             : 2 * kFaderUnity - kFaderUnity * std::pow(10.0, -db / kFaderK);
    return std::clamp(v, 0.0, 1.0);
}

double AA4_db_to_x(double db) {
    if (std::isnan(db)) return 0.5;
    return std::clamp((db + kEqGainRangeDb) / (2 * kEqGainRangeDb), 0.0, 1.0);
}

int LeftRightToPanVolA_Old(double left, double right, double& pan, double& vol) {
    const double v = std::max(left, right);
    if (v == 0 || std::isnan(v)) {
        pan = 0;
    } else if (left >= right) {
        pan = -100.0 * (1.0 - right / left);
    } else {
        pan = 100.0 * (1.0 - left / right);
    }
    // Gains of both signs could push the ratio out of the percent scale,
    // even to infinity; real gains are never negative and stay inside it.
    pan = std::clamp(pan, -100.0, 100.0);
    vol = ConvertGain(v);
    return 0;
}

int LeftRightToPanVolC(double left, double right, double& pan, double& vol) {
    // sqrt((L^2 + R^2) / 2), without the squares overflowing.
    const double v = std::hypot(left, right) / std::numbers::sqrt2;
    pan = (left == 0 && right == 0) ? 0.0
                                    : 100.0 * (4.0 * std::atan2(right, left) / std::numbers::pi - 1.0);
    if (!std::isfinite(pan)) pan = 0;
    vol = ConvertGain(v);
    return 0;
}

double lr_to_vol(double left, double right) { return ConvertGain(left / 2.0 + right / 2.0); }

std::string kelb16_to_base64(std::string_view source) {
    // Base-16 to bytes; characters outside the alphabet are skipped, an odd
    // last nibble is dropped.
    std::string bytes;
    int high = -1;
    for (char c : source) {
        int nibble = -1;
        if (c >= '0' && c <= '9') nibble = c - '0';
        else if (c >= 'A' && c <= 'F') nibble = c - 'A' + 10;
        else if (c >= 'a' && c <= 'f') nibble = c - 'a' + 10;
        if (nibble < 0) continue;
        if (high < 0) {
            high = nibble;
        } else {
            bytes.push_back(static_cast<char>((high << 4) | nibble));
            high = -1;
        }
    }
    static constexpr char kAlphabet[] =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        const auto b0 = static_cast<unsigned char>(bytes[i]);
        const auto b1 = i + 1 < bytes.size() ? static_cast<unsigned char>(bytes[i + 1]) : 0u;
        const auto b2 = i + 2 < bytes.size() ? static_cast<unsigned char>(bytes[i + 2]) : 0u;
        const unsigned triple = (static_cast<unsigned>(b0) << 16) | (b1 << 8) | b2;
        text += kAlphabet[(triple >> 18) & 63];
        text += kAlphabet[(triple >> 12) & 63];
        text += i + 1 < bytes.size() ? kAlphabet[(triple >> 6) & 63] : '=';
        text += i + 2 < bytes.size() ? kAlphabet[triple & 63] : '=';
    }
    return text;
}

int kelb16_to_base64(std::string_view source, std::string& target) {
    // The caller's buffer keeps its length: the text and its closing zero go
    // in from the front, as far as they fit; what stands behind stays.
    std::string text = kelb16_to_base64(source);
    text.push_back('\0');
    std::copy_n(text.begin(), std::min(text.size(), target.size()), target.begin());
    return 0;
}

double NormalizeToRange(double minimum, double maximum, double value) {
    return (value - minimum) / (maximum - minimum);
}

double ScaleFromRange(double minimum, double maximum, double fraction) {
    return (maximum - minimum) * fraction + minimum;
}

int IsBelowHalf(double x) { return x < 0.5 ? 1 : 0; }

}  // namespace morvanta
