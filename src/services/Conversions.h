// Gain, pan and plug-in state conversions, under the names the format's
// callers know them by. The arithmetic and its evidence are in
// docs/format/numerics.md. No state, no file work.
#pragma once

#include <string>
#include <string_view>

namespace morvanta {

// Floor of the decibel scale: the level of a gain of 0 or less.
inline constexpr double kSilenceDb = -200.0;

// Stored gain (linear multiplier, 1.0 = 0 dB) to decibels, and back.
double ConvertGain(double gain);
double ConvertGainBack(double db);

// Decibels to a fader position from 0 to 1: 0 dB at 0.65, +15 dB at 1.
double GetNormalizedValue(double db);

// Decibels to the position of an equaliser band gain (+-30 dB): 0 dB is 0.5.
double AA4_db_to_x(double db);

// Left and right gains to a pan in percent (-100 left, +100 right) and a
// volume in decibels. The "_Old" form is the left/right cut law of the old
// track records, "C" the equal-power law.
int LeftRightToPanVolA_Old(double left, double right, double& pan, double& vol);
int LeftRightToPanVolC(double left, double right, double& pan, double& vol);

// The mean level of the two gains, in decibels.
double lr_to_vol(double left, double right);

// Base-16 text (two characters a byte, high nibble first, either case) to
// padded standard base64. Characters outside the alphabet are skipped and an
// odd last nibble is dropped. 2n source characters give 4 * ceil(n / 3)
// characters, which always fit the Len(source) + 2 bytes callers allow.
std::string kelb16_to_base64(std::string_view source);
// The same, written as the export does it: into the caller's buffer, which
// keeps its length, the text followed by a zero character. Returns 0.
int kelb16_to_base64(std::string_view source, std::string& target);

// Helpers of the program's own.
double NormalizeToRange(double minimum, double maximum, double value);
double ScaleFromRange(double minimum, double maximum, double fraction);
int IsBelowHalf(double x);

}  // namespace morvanta
