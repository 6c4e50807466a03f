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

// Where a text lies in a document, in bytes.
struct TextSpan {
    std::size_t Begin = 0;
    std::size_t Size = 0;
};

// The document of an assembled session; the same session gives the same
// bytes every time. `OutputPath` gives the document's <name>, the one text
// that comes from the file system rather than from the session: `nameSpan`,
// when given, learns where it stands.
std::string ExportSesxFile(const Session& session, const ConvertOptions& options,
                           const std::string& OutputPath, std::vector<Diagnostic>& warnings,
                           TextSpan* nameSpan = nullptr);

}  // namespace morvanta
