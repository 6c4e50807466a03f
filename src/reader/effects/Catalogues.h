// The effect catalogues: plain text files that join an effect of a session
// to an effect of the document (catalogues/README.md has their grammar).
// A catalogue is read and parsed once per run and then shared, unchanged,
// by every file and thread of the run.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace morvanta {

// A catalogue file that cannot be read or parsed. The message names the
// file and the line.
class CatalogueError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// The two generations of catalogue files: "<key>30.Kelfx" for the effect
// lists of the later track chunks, "<name>15.Kelfx" for the older racks and
// buses.
enum class CatalogueGeneration { Named = 30, Positional = 15 };

inline constexpr std::string_view kFallbackFileName = "EverythingElse30.Kelfx";

struct CatalogueRow {
    std::string ParameterName;
    std::string SesParameterName;  // empty in the positional generation
    std::int32_t ParameterIndex{};
    std::string ValueExpression;   // at most 50 characters
    std::string ValueFormat;       // at most 20 characters
};

struct EditorGeometry {
    std::int32_t Height{};
    std::int32_t Left{};
    std::int32_t Top{};
    std::int32_t Width{};
};

struct EffectCatalogue {
    // A positional catalogue without a single line: it leaves the slot as
    // its caller made it.
    bool Empty = false;
    std::string Name;         // the effect's name in the document
    std::string ComponentId;
    std::vector<CatalogueRow> Rows;
    std::vector<double> Defaults;  // one per row
    EditorGeometry Editor;
};

struct FallbackLine {
    std::int32_t LineNumber{};
    std::vector<std::string> Fields;  // as split at "|", untrimmed
};

struct FallbackEntry {
    std::string ComponentId;
    EditorGeometry Editor;  // 0 where the line gives none
    std::int32_t LineNumber{};
};

// Parses the text of one catalogue; `path` names it in messages.
EffectCatalogue ParseCatalogue(std::string_view text, CatalogueGeneration generation, const std::string& path);

// The lines of the fallback file, each split at "|".
std::vector<FallbackLine> ParseFallbackLines(std::string_view text);

// The first line whose second field is exactly `key`. A line reached before
// it with fewer than three fields, or the matching line with four to six,
// fails with CatalogueError naming `path` and the line.
std::optional<FallbackEntry> FindFallbackEntry(const std::vector<FallbackLine>& lines, std::string_view key,
                                               const std::string& path);

// Where the catalogue of `name` lies in `folder`: backslashes (and slashes)
// lead into sub-folders. A name that would leave the folder (a ".." part, a
// leading separator, a drive letter) has no catalogue.
std::optional<std::filesystem::path> CataloguePath(const std::filesystem::path& folder, std::string_view name);

// The catalogues of one folder, read when first asked for and kept for the
// rest of the run. Safe to share between threads.
class CatalogueStore {
public:
    explicit CatalogueStore(std::filesystem::path folder);

    const std::filesystem::path& Folder() const { return folder_; }

    // The catalogue "<name>30.Kelfx" or "<name>15.Kelfx"; nothing when no
    // such file exists. Throws CatalogueError when it cannot be read or parsed.
    const EffectCatalogue* Find(std::string_view name, CatalogueGeneration generation);

    // The fallback line of `key`; nothing without the fallback file or a
    // line for the key. Throws CatalogueError as FindFallbackEntry does.
    std::optional<FallbackEntry> FindFallback(std::string_view key);

private:
    struct Loaded {
        std::optional<EffectCatalogue> Catalogue;
        std::vector<FallbackLine> Lines;
        std::string Error;  // the file could not be read or parsed
    };
    const Loaded* Load(const std::filesystem::path& path, std::optional<CatalogueGeneration> generation);

    std::filesystem::path folder_;
    std::mutex mutex_;
    std::map<std::filesystem::path, std::unique_ptr<Loaded>> loaded_;  // nullptr: no such file
};

}  // namespace morvanta
