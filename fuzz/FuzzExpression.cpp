// Fuzz target: any text through the evaluator of the catalogues' value
// expressions, alone and in both forms a value reaches it in. It evaluates
// or refuses; it must never crash or hang.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "reader/effects/ValueExpression.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    for (const bool nine : {false, true}) {
        try {
            (void)morvanta::EvaluateValueExpression(0.5, text, nine);
        } catch (const morvanta::ExpressionError&) {
        }
    }
    try {
        (void)morvanta::EvaluateScriptText(text);
    } catch (const morvanta::ExpressionError&) {
    }
    return 0;
}
