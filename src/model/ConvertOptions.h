// The options of one conversion. They arrive with every call; no reader or
// writer looks at anything else for them.
#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>
#include <string>

namespace morvanta {

class CatalogueStore;

struct ConvertOptions {
    // Names come from the 16-bit wave list and the comment path is made
    // safe for 8-bit text; with a Charset the document is recoded afterwards.
    bool NonEnglish = false;
    // Charset the session's 8-bit texts are in; the finished document is
    // re-saved as UTF-8 from it. Empty: no recoding.
    std::string Charset;
    // The file list names media files without their folders.
    bool NoPathNames = false;
    // The session's texts are written so that any XML parser reads the
    // document: "<", ">" and '"' escaped, "--" in the closing comment
    // separated. Off, every byte is the one the format has always had.
    bool WellFormed = false;
    // Where the effect catalogues lie; empty: no catalogues, so every effect
    // is left out. A run fills Catalogues once for all its files, which then
    // share each catalogue it has read; without it each file reads its own.
    std::filesystem::path CatalogueFolder;
    std::shared_ptr<CatalogueStore> Catalogues;
    // The largest document written for one session. Tracks or clips that
    // share an id repeat each other's points, so a damaged file of a few
    // megabytes could otherwise ask for a document of gigabytes.
    std::size_t MaxDocumentBytes = std::size_t{256} << 20;
};

}  // namespace morvanta
