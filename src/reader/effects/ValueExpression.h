// The value expressions of the effect catalogues: a session's parameter
// value put through a catalogue row's expression to reach the document's
// scale. The expressions are VBScript arithmetic; our own evaluator takes
// the numeric part of that language and never executes anything.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace morvanta {

// An expression the evaluator refuses (a word it does not know, a division
// by zero, a number too large for an integer operator). The message quotes
// the expression.
class ExpressionError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// Evaluates a whole expression and gives the text of its result, as the
// script language prints it: a number in the plain number text, "True" or
// "False" for a comparison or a logical operator on two truth values.
// Numbers, parentheses, "+ - * / \ ^ Mod", unary minus, "= <> < > <= >=",
// "Not And Or Xor", True and False, and the functions Abs Atn Cos Exp Fix
// Int Log Round Sgn Sin Sqr Tan CDbl CInt CLng (names in any case).
std::string EvaluateScriptText(std::string_view text);

// The converted value of a parameter: with "value#" in the expression every
// "value#" is replaced by the value's plain number text; otherwise the
// expression follows that text as a suffix ("*100"), and an empty one leaves
// the value alone. The result's text is read back by the prefix parse, and
// for the older rack chunks the suffix form is rounded to nine places.
double EvaluateValueExpression(double value, std::string_view expression, bool roundToNinePlaces = false);

}  // namespace morvanta
