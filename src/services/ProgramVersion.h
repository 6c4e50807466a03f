// The program's name and version, as the documents, the command line and
// the window show them.
#pragma once

#include <string>
#include <string_view>

namespace morvanta {

inline constexpr std::string_view kProgramName = "Morvanta";

// "1.5.00": major, minor and a two-digit revision.
inline std::string VersionText() {
    const std::string revision = "00" + std::to_string(MORVANTA_VERSION_PATCH);
    return std::to_string(MORVANTA_VERSION_MAJOR) + "." + std::to_string(MORVANTA_VERSION_MINOR) + "." +
           revision.substr(revision.size() - 2);
}

}  // namespace morvanta
