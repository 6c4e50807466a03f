// How a parameter value of a session's effect becomes the value of a
// catalogue row: the row's expression, and the steps built in for the
// effects of the session's own writer (docs/format/effects.md).
#pragma once

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

#include "model/Session.h"

namespace morvanta {

// A step that has no sound result (a division by zero, a row the catalogue
// lacks). The message says which.
class EffectStepError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// The rows of one effect: RackParameters [First, End) and its RackSlots row.
// A step of the "Graphic Equalizer" can shorten the effect, moving End.
struct EffectRows {
    std::size_t First = 0;
    std::size_t End = 0;
    std::size_t Slot = 0;
};

// One named parameter of an effect of the later track chunks, after the
// catalogue of `effectKey` has filled `rows`. Throws ExpressionError or
// EffectStepError, unless `mismatchSeen`: once a parameter of the chunk has
// been tried against a row of another name (which this call records), a
// failing step is passed over and the value goes on as it was.
void TranslateNamedParameter(Session& session, std::string_view effectKey, EffectRows& rows, const std::string& name,
                             double value, bool& mismatchSeen);

enum class RackForm { Track, Bus };

// The comma-separated values of an older rack or bus effect. GE and Channel
// Mixer steps go by `effectName`, the session's name; Dynamics Processing
// and Parametric Equalizer by `catalogueName`, the catalogue's name line.
void TranslatePositionalParameters(Session& session, std::string_view effectName, std::string_view catalogueName,
                                   EffectRows& rows, std::string_view parameterText, RackForm form);

}  // namespace morvanta
