#include <gtest/gtest.h>

#include "services/NumberText.h"
#include "services/TextHelpers.h"

namespace morvanta {
namespace {

TEST(NumberText, IntegerTextRoundsHalfAwayFromZero) {
    EXPECT_EQ(IntegerText(2.5), "3");
    EXPECT_EQ(IntegerText(-2.5), "-3");
    EXPECT_EQ(IntegerText(0), "0");
    EXPECT_EQ(IntegerText(-0.4), "0");
    EXPECT_EQ(IntegerText(1.4999), "1");
    EXPECT_EQ(IntegerText(44100), "44100");
    EXPECT_EQ(IntegerText(-2147483648.0), "-2147483648");
    EXPECT_EQ(IntegerText(9.5), "10");
    EXPECT_EQ(IntegerText(99999999999.5), "100000000000");
}

TEST(NumberText, PlainNumberTextDropsTheLeadingZero) {
    EXPECT_EQ(PlainNumberText(0.5), ".5");
    EXPECT_EQ(PlainNumberText(-0.25), "-.25");
    EXPECT_EQ(PlainNumberText(3), "3");
    EXPECT_EQ(PlainNumberText(0), "0");
    EXPECT_EQ(PlainNumberText(-0.0), "0");
    EXPECT_EQ(PlainNumberText(1.25), "1.25");
    EXPECT_EQ(PlainNumberText(-120), "-120");
    EXPECT_EQ(PlainNumberText(0.1 + 0.2), ".3");  // 15 significant digits
    EXPECT_EQ(PlainNumberText(2.0 / 3.0), ".666666666666667");
}

TEST(NumberText, PlainNumberTextGoesScientificAtTheEdges) {
    EXPECT_EQ(PlainNumberText(1.5E-07), "1.5E-07");
    EXPECT_EQ(PlainNumberText(1E+15), "1E+15");
    EXPECT_EQ(PlainNumberText(999999999999999), "999999999999999");
    EXPECT_EQ(PlainNumberText(0.0001), ".0001");
    EXPECT_EQ(PlainNumberText(0.00001), "1E-05");
    EXPECT_EQ(PlainNumberText(-1.5E-07), "-1.5E-07");
    EXPECT_EQ(PlainNumberText(123456789012345678.0), "1.23456789012346E+17");
    EXPECT_EQ(PlainNumberText(1.5E+300), "1.5E+300");
}

TEST(NumberText, GeneralTextKeepsTheZero) {
    EXPECT_EQ(GeneralText(0.5), "0.5");
    EXPECT_EQ(GeneralText(-0.25), "-0.25");
    EXPECT_EQ(GeneralText(98.5), "98.5");
    EXPECT_EQ(GeneralText(4), "4");
}

TEST(NumberText, FixedPlacesTextRoundsAndAlwaysHasItsPlaces) {
    EXPECT_EQ(FixedPlacesText(120, 2), "120.00");
    EXPECT_EQ(FixedPlacesText(98.5, 2), "98.50");
    EXPECT_EQ(FixedPlacesText(0.125, 2), "0.13");
    EXPECT_EQ(FixedPlacesText(-0.125, 2), "-0.13");
    EXPECT_EQ(FixedPlacesText(1.005, 2), "1.01");  // rounded as printed, not as stored
    EXPECT_EQ(FixedPlacesText((1000 - 20.0) / (44100 / 2.0 - 20.0), 7), "0.0444848");
    EXPECT_EQ(FixedPlacesText(0.99999999, 7), "1.0000000");
    EXPECT_EQ(FixedPlacesText(0, 7), "0.0000000");
    EXPECT_EQ(FixedPlacesText(-0.00000001, 7), "0.0000000");
    EXPECT_EQ(FixedPlacesText(2.0 / 3.0, 12), "0.666666666667");
}

TEST(NumberText, DecimalPointFixReplacesTheSeparator) {
    EXPECT_EQ(DecimalPointFix("120,00", 2), "120.00");
    EXPECT_EQ(DecimalPointFix("0,0444848", 7), "0.0444848");
    EXPECT_EQ(DecimalPointFix("7", 0), "7");
}

TEST(NumberText, StoringADoubleInAnIntegerRoundsHalfToEven) {
    EXPECT_EQ(RoundHalfEven(2.5), 2);
    EXPECT_EQ(RoundHalfEven(3.5), 4);
    EXPECT_EQ(RoundHalfEven(-2.5), -2);
    EXPECT_EQ(RoundHalfEven(0.5000001), 1);
    EXPECT_EQ(RoundHalfEven(1e300), 2147483647);
    EXPECT_EQ(RoundHalfEven(-1e300), -2147483647 - 1);
}

TEST(NumberText, RoundTo12PlacesAndPrefixParse) {
    EXPECT_EQ(RoundTo12Places(0.3), 0.3);
    EXPECT_EQ(RoundTo12Places(0.1234567890125), 0.123456789013);
    EXPECT_EQ(RoundTo12Places(1.0), 1.0);
    // Sign, digits, point and exponent; anything else ends the number, and
    // a text without digits is 0, words of other number readers included.
    const struct {
        const char* Text;
        double Value;
    } prefixes[] = {
        {"98.50", 98.5}, {"1 3 3 2", 1},   {".5x", 0.5},     {"-.25", -0.25},  {" \t+7", 7},
        {"12ms", 12},    {"5.", 5},        {"1.5E-07", 1.5E-07}, {"2e3x", 2000}, {"2E+2", 200},
        {"3e", 3},       {"3e-", 3},       {"3E+x", 3},      {"1e999", 0},     {"abc", 0},
        {"", 0},         {"-", 0},         {".", 0},         {"-.e5", 0},      {"inf", 0},
        {"-infinity", 0}, {"nan", 0},      {"NaN(1)", 0},    {"0x1A", 0},      {"e5", 0},
    };
    for (const auto& row : prefixes) EXPECT_EQ(ParseNumberPrefix(row.Text), row.Value) << row.Text;
}

TEST(TextHelpers, EscapeTextOnlyTouchesAmpersands) {
    EXPECT_EQ(EscapeText("a&b"), "a&amp;b");
    EXPECT_EQ(EscapeText("&&"), "&amp;&amp;");
    EXPECT_EQ(EscapeText("<\"x\"> & y"), "<\"x\"> &amp; y");
    EXPECT_EQ(EscapeText("take 1", true), "take%201");
}

// The repairs of a well-formed document: three characters escaped, and a
// blank between every two hyphens; every other byte stays.
TEST(TextHelpers, EscapeMarkupAndSeparateHyphens) {
    EXPECT_EQ(EscapeMarkup("<\"a\"> &amp; & '\xE9"), "&lt;&quot;a&quot;&gt; &amp; & '\xE9");
    EXPECT_EQ(EscapeMarkup(""), "");
    EXPECT_EQ(SeparateHyphens("mix--final.ses"), "mix- -final.ses");
    EXPECT_EQ(SeparateHyphens("a---b-c-"), "a- - -b-c-");
    EXPECT_EQ(SeparateHyphens("--"), "- -");
    EXPECT_EQ(SeparateHyphens("- -"), "- -");
}

TEST(TextHelpers, ReplaceAllRepeatsFromTheStart) {
    EXPECT_EQ(ReplaceAll("aaaa", "aa", "a"), "a");
    EXPECT_EQ(ReplaceAll("1,234,567", ",", ""), "1234567");
    EXPECT_EQ(ReplaceAll("a\\b\\c", "\\", "/"), "a/b/c");
    EXPECT_EQ(ReplaceAll("x", "x", "xx"), "xx");  // would never end: one pass
}

TEST(TextHelpers, FileNameOfAndTrim) {
    EXPECT_EQ(FileNameOf("C:\\a\\take 1.wav"), "take 1.wav");
    EXPECT_EQ(FileNameOf("/home/u/a.sesx"), "a.sesx");
    EXPECT_EQ(FileNameOf("bare.wav"), "bare.wav");
    EXPECT_EQ(TrimBlanks("  a b \t "), "a b \t");
    EXPECT_EQ(TrimBlanks("   "), "");
}

TEST(TextHelpers, MakeCommentSafeEncodesWhatRecodingWouldChange) {
    EXPECT_EQ(MakeCommentSafe("C:\\a b\\\xE9t\xE9.ses", false), "C:\\a b\\\xE9t\xE9.ses");
    // 32 -> %20, 233 -> %E9, 63 -> @, 34 (quote) -> %60 (130 - 34 = 96), 37 -> %5D
    EXPECT_EQ(MakeCommentSafe("a b\xE9?\"%&", true), "a%20b%E9@%60%5D&");
    EXPECT_EQ(MakeCommentSafe("!#$", true), "%21%23%24");
}

}  // namespace
}  // namespace morvanta
