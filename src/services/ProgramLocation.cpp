#include "services/ProgramLocation.h"

namespace morvanta {

std::filesystem::path ShippedCatalogueFolder(const std::filesystem::path& programFile) {
    if (programFile.empty()) return {};
    const std::filesystem::path folder = programFile.parent_path();
    std::error_code ec;
    for (const std::filesystem::path& candidate :
         {folder / "catalogues", folder / ".." / "share" / "morvanta" / "catalogues"}) {
        if (std::filesystem::is_directory(candidate, ec)) return candidate.lexically_normal();
    }
    return {};
}

}  // namespace morvanta
