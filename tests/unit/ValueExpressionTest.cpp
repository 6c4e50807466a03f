// The catalogues' value expressions: what the evaluator gives, what it
// refuses, and the two forms a value reaches an expression in.
#include <gtest/gtest.h>

#include "reader/effects/ValueExpression.h"

namespace morvanta {
namespace {

struct Evaluated {
    const char* Text;
    const char* Result;
};

TEST(ValueExpression, EvaluatesTheNumericPartOfTheScriptLanguage) {
    const Evaluated table[] = {
        {"1+2*3", "7"},
        {"(1+2)*3", "9"},
        {"-2^2", "-4"},                // "^" binds tighter than the sign in front
        {"2^-1", ".5"},                // and may carry a sign of its own
        {"2^3^2", "64"},               // from the left
        {"-.5*100", "-50"},
        {"1.5E-07*10", "1.5E-06"},
        {"7\\2", "3"},
        {"-7\\2", "-3"},
        {"2.5\\1", "2"},               // operands of "\" round a half to even
        {"3.5\\1", "4"},
        {"7 Mod 3", "1"},
        {"-7 mod 3", "-1"},
        {"1+7 Mod 3*2", "2"},          // Mod binds looser than * and tighter than +
        {"8\\2*2", "2"},               // \ binds looser than *
        {"10 Mod 4\\2", "0"},          // and tighter than Mod
        {"1/3", ".333333333333333"},
        {"2 > 1", "True"},
        {"1 = 2", "False"},
        {"1 <> 2", "True"},
        {"3 <= 3", "True"},
        {"(2 > 1) * 5", "-5"},         // True is -1 in arithmetic
        {"Not 0", "-1"},
        {"Not 1 = 2", "True"},
        {"True And False", "False"},
        {"6 And 3", "2"},
        {"6 Or 3", "7"},
        {"6 Xor 3", "5"},
        {"1 Or 2 Xor 3", "0"},         // Or binds tighter than Xor
        {"Abs(-3) + Sgn(-0.1)", "2"},
        {"Int(-2.5)", "-3"},
        {"Fix(-2.5)", "-2"},
        {"CInt(2.5) + CInt(3.5)", "6"},
        {"CLng(-2.5)", "-2"},
        {"Round(2.5)", "2"},
        {"Round(0.125, 2)", ".12"},
        {"Sqr(16) + Exp(0) + Log(1)", "5"},
        {"Atn(1)*4", "3.14159265358979"},
        {"Cos(0) + Sin(0) + Tan(0)", "1"},
        {"CDbl(\t1e3 )", "1000"},
        {"20*log(10)/log(10)", "20"},
        {"1E+20*10", "1E+21"},
    };
    for (const Evaluated& row : table) {
        try {
            EXPECT_EQ(EvaluateScriptText(row.Text), row.Result) << row.Text;
        } catch (const ExpressionError& error) {
            ADD_FAILURE() << row.Text << ": " << error.what();
        }
    }
}

TEST(ValueExpression, RefusesWhatItCannotEvaluateAndQuotesTheExpression) {
    const Evaluated table[] = {
        {"1/0", "division by zero"},
        {"5 Mod 0", "division by zero"},
        {"0^-1", "division by zero"},
        {"3000000000 \\ 1", "overflow: 3000000000 is outside the range of an integer operator"},
        {"CInt(40000)", "overflow: CInt takes -32768 to 32767"},
        {"1E308*10", "overflow"},
        {"Exp(1000)", "overflow"},
        {"(-8)^(1/3)", "the result is not a number"},
        {"Sqr(-1)", "Sqr of -1 is not defined"},
        {"Log(0)", "Log of 0 is not defined"},
        {"Round(1, -1)", "Round cannot take -1 places"},
        {"Round(1, 2, 3)", "round takes at most two arguments"},
        {"Abs(1, 2)", "abs takes one argument"},
        {"CreateObject(1)", "\"createobject\" at character 1 is not a number or a function we know"},
        {"value# * 2", "\"#\" at character 6 has no meaning here"},
        {"\"text\"", "\"\"\" at character 1 has no meaning here"},
        {"1 & 2", "\"&\" at character 3 has no meaning here"},
        {"1 +", "it ends where a value or \")\" is wanted"},
        {"(1 + 2", "it ends where a value or \")\" is wanted"},
        {"1 2", "\"2\" at character 3 is not wanted there"},
        {"Abs 1", "\"1\" at character 5 is not wanted there"},
        {"", "it ends where a value or \")\" is wanted"},
        {"1..2", "\".2\" at character 3 is not wanted there"},
        {"1 + .", "\".\" at character 5 is no number"},
        {"1E999", "the number 1E999 is too large"},
        {"((((((((((((((((((((((((((((((((((((((((((((((((((((((((((((((((((((((((((((((((((((((((((((((((("
         "(((((((((((1", "it is nested too deeply"},
    };
    for (const Evaluated& row : table) {
        try {
            const std::string result = EvaluateScriptText(row.Text);
            ADD_FAILURE() << row.Text << " gave " << result;
        } catch (const ExpressionError& error) {
            EXPECT_EQ(error.what(), "the expression \"" + std::string(row.Text) + "\" cannot be evaluated: " + row.Result);
        }
    }
}

TEST(ValueExpression, AValueReachesTheExpressionAsASuffixOrInPlaceOfValueHash) {
    EXPECT_EQ(EvaluateValueExpression(0.5, "*100"), 50);
    EXPECT_EQ(EvaluateValueExpression(0.5, ""), 0.5);
    EXPECT_EQ(EvaluateValueExpression(-0.25, "  (value# + 1) * value#  "), -0.1875);
    EXPECT_EQ(EvaluateValueExpression(3, "value# > 2"), 0) << "True reads back as 0";
    EXPECT_EQ(EvaluateValueExpression(1.5e-7, "*2"), 3e-7);
    // 15 significant digits reach the expression.
    EXPECT_EQ(EvaluateValueExpression(0.1234567890123456, ""), 0.123456789012346);
    // The older racks round the suffix form to nine places, and only that form.
    EXPECT_EQ(EvaluateValueExpression(1, "/3", true), 0.333333333);
    EXPECT_EQ(EvaluateValueExpression(1, "value#/3", true), 0.333333333333333);
    EXPECT_EQ(EvaluateValueExpression(2, "/3", true), 0.666666667);
    EXPECT_THROW(EvaluateValueExpression(1, "/0"), ExpressionError);
}

}  // namespace
}  // namespace morvanta
