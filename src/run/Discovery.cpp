#include "run/Discovery.h"

#include <algorithm>
#include <cmath>
#include <filesystem>

#include "run/ConvertFile.h"
#include "services/NumberText.h"
#include "services/Platform.h"
#include "services/TextHelpers.h"

namespace morvanta {
namespace fs = std::filesystem;

std::string NormaliseVersion(std::string_view version) {
    std::string text(version);
    if (const auto at = text.find(" ["); at != std::string::npos) text.resize(at);
    if (text.starts_with("Audition ")) return text.substr(0, 12);
    if (text.starts_with("Cool Edit")) return TrimBlanks(text.substr(0, 18));
    return text;
}

int FileTypeRowFor(std::string_view version) {
    int best = 0;
    std::size_t bestLength = 0;
    for (std::size_t i = 0; i < kSesFileTypes.size(); ++i) {
        if (version == kSesFileTypes[i]) return static_cast<int>(i) + 1;
        if (version.starts_with(kSesFileTypes[i]) && kSesFileTypes[i].size() > bestLength) {
            best = static_cast<int>(i) + 1;
            bestLength = kSesFileTypes[i].size();
        }
    }
    return best;
}

std::string WithClosingSeparator(std::string folder) {
    constexpr bool kBackslashSeparates = fs::path::preferred_separator == '\\';
    const std::size_t last = folder.find_last_of(kBackslashSeparates ? "/\\" : "/");
    if (last == std::string::npos) folder += static_cast<char>(fs::path::preferred_separator);
    else if (last + 1 != folder.size()) folder += folder[last];
    return folder;
}

namespace {

void ScanOne(const fs::path& folder, const ScanOptions& options, ScanResult& result, bool& stop) {
    const std::string folderText = WithClosingSeparator(folder.string());
    if (options.OnFolder && !options.OnFolder(folderText)) {
        stop = true;
        return;
    }
    ++result.FoldersScanned;

    std::error_code ec;
    fs::directory_iterator it(folder, fs::directory_options::skip_permission_denied, ec);
    if (ec) {
        result.Problems.push_back({folderText, "Cannot access the selected item " + folderText + ": " + ec.message()});
        return;
    }
    std::vector<fs::directory_entry> entries;
    for (; it != fs::directory_iterator(); it.increment(ec)) {
        if (ec) break;
        if (it->path().filename().string().starts_with(".")) continue;
        entries.push_back(*it);
    }
    std::sort(entries.begin(), entries.end(),
              [](const auto& a, const auto& b) { return a.path().filename() < b.path().filename(); });

    std::vector<fs::path> subfolders;
    for (const auto& entry : entries) {
        std::error_code typeError;
        if (entry.is_directory(typeError)) {
            if (!entry.is_symlink(typeError)) subfolders.push_back(entry.path());
            continue;
        }
        const std::string name = entry.path().filename().string();
        if (!name.ends_with(".ses") || !entry.is_regular_file(typeError)) continue;

        const std::string path = folderText + name;
        const ImportResult probe = ProbeSesFile(PathFromText(path));
        FoundSession found;
        found.Folder = folderText;
        found.File = name;
        found.Version = NormaliseVersion(probe.Version);
        found.FileTypeRow = FileTypeRowFor(found.Version);
        if (!options.IncludeUnlisted) {
            if (probe.Status == ImportStatus::Failed) {
                const bool rejected = probe.ErrorOffset >= 0 || !probe.ErrorChunk.empty();
                result.Problems.push_back({path, DescribeFailure(path, probe), rejected});
                continue;
            }
            if (probe.Result < 0 || !probe.VersionRead || probe.Version.empty()) continue;
            if (found.FileTypeRow == 0 || (options.FileTypeMask & (1 << found.FileTypeRow)) == 0) continue;
        }
        found.Bytes = static_cast<std::int64_t>(entry.file_size(typeError));
        found.Created = FileCreatedTime(entry.path());
        if (options.OnSession) options.OnSession(found);
        result.Sessions.push_back(std::move(found));
    }
    if (!options.Recurse) return;
    for (const auto& sub : subfolders) {
        ScanOne(sub, options, result, stop);
        if (stop) return;
    }
}

}  // namespace

ScanResult FullDirFileList(const std::string& folder, const ScanOptions& options) {
    ScanResult result;
    bool stop = false;
    ScanOne(PathFromText(folder), options, result, stop);
    return result;
}

std::string FormatCreated(std::time_t time) {
    const std::tm local = LocalTime(time);
    char buffer[32];
    std::strftime(buffer, sizeof buffer, "%d/%m/%Y %H:%M:%S", &local);
    return buffer;
}

std::string FormatBytes(double bytes) {
    std::string digits = IntegerText(bytes);
    const bool negative = digits.starts_with("-");
    if (negative) digits.erase(0, 1);
    std::string grouped;
    for (std::size_t i = 0; i < digits.size(); ++i) {
        if (i > 0 && (digits.size() - i) % 3 == 0) grouped += ',';
        grouped += digits[i];
    }
    return (negative ? "-" : "") + grouped;
}

}  // namespace morvanta
