// Where the running program lies, and the effect catalogues it ships with.
#pragma once

#include <filesystem>

#include "services/Platform.h"  // ProgramFile()

namespace morvanta {

// The catalogues that belong to a program file: a "catalogues" folder
// beside it (the build tree, and a Windows installation), else
// "../share/morvanta/catalogues" from its folder (an installation under a
// prefix, wherever it has been moved). Empty when neither exists.
std::filesystem::path ShippedCatalogueFolder(const std::filesystem::path& programFile);

}  // namespace morvanta
