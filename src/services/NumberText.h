// The number texts that readers and writer share. Each is exact and
// independent of the machine's locale: the decimal mark is always ".". See
// docs/format/document.md for the forms and their examples.
#pragma once

#include <cstdint>
#include <string>

namespace morvanta {

// Rounded to the nearest integer, a half away from zero: 2.5 "3", -2.5 "-3".
std::string IntegerText(double value);

// At most 15 significant digits, no zero in front of the point (".5",
// "-.25"), integers without a point, scientific form with a two-digit
// exponent at least for exponents below -4 or from 15 up ("1.5E-07", "1E+15").
std::string PlainNumberText(double value);

// As PlainNumberText, but with the zero in front of the point ("0.5").
std::string GeneralText(double value);

// Rounded like IntegerText to `places` decimals, always with that many.
std::string FixedPlacesText(double value, int places);

// Replaces the character in front of the last `places` characters by ".".
std::string DecimalPointFix(std::string text, int places);

// The value printed with "0.000000000000" and read back.
double RoundTo12Places(double value);

// A double stored into an integer field: nearest, a half to the even
// neighbour. Values outside the 32-bit range are clamped to it.
std::int32_t RoundHalfEven(double value);

// A prefix parse of a number text, as the format's texts are read: blanks,
// then an optional sign, digits with an optional point, and an exponent
// ("E", an optional sign, digits); it stops at the first character that
// cannot belong to that. Text without digits there ("inf", "nan", "-.")
// gives 0.
double ParseNumberPrefix(const std::string& text);

}  // namespace morvanta
