// The program's name and version, as the documents, the command line and
// the window show them.
#pragma once

#include <string>
#include <string_view>

namespace morvanta {

inline constexpr std::string_view kProgramName = "Morvanta";

// "1.5.00": major, minor and a two-digit revision, from the build.
inline std::string VersionText() { return MORVANTA_VERSION_TEXT; }

}  // namespace morvanta
