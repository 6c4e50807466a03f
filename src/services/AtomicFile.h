// Writes a whole file so that readers see either the old file or the new
// one, never a part: a temporary file in the target folder, renamed over the
// target once complete.
#pragma once

#include <filesystem>
#include <string_view>

namespace morvanta {

// Throws std::runtime_error with a message naming the path on failure; the
// target is then untouched and no temporary file is left behind.
void WriteFileAtomically(const std::filesystem::path& target, std::string_view content);

}  // namespace morvanta
