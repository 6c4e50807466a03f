// Reading and parsing the effect catalogues, and the store that keeps them
// for a run.
#include "reader/effects/Catalogues.h"

#include <fstream>
#include <sstream>

#include "model/Session.h"
#include "services/NumberText.h"
#include "services/TextHelpers.h"

namespace morvanta {
namespace {

constexpr std::size_t kNameWidth = 256;
constexpr std::size_t kExpressionWidth = 50;
constexpr std::size_t kFormatWidth = 20;
constexpr std::string_view kDefaultFormat = "0.000000000000";

// Lines end at CR LF, LF or CR. Each is read with its tabs turned into
// blanks and its blanks trimmed at both ends.
std::vector<std::string> SplitLines(std::string_view text) {
    std::vector<std::string> lines;
    std::string line;
    bool open = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (c == '\r' || c == '\n') {
            if (c == '\r' && i + 1 < text.size() && text[i + 1] == '\n') ++i;
            lines.push_back(TrimBlanks(line));
            line.clear();
            open = false;
        } else {
            line += c == '\t' ? ' ' : c;
            open = true;
        }
    }
    if (open) lines.push_back(TrimBlanks(line));
    return lines;
}

std::vector<std::string> SplitFields(std::string_view line) {
    std::vector<std::string> fields;
    std::size_t start = 0;
    for (;;) {
        const std::size_t bar = line.find('|', start);
        fields.emplace_back(line.substr(start, bar == std::string_view::npos ? std::string_view::npos : bar - start));
        if (bar == std::string_view::npos) return fields;
        start = bar + 1;
    }
}

std::int32_t IntegerField(const std::string& text) { return RoundHalfEven(ParseNumberPrefix(text)); }

class LineReader {
public:
    LineReader(std::string_view text, const std::string& path) : lines_(SplitLines(text)), path_(path) {}

    bool Empty() const { return lines_.empty(); }

    const std::string& Next(const std::string& what) {
        if (next_ >= lines_.size())
            Fail(next_ + 1, "the catalogue ends before its " + what);
        return lines_[next_++];
    }
    std::size_t LineNumber() const { return next_; }

    [[noreturn]] void Fail(std::size_t line, const std::string& message) const {
        throw CatalogueError(path_ + ", line " + std::to_string(line) + ": " + message);
    }

private:
    std::vector<std::string> lines_;
    const std::string& path_;
    std::size_t next_ = 0;
};

CatalogueRow ParseRow(LineReader& reader, CatalogueGeneration generation, std::size_t number, std::size_t count) {
    const std::string& line = reader.Next("parameter row " + std::to_string(number) + " of " + std::to_string(count));
    const bool named = generation == CatalogueGeneration::Named;
    // The fields in front of the expression are cut off at each "|"; the
    // expression and the format share the rest, split at its first "|".
    const std::size_t leading = named ? 3 : 2;
    std::vector<std::string> fields;
    std::size_t start = 0;
    for (std::size_t i = 0; i < leading; ++i) {
        const std::size_t bar = line.find('|', start);
        if (bar == std::string::npos) {
            reader.Fail(reader.LineNumber(),
                        std::string("a parameter row needs ") +
                            (named ? "ParameterName|SesParameterName|ParameterIndex|ValueExpression"
                                   : "ParameterName|ParameterIndex|ValueExpression") +
                            ", with an optional |ValueFormat: \"" + line + "\"");
        }
        fields.push_back(line.substr(start, bar - start));
        start = bar + 1;
    }
    const std::string rest = line.substr(start);
    CatalogueRow row;
    row.ParameterName = FixedText(fields[0], kNameWidth);
    if (named) row.SesParameterName = FixedText(fields[1], kNameWidth);
    row.ParameterIndex = IntegerField(fields[leading - 1]);
    if (const std::size_t bar = rest.find('|'); bar != std::string::npos) {
        row.ValueExpression = FixedText(rest.substr(0, bar), kExpressionWidth);
        row.ValueFormat = FixedText(TrimBlanks(rest.substr(bar + 1)), kFormatWidth);
    } else {
        row.ValueExpression = FixedText(rest, kExpressionWidth);
        row.ValueFormat = std::string(kDefaultFormat);
    }
    return row;
}

}  // namespace

EffectCatalogue ParseCatalogue(std::string_view text, CatalogueGeneration generation, const std::string& path) {
    LineReader reader(text, path);
    EffectCatalogue catalogue;
    if (generation == CatalogueGeneration::Positional && reader.Empty()) {
        catalogue.Empty = true;
        return catalogue;
    }
    catalogue.Name = FixedText(reader.Next("effect name"), kNameWidth);
    catalogue.ComponentId = FixedText(reader.Next("component id"), kNameWidth);
    const std::int32_t count = IntegerField(reader.Next("parameter count"));
    const auto n = static_cast<std::size_t>(std::max(count, 0));
    for (std::size_t i = 1; i <= n; ++i) catalogue.Rows.push_back(ParseRow(reader, generation, i, n));
    for (std::size_t i = 1; i <= n; ++i)
        catalogue.Defaults.push_back(
            ParseNumberPrefix(reader.Next("default value " + std::to_string(i) + " of " + std::to_string(n))));
    catalogue.Editor.Height = IntegerField(reader.Next("editor height"));
    catalogue.Editor.Left = IntegerField(reader.Next("editor left"));
    catalogue.Editor.Top = IntegerField(reader.Next("editor top"));
    catalogue.Editor.Width = IntegerField(reader.Next("editor width"));
    return catalogue;
}

std::vector<FallbackLine> ParseFallbackLines(std::string_view text) {
    std::vector<FallbackLine> lines;
    std::int32_t number = 0;
    for (const std::string& line : SplitLines(text)) lines.push_back({++number, SplitFields(line)});
    return lines;
}

std::optional<FallbackEntry> FindFallbackEntry(const std::vector<FallbackLine>& lines, std::string_view key,
                                               const std::string& path) {
    auto fail = [&](const FallbackLine& line, const std::string& message) {
        throw CatalogueError(path + ", line " + std::to_string(line.LineNumber) + ": " + message);
    };
    for (const FallbackLine& line : lines) {
        if (line.Fields.size() < 3)
            fail(line, "a fallback line needs at least three fields: free text|key|component id");
        if (line.Fields[1] != key) continue;
        if (line.Fields.size() > 3 && line.Fields.size() < 7)
            fail(line, "a fallback line has three fields, or seven with the editor's height, left, top and width");
        FallbackEntry entry;
        entry.ComponentId = FixedText(line.Fields[2], kNameWidth);
        entry.LineNumber = line.LineNumber;
        if (line.Fields.size() >= 7) {
            entry.Editor.Height = IntegerField(line.Fields[3]);
            entry.Editor.Left = IntegerField(line.Fields[4]);
            entry.Editor.Top = IntegerField(line.Fields[5]);
            entry.Editor.Width = IntegerField(line.Fields[6]);
        }
        return entry;
    }
    return std::nullopt;
}

std::optional<std::filesystem::path> CataloguePath(const std::filesystem::path& folder, std::string_view name) {
    if (name.empty() || folder.empty()) return std::nullopt;
    std::filesystem::path path = folder;
    std::size_t start = 0;
    for (;;) {
        const std::size_t end = name.find_first_of("\\/", start);
        const std::string_view part = name.substr(start, end == std::string_view::npos ? end : end - start);
        if (part.empty() || part == "." || part == ".." || part.find(':') != std::string_view::npos ||
            part.find('\0') != std::string_view::npos)
            return std::nullopt;
        path /= std::string(part);
        if (end == std::string_view::npos) return path;
        start = end + 1;
    }
}

CatalogueStore::CatalogueStore(std::filesystem::path folder) : folder_(std::move(folder)) {}

const CatalogueStore::Loaded* CatalogueStore::Load(const std::filesystem::path& path,
                                                   std::optional<CatalogueGeneration> generation) {
    const std::lock_guard lock(mutex_);
    if (const auto it = loaded_.find(path); it != loaded_.end()) return it->second.get();
    std::unique_ptr<Loaded> loaded;
    std::error_code ec;
    if (std::filesystem::is_regular_file(path, ec)) {
        loaded = std::make_unique<Loaded>();
        std::ifstream in(path, std::ios::binary);
        std::ostringstream text;
        text << in.rdbuf();
        if (!in || in.bad()) {
            loaded->Error = path.string() + ": the catalogue cannot be read";
        } else if (generation) {
            try {
                loaded->Catalogue = ParseCatalogue(text.str(), *generation, path.string());
            } catch (const CatalogueError& error) {
                loaded->Error = error.what();
            }
        } else {
            loaded->Lines = ParseFallbackLines(text.str());
        }
    }
    return loaded_.emplace(path, std::move(loaded)).first->second.get();
}

const EffectCatalogue* CatalogueStore::Find(std::string_view name, CatalogueGeneration generation) {
    const std::string fileName =
        std::string(name) + (generation == CatalogueGeneration::Named ? "30.Kelfx" : "15.Kelfx");
    const std::optional<std::filesystem::path> path = CataloguePath(folder_, fileName);
    if (!path) return nullptr;
    const Loaded* loaded = Load(*path, generation);
    if (!loaded) return nullptr;
    if (!loaded->Error.empty()) throw CatalogueError(loaded->Error);
    return &*loaded->Catalogue;
}

std::optional<FallbackEntry> CatalogueStore::FindFallback(std::string_view key) {
    if (folder_.empty()) return std::nullopt;
    const std::filesystem::path path = folder_ / kFallbackFileName;
    const Loaded* loaded = Load(path, std::nullopt);
    if (!loaded) return std::nullopt;
    if (!loaded->Error.empty()) throw CatalogueError(loaded->Error);
    return FindFallbackEntry(loaded->Lines, key, path.string());
}

}  // namespace morvanta
