// A recursive-descent evaluator of VBScript's numeric expressions, with the
// language's operator precedence, from the tightest: "^", unary minus,
// "* /", "\", "Mod", "+ -", the comparisons, "Not", "And", "Or", "Xor".
#include "reader/effects/ValueExpression.h"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

#include "services/NumberText.h"
#include "services/TextHelpers.h"

namespace morvanta {
namespace {

// A value of the script language as far as numbers go: a number, or a truth
// value (True is -1 and False 0 wherever a number is wanted).
struct Value {
    double Number = 0;
    bool Boolean = false;
};

Value Truth(bool value) { return {value ? -1.0 : 0.0, true}; }

enum class Kind { Number, Word, Operator, Open, Close, Comma, End };

struct Token {
    Kind Type = Kind::End;
    std::string Text;  // words in lower case
    double Number = 0;
    std::size_t Position = 0;  // 1-based character of the text
};

// Deeper nesting than any catalogue needs is refused before the stack runs out.
constexpr int kDeepestNesting = 100;

class Evaluator {
public:
    explicit Evaluator(std::string_view text) : text_(text) { Tokenise(); }

    Value Run() {
        const Value result = Expression(0);
        if (Peek().Type != Kind::End) Unexpected(Peek());
        return result;
    }

    [[noreturn]] void Fail(const std::string& reason) const {
        throw ExpressionError("the expression \"" + std::string(text_) + "\" cannot be evaluated: " + reason);
    }

private:
    void Tokenise() {
        std::size_t i = 0;
        while (i < text_.size()) {
            const char c = text_[i];
            const std::size_t at = i + 1;
            if (c == ' ' || c == '\t') {
                ++i;
            } else if ((c >= '0' && c <= '9') || c == '.') {
                tokens_.push_back(NumberAt(i));
            } else if ((c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z')) {
                std::string word;
                while (i < text_.size() && ((text_[i] >= 'A' && text_[i] <= 'Z') || (text_[i] >= 'a' && text_[i] <= 'z') ||
                                            (text_[i] >= '0' && text_[i] <= '9') || text_[i] == '_')) {
                    const char w = text_[i++];
                    word += static_cast<char>(w >= 'A' && w <= 'Z' ? w + 32 : w);
                }
                tokens_.push_back({Kind::Word, word, 0, at});
            } else if (c == '(' || c == ')' || c == ',') {
                tokens_.push_back({c == '(' ? Kind::Open : c == ')' ? Kind::Close : Kind::Comma, std::string(1, c), 0, at});
                ++i;
            } else if (c == '<' || c == '>') {
                std::string op(1, c);
                if (i + 1 < text_.size() && (text_[i + 1] == '=' || (c == '<' && text_[i + 1] == '>'))) op += text_[++i];
                tokens_.push_back({Kind::Operator, op, 0, at});
                ++i;
            } else if (std::string_view("+-*/\\^=").find(c) != std::string_view::npos) {
                tokens_.push_back({Kind::Operator, std::string(1, c), 0, at});
                ++i;
            } else {
                Fail("\"" + std::string(1, c) + "\" at character " + std::to_string(at) + " has no meaning here");
            }
        }
        tokens_.push_back({Kind::End, "", 0, text_.size() + 1});
    }

    // Digits with an optional point and an optional exponent ("1.5E-07", ".5").
    Token NumberAt(std::size_t& i) {
        const std::size_t start = i;
        auto digits = [&] {
            while (i < text_.size() && text_[i] >= '0' && text_[i] <= '9') ++i;
        };
        digits();
        if (i < text_.size() && text_[i] == '.') {
            ++i;
            digits();
        }
        if (i < text_.size() && (text_[i] == 'E' || text_[i] == 'e')) {
            std::size_t j = i + 1;
            if (j < text_.size() && (text_[j] == '+' || text_[j] == '-')) ++j;
            if (j < text_.size() && text_[j] >= '0' && text_[j] <= '9') {
                i = j;
                digits();
            }
        }
        const std::string_view literal = text_.substr(start, i - start);
        double value = 0;
        const auto [end, error] = std::from_chars(literal.data(), literal.data() + literal.size(), value);
        if (literal == "." || end != literal.data() + literal.size())
            Fail("\"" + std::string(literal) + "\" at character " + std::to_string(start + 1) + " is no number");
        if (error == std::errc::result_out_of_range) Fail("the number " + std::string(literal) + " is too large");
        return {Kind::Number, std::string(literal), value, start + 1};
    }

    const Token& Peek() const { return tokens_[next_]; }
    const Token& Take() { return tokens_[next_ < tokens_.size() - 1 ? next_++ : next_]; }
    bool TakeIf(Kind type, std::string_view text) {
        if (Peek().Type != type || Peek().Text != text) return false;
        ++next_;
        return true;
    }

    [[noreturn]] void Unexpected(const Token& token) const {
        if (token.Type == Kind::End) Fail("it ends where a value or \")\" is wanted");
        Fail("\"" + token.Text + "\" at character " + std::to_string(token.Position) + " is not wanted there");
    }

    // Levels of binding, loosest first.
    Value Expression(int depth) {
        if (depth > kDeepestNesting) Fail("it is nested too deeply");
        return Xor(depth);
    }

    Value Xor(int depth) {
        Value left = Or(depth);
        while (TakeIf(Kind::Word, "xor")) left = Logical(left, Or(depth), [](auto a, auto b) { return a ^ b; });
        return left;
    }
    Value Or(int depth) {
        Value left = And(depth);
        while (TakeIf(Kind::Word, "or")) left = Logical(left, And(depth), [](auto a, auto b) { return a | b; });
        return left;
    }
    Value And(int depth) {
        Value left = Not(depth);
        while (TakeIf(Kind::Word, "and")) left = Logical(left, Not(depth), [](auto a, auto b) { return a & b; });
        return left;
    }
    Value Not(int depth) {
        if (!TakeIf(Kind::Word, "not")) return Comparison(depth);
        if (depth > kDeepestNesting) Fail("it is nested too deeply");
        const Value operand = Not(depth + 1);
        if (operand.Boolean) return Truth(operand.Number == 0);
        return {static_cast<double>(~Long(operand)), false};
    }

    Value Comparison(int depth) {
        Value left = Sum(depth);
        for (;;) {
            const Token& op = Peek();
            if (op.Type != Kind::Operator || (op.Text != "=" && op.Text != "<>" && op.Text != "<" && op.Text != ">" &&
                                              op.Text != "<=" && op.Text != ">="))
                return left;
            const std::string name = Take().Text;
            const double a = left.Number;
            const double b = Sum(depth).Number;
            left = Truth(name == "=" ? a == b : name == "<>" ? a != b : name == "<" ? a < b : name == ">" ? a > b
                                                                                   : name == "<=" ? a <= b
                                                                                                  : a >= b);
        }
    }

    Value Sum(int depth) {
        Value left = Modulo(depth);
        for (;;) {
            if (TakeIf(Kind::Operator, "+")) left = Checked(left.Number + Modulo(depth).Number);
            else if (TakeIf(Kind::Operator, "-")) left = Checked(left.Number - Modulo(depth).Number);
            else return left;
        }
    }

    Value Modulo(int depth) {
        Value left = IntegerQuotient(depth);
        while (TakeIf(Kind::Word, "mod")) {
            const std::int64_t a = Long(left);
            const std::int64_t b = Long(IntegerQuotient(depth));
            if (b == 0) Fail("division by zero");
            left = {static_cast<double>(a % b), false};
        }
        return left;
    }

    Value IntegerQuotient(int depth) {
        Value left = Product(depth);
        while (TakeIf(Kind::Operator, "\\")) {
            const std::int64_t a = Long(left);
            const std::int64_t b = Long(Product(depth));
            if (b == 0) Fail("division by zero");
            left = {static_cast<double>(InLongRange(a / b)), false};
        }
        return left;
    }

    Value Product(int depth) {
        Value left = Negation(depth);
        for (;;) {
            if (TakeIf(Kind::Operator, "*")) {
                left = Checked(left.Number * Negation(depth).Number);
            } else if (TakeIf(Kind::Operator, "/")) {
                const double divisor = Negation(depth).Number;
                if (divisor == 0) Fail("division by zero");
                left = Checked(left.Number / divisor);
            } else {
                return left;
            }
        }
    }

    Value Negation(int depth) {
        if (depth > kDeepestNesting) Fail("it is nested too deeply");
        if (TakeIf(Kind::Operator, "-")) return {-Negation(depth + 1).Number, false};
        if (TakeIf(Kind::Operator, "+")) return {Negation(depth + 1).Number, false};
        return Power(depth);
    }

    // "^" binds tighter than a unary minus in front of it ("-2^2" is -4),
    // and its right side may carry a sign of its own ("2^-1").
    Value Power(int depth) {
        Value left = Primary(depth);
        while (TakeIf(Kind::Operator, "^")) {
            int signs = 0;
            for (;;) {
                if (TakeIf(Kind::Operator, "-")) ++signs;
                else if (!TakeIf(Kind::Operator, "+")) break;
            }
            double exponent = Primary(depth).Number;
            if (signs % 2 == 1) exponent = -exponent;
            if (left.Number == 0 && exponent < 0) Fail("division by zero");
            left = Checked(std::pow(left.Number, exponent));
        }
        return left;
    }

    Value Primary(int depth) {
        const Token& token = Take();
        switch (token.Type) {
            case Kind::Number: return {token.Number, false};
            case Kind::Open: {
                const Value inner = Expression(depth + 1);
                if (!TakeIf(Kind::Close, ")")) Unexpected(Peek());
                return inner;
            }
            case Kind::Word:
                if (token.Text == "true") return Truth(true);
                if (token.Text == "false") return Truth(false);
                return Call(token, depth);
            default: Unexpected(token);
        }
    }

    Value Call(const Token& name, int depth) {
        static constexpr std::string_view kFunctions[] = {"abs", "atn", "cos", "exp",  "fix",  "int",  "log", "round",
                                                          "sgn", "sin", "sqr", "tan", "cdbl", "cint", "clng"};
        bool known = false;
        for (std::string_view f : kFunctions) known = known || f == name.Text;
        if (!known) Fail("\"" + name.Text + "\" at character " + std::to_string(name.Position) + " is not a number or a function we know");
        if (!TakeIf(Kind::Open, "(")) Unexpected(Peek());
        std::vector<double> arguments{Expression(depth + 1).Number};
        while (TakeIf(Kind::Comma, ",")) arguments.push_back(Expression(depth + 1).Number);
        if (!TakeIf(Kind::Close, ")")) Unexpected(Peek());
        const std::size_t wanted = name.Text == "round" ? 2 : 1;
        if (arguments.size() > wanted) Fail(name.Text + " takes " + (wanted == 1 ? "one argument" : "at most two arguments"));

        const double x = arguments[0];
        const std::string& f = name.Text;
        if (f == "abs") return {std::fabs(x), false};
        if (f == "atn") return {std::atan(x), false};
        if (f == "cos") return {std::cos(x), false};
        if (f == "sin") return {std::sin(x), false};
        if (f == "tan") return Checked(std::tan(x));
        if (f == "exp") return Checked(std::exp(x));
        if (f == "fix") return {std::trunc(x), false};
        if (f == "int") return {std::floor(x), false};
        if (f == "sgn") return {x > 0 ? 1.0 : x < 0 ? -1.0 : 0.0, false};
        if (f == "cdbl") return {x, false};
        if (f == "log") {
            if (x <= 0) Fail("Log of " + PlainNumberText(x) + " is not defined");
            return {std::log(x), false};
        }
        if (f == "sqr") {
            if (x < 0) Fail("Sqr of " + PlainNumberText(x) + " is not defined");
            return {std::sqrt(x), false};
        }
        if (f == "cint") {
            const double r = std::nearbyint(x);  // a half to the even neighbour
            if (r < -32768 || r > 32767) Fail("overflow: CInt takes -32768 to 32767");
            return {r, false};
        }
        if (f == "clng") return {static_cast<double>(Long({x, false})), false};
        // Round(x[, places]): a half to the even neighbour.
        const std::int64_t places = arguments.size() > 1 ? Long({arguments[1], false}) : 0;
        if (places < 0 || places > 22) Fail("Round cannot take " + std::to_string(places) + " places");
        const double scale = std::pow(10.0, static_cast<double>(places));
        if (!std::isfinite(x * scale)) return {x, false};
        return {std::nearbyint(x * scale) / scale, false};
    }

    template <class Operation>
    Value Logical(const Value& a, const Value& b, Operation op) {
        if (a.Boolean && b.Boolean) return Truth(op(a.Number != 0, b.Number != 0));
        return {static_cast<double>(op(Long(a), Long(b))), false};
    }

    // The operand of an integer operator: nearest, a half to even, and
    // within the 32-bit range.
    std::int64_t Long(const Value& value) const {
        const double r = std::nearbyint(value.Number);
        if (!(r >= -2147483648.0 && r <= 2147483647.0))
            Fail("overflow: " + PlainNumberText(value.Number) + " is outside the range of an integer operator");
        return static_cast<std::int64_t>(r);
    }

    std::int64_t InLongRange(std::int64_t value) const {
        if (value < std::numeric_limits<std::int32_t>::min() || value > std::numeric_limits<std::int32_t>::max())
            Fail("overflow");
        return value;
    }

    Value Checked(double value) const {
        if (std::isnan(value)) Fail("the result is not a number");
        if (std::isinf(value)) Fail("overflow");
        return {value, false};
    }

    std::string_view text_;
    std::vector<Token> tokens_;
    std::size_t next_ = 0;
};

}  // namespace

std::string EvaluateScriptText(std::string_view text) {
    Evaluator evaluator(text);
    const Value result = evaluator.Run();
    if (result.Boolean) return result.Number != 0 ? "True" : "False";
    if (!std::isfinite(result.Number)) evaluator.Fail("overflow");
    return PlainNumberText(result.Number);
}

double EvaluateValueExpression(double value, std::string_view expression, bool roundToNinePlaces) {
    constexpr std::string_view kPlaceholder = "value#";
    const std::string number = PlainNumberText(value);
    const bool substituted = expression.find(kPlaceholder) != std::string_view::npos;
    const std::string text =
        substituted ? TrimBlanks(ReplaceAll(std::string(expression), kPlaceholder, number)) : number + std::string(expression);
    double result = ParseNumberPrefix(EvaluateScriptText(text));
    if (roundToNinePlaces && !substituted) result = ParseNumberPrefix(FixedPlacesText(result, 9));
    return result;
}

}  // namespace morvanta
