#include "services/ProgramLocation.h"

#if defined(_WIN32)
#include <windows.h>
#elif defined(__APPLE__)
#include <mach-o/dyld.h>

#include <vector>
#endif

namespace morvanta {

std::filesystem::path ProgramFile() {
#if defined(_WIN32)
    std::wstring buffer(32768, L'\0');
    const DWORD length = ::GetModuleFileNameW(nullptr, buffer.data(), static_cast<DWORD>(buffer.size()));
    if (length == 0 || length >= buffer.size()) return {};
    buffer.resize(length);
    return std::filesystem::path(buffer);
#elif defined(__APPLE__)
    std::uint32_t size = 0;
    _NSGetExecutablePath(nullptr, &size);
    std::vector<char> buffer(size + 1, '\0');
    if (_NSGetExecutablePath(buffer.data(), &size) != 0) return {};
    std::error_code ec;
    const auto path = std::filesystem::canonical(buffer.data(), ec);
    return ec ? std::filesystem::path(buffer.data()) : path;
#else
    std::error_code ec;
    const auto path = std::filesystem::read_symlink("/proc/self/exe", ec);
    return ec ? std::filesystem::path() : path;
#endif
}

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
