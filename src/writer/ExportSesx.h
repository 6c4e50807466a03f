// The document writer: the whole XML document of one session, as text.
#pragma once

#include <string>
#include <vector>

#include "model/ConvertOptions.h"
#include "model/Diagnostic.h"
#include "model/Session.h"

namespace morvanta {

// Writes the document of an assembled session. Reorders `Tracks`, sorts
// `Clips` and sets `GroupItemId` in place, as the writing requires.
// `OutputPath` gives the document's <name>.
std::string ExportSesxFile(Session& session, const ConvertOptions& options,
                           const std::string& OutputPath, std::vector<Diagnostic>& warnings);

}  // namespace morvanta
