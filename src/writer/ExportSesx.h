// The document writer: the whole XML document of one session, as text.
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <vector>

#include "model/ConvertOptions.h"
#include "model/Diagnostic.h"
#include "model/Session.h"

namespace morvanta {

// The document outgrew ConvertOptions::MaxDocumentBytes; the file fails.
class DocumentTooLarge : public std::runtime_error {
public:
    explicit DocumentTooLarge(std::size_t limit);
};

// Writes the document of an assembled session. Reorders `Tracks`, sorts
// `Clips` and sets `GroupItemId` in place, as the writing requires.
// `OutputPath` gives the document's <name>.
std::string ExportSesxFile(Session& session, const ConvertOptions& options,
                           const std::string& OutputPath, std::vector<Diagnostic>& warnings);

}  // namespace morvanta
