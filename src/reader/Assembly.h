// The assembly that runs after the walk: raw chunk records become the lists
// the writer reads.
#pragma once

#include <vector>

#include "model/ConvertOptions.h"
#include "model/Diagnostic.h"
#include "model/Session.h"

namespace morvanta {

// All assembly steps, in their fixed order.
void AssembleSession(Session& session, const ConvertOptions& options, std::vector<Diagnostic>& warnings);

// The four tempo texts of <timeFormatState>, with their defaults for 0.
void BuildTempoTexts(Session& session);

}  // namespace morvanta
