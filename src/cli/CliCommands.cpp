#include "cli/CliCommands.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iomanip>
#include <iostream>
#include <optional>
#include <sstream>
#include <thread>

#include "model/VersionClasses.h"
#include "reader/ImportSes.h"
#include "run/ConversionRun.h"
#include "run/Discovery.h"
#include "services/Platform.h"
#include "services/ProgramLocation.h"
#include "services/Recoding.h"
#include "services/SessionDump.h"
#include "services/TextHelpers.h"

namespace morvanta::cli {
namespace fs = std::filesystem;

std::string JsonString(const std::string& text) {
    std::string out = "\"";
    auto escapeCode = [&](unsigned char code) { out += "\\u00" + HexByte(code); };
    for (std::size_t i = 0; i < text.size();) {
        const auto c = static_cast<unsigned char>(text[i]);
        if (c == '"' || c == '\\') {
            out += '\\';
            out += static_cast<char>(c);
            ++i;
        } else if (c == '\n') {
            out += "\\n";
            ++i;
        } else if (c == '\r') {
            out += "\\r";
            ++i;
        } else if (c == '\t') {
            out += "\\t";
            ++i;
        } else if (c < 0x20) {
            escapeCode(c);
            ++i;
        } else if (c < 0x80) {
            out += static_cast<char>(c);
            ++i;
        } else {
            // A well-formed UTF-8 sequence passes; any other byte is Latin-1.
            const std::size_t length = c >= 0xF0 && c < 0xF5 ? 4 : c >= 0xE0 ? 3 : c >= 0xC2 ? 2 : 0;
            bool valid = length > 0 && i + length <= text.size() && c < 0xF5;
            for (std::size_t k = 1; valid && k < length; ++k)
                valid = (static_cast<unsigned char>(text[i + k]) & 0xC0) == 0x80;
            if (valid) {
                out.append(text, i, length);
                i += length;
            } else {
                // Latin-1 byte as its code point, written in UTF-8.
                out += static_cast<char>(0xC0 | (c >> 6));
                out += static_cast<char>(0x80 | (c & 0x3F));
                ++i;
            }
        }
    }
    return out + "\"";
}

namespace {

const char* StatusWord(FileStatus status) {
    switch (status) {
        case FileStatus::Converted: return "converted";
        case FileStatus::NotSession: return "not-ses";
        case FileStatus::Refused: return "refused";
        case FileStatus::Failed: return "failed";
        case FileStatus::Skipped: return "skipped";
    }
    return "failed";
}

// A one-line bar on the terminal, redrawn in place.
class ProgressBar {
public:
    ProgressBar(std::ostream& err, bool enabled) : err_(err), enabled_(enabled) {}
    void Show(int value, int maximum, const std::string& path) {
        if (!enabled_) return;
        constexpr int kWidth = 30;
        const int filled = maximum > 0 ? value * kWidth / maximum : kWidth;
        std::string name = PathFromText(path).filename().string();
        if (name.size() > 40) name = name.substr(0, 37) + "...";
        err_ << "\r[" << std::string(static_cast<std::size_t>(filled), '=')
             << std::string(static_cast<std::size_t>(kWidth - filled), ' ') << "] " << value << "/" << maximum << " "
             << name << "\x1b[K" << std::flush;
        shown_ = true;
    }
    void Clear() {
        if (shown_) err_ << "\r\x1b[K" << std::flush;
        shown_ = false;
    }

private:
    std::ostream& err_;
    bool enabled_;
    bool shown_ = false;
};

int AskOnTerminal(const std::string& targetPath, std::ostream& err) {
    for (;;) {
        err << "File '" << targetPath << "' already exists. Overwrite? [y]es, [a]ll, [n]o, [c]ancel: " << std::flush;
        std::string answer;
        if (!std::getline(std::cin, answer)) return kSkipFile;
        if (answer == "y" || answer == "Y" || answer == "yes") return kOverwrite;
        if (answer == "a" || answer == "A" || answer == "all") return kOverwriteAll;
        if (answer == "n" || answer == "N" || answer == "no" || answer.empty()) return kSkipFile;
        if (answer == "c" || answer == "C" || answer == "cancel") return kCancelRun;
    }
}

}  // namespace

// The catalogue folder a command names, else the shipped one. Nothing,
// after a message, when the named folder does not exist.
std::optional<fs::path> CatalogueFolderFor(const std::string& named, std::ostream& err) {
    if (named.empty()) {
        const fs::path shipped = ShippedCatalogueFolder(ProgramFile());
        // The run goes on, but no effect can reach a document: say why once.
        if (shipped.empty())
            err << "morvanta: no effect catalogues were found beside the program (a folder \"catalogues\", or "
                   "\"../share/morvanta/catalogues\"): every effect is left out; name a folder with --catalogues DIR\n";
        return shipped;
    }
    std::error_code ec;
    if (!fs::is_directory(PathFromText(named), ec)) {
        err << "morvanta: the catalogue folder " << named << " does not exist\n";
        return std::nullopt;
    }
    return PathFromText(named);
}

std::string LanguageNames() {
    std::string names;
    for (const LanguageRow& row : LanguageTable) {
        if (!names.empty()) names += ", ";
        names += "\"" + std::string(row.Language) + "\" (" + std::string(row.Charset) + ")";
    }
    return names;
}

int RunConvert(const ConvertCommand& command, std::ostream& out, std::ostream& err) {
    RunSettings settings;
    settings.Convert.NoPathNames = command.NoPathNames;
    settings.Convert.WellFormed = command.WellFormed;
    if (!command.Language.empty()) {
        const std::optional<std::string> charset = CharsetForLanguage(command.Language);
        if (!charset) {
            err << "morvanta: unknown language or charset \"" << command.Language << "\"; use one of "
                << LanguageNames() << ", or a charset name such as \"windows-1252\" or \"ISO-8859-15\"\n";
            return kExitUsage;
        }
        // As the window's language box: wide names are read and the
        // document is recoded afterwards.
        settings.Convert.NonEnglish = true;
        settings.Convert.Charset = *charset;
    }
    const std::optional<fs::path> catalogues = CatalogueFolderFor(command.Catalogues, err);
    if (!catalogues) return kExitUsage;
    settings.Convert.CatalogueFolder = *catalogues;
    if (!command.OutFolder.empty()) {
        std::error_code ec;
        if (!fs::is_directory(PathFromText(command.OutFolder), ec)) {
            err << "morvanta: the output folder " << command.OutFolder << " does not exist\n";
            return kExitUsage;
        }
        settings.Target = TargetOption::SpecificFolder;
        settings.TargetFolder = command.OutFolder;
    }

    std::vector<RunRow> rows;
    bool missing = false;
    for (const std::string& path : command.Paths) {
        std::error_code ec;
        if (fs::is_directory(PathFromText(path), ec)) {
            ScanOptions scan;
            scan.Recurse = command.Recursive;
            scan.IncludeUnlisted = true;
            for (const FoundSession& found : FullDirFileList(path, scan).Sessions)
                rows.push_back({found.Folder, found.File, true});
        } else if (fs::exists(PathFromText(path), ec)) {
            const fs::path p = PathFromText(path);
            rows.push_back({WithClosingSeparator(p.has_parent_path() ? p.parent_path().string() : "."),
                            p.filename().string(), true});
        } else {
            err << "morvanta: " << path << ": no such file or folder\n";
            missing = true;
        }
    }

    // Without a terminal to ask on, an existing document is kept.
    switch (command.Overwrite) {
        case OverwriteMode::All: settings.Existing = ExistingDocuments::ReplaceAll; break;
        case OverwriteMode::Skip: settings.Existing = ExistingDocuments::Keep; break;
        case OverwriteMode::Ask:
            settings.Existing = IsTerminal(StandardStream::Input) ? ExistingDocuments::Ask : ExistingDocuments::Keep;
            break;
    }
    settings.Jobs = command.Jobs > 0 ? command.Jobs : static_cast<int>(std::max(1u, std::thread::hardware_concurrency()));

    const bool showBar = !command.Json && IsTerminal(StandardStream::Error) && rows.size() > 3;
    ProgressBar bar(err, showBar);
    RunCallbacks callbacks;
    callbacks.AskOverwrite = [&](const std::string&, const std::string& target) {
        bar.Clear();
        return AskOnTerminal(target, err);
    };
    callbacks.Progress = [&](const RunProgress& p) { bar.Show(p.Value, p.Maximum, p.SourcePath); };
    callbacks.FileDone = [&](const FileOutcome& outcome) {
        if (command.Json) return;
        bar.Clear();
        std::ostringstream line;
        line << std::left << std::setw(10) << StatusWord(outcome.Status) << " ";
        switch (outcome.Status) {
            case FileStatus::Converted: line << outcome.SourcePath << " -> " << outcome.TargetPath; break;
            case FileStatus::Failed: line << outcome.Message; break;
            default: line << outcome.SourcePath << ": " << outcome.Message; break;
        }
        out << line.str() << "\n";
        for (const Diagnostic& warning : outcome.Warnings)
            out << std::left << std::setw(10) << "warning" << " " << outcome.SourcePath << ": " << warning.Message
                << "\n";
        out << std::flush;
    };

    const RunSummary summary = RunConversion(rows, settings, callbacks);
    bar.Clear();

    const RunCounts counts = CountOutcomes(summary);
    const bool anyBad = missing || summary.Cancelled || counts.Refused + counts.Failed + counts.NotSessions > 0;
    const std::string text = CountsText(counts, summary.CheckedCount);
    if (command.Json) {
        out << "{\"checked\":" << summary.CheckedCount << ",\"processed\":" << summary.ConvertedCount
            << ",\"written\":" << counts.Converted << ",\"refused\":" << counts.Refused
            << ",\"failed\":" << counts.Failed << ",\"skipped\":" << counts.Skipped
            << ",\"notSessions\":" << counts.NotSessions << ",\"cancelled\":" << (summary.Cancelled ? "true" : "false")
            << ",\"summary\":" << JsonString(text) << ",\"files\":[";
        for (std::size_t i = 0; i < summary.Outcomes.size(); ++i) {
            const FileOutcome& o = summary.Outcomes[i];
            out << (i ? "," : "") << "{\"source\":" << JsonString(o.SourcePath)
                << ",\"target\":" << JsonString(o.TargetPath) << ",\"status\":\"" << StatusWord(o.Status)
                << "\",\"version\":" << JsonString(o.Version) << ",\"message\":" << JsonString(o.Message)
                << ",\"warnings\":[";
            for (std::size_t k = 0; k < o.Warnings.size(); ++k)
                out << (k ? "," : "") << JsonString(o.Warnings[k].Message);
            out << "]}";
        }
        out << "]}\n";
    } else {
        if (summary.Cancelled) out << "Cancelled.\n";
        out << text << "\n";
    }
    return anyBad ? kExitSomeFailed : kExitOk;
}

int RunScan(const ScanCommand& command, std::ostream& out, std::ostream& err) {
    std::error_code ec;
    if (!fs::is_directory(PathFromText(command.Folder), ec)) {
        err << "morvanta: " << command.Folder << ": not a folder\n";
        return kExitUsage;
    }
    ScanOptions options;
    options.Recurse = command.Recursive;
    const bool showFolder = !command.Json && IsTerminal(StandardStream::Error);
    options.OnFolder = [&](const std::string& folder) {
        if (showFolder) err << "\rReading " << folder << "\x1b[K" << std::flush;
        return true;
    };
    const ScanResult result = FullDirFileList(command.Folder, options);
    if (showFolder) err << "\r\x1b[K" << std::flush;

    double totalBytes = 0;
    for (const FoundSession& s : result.Sessions) totalBytes += static_cast<double>(s.Bytes);

    if (command.Json) {
        out << "{\"files\":[";
        for (std::size_t i = 0; i < result.Sessions.size(); ++i) {
            const FoundSession& s = result.Sessions[i];
            out << (i ? "," : "") << "{\"folder\":" << JsonString(s.Folder) << ",\"file\":" << JsonString(s.File)
                << ",\"version\":" << JsonString(s.Version) << ",\"created\":" << JsonString(FormatCreated(s.Created))
                << ",\"bytes\":" << s.Bytes << "}";
        }
        out << "],\"totalFiles\":" << result.Sessions.size() << ",\"totalBytes\":" << std::fixed
            << std::setprecision(0) << totalBytes << ",\"problems\":[";
        for (std::size_t i = 0; i < result.Problems.size(); ++i)
            out << (i ? "," : "") << "{\"path\":" << JsonString(result.Problems[i].Path)
                << ",\"message\":" << JsonString(result.Problems[i].Message) << "}";
        out << "]}\n";
    } else {
        for (const FoundSession& s : result.Sessions)
            out << s.Folder << "\t" << s.File << "\t" << s.Version << "\t" << FormatCreated(s.Created) << "\t"
                << FormatBytes(static_cast<double>(s.Bytes)) << "\n";
        out << FormatBytes(static_cast<double>(result.Sessions.size())) << " files, " << FormatBytes(totalBytes)
            << " bytes\n";
        for (const ScanProblem& p : result.Problems) err << "morvanta: " << p.Message << "\n";
    }
    return result.Problems.empty() ? kExitOk : kExitSomeFailed;
}

int RunInfo(const InfoCommand& command, std::ostream& out, std::ostream& err) {
    std::ifstream in(PathFromText(command.File), std::ios::binary);
    if (!in) {
        err << "morvanta: " << command.File << ": cannot open the file\n";
        return kExitUsage;
    }
    const std::optional<fs::path> catalogues = CatalogueFolderFor(command.Catalogues, err);
    if (!catalogues) return kExitUsage;
    std::vector<std::uint8_t> bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    Session session;
    std::vector<ChunkHeader> chunks;
    ConvertOptions options;
    options.CatalogueFolder = *catalogues;
    ImportResult result = ReadSesBytes(bytes, session, options, false, &chunks);
    if (result.Status == ImportStatus::Converted) SettlePlannedEffectRoutes(session, result.Effects);

    const ByteReader file(bytes);
    const std::string magic = file.Contains(0, 8) ? file.NonZeroBytes(0, 8) : std::string();
    const bool hasLength = file.Contains(8, 4);
    const std::int32_t declared = hasLength ? file.Int32(8) : 0;
    const std::string verdict = result.Status == ImportStatus::NotSession ? "not a session file"
                                : !result.VersionRead                     ? "no version chunk"
                                : IsAcceptedVersion(result.Version)       ? "accepted"
                                                                          : "refused";
    const std::string failure =
        result.Status == ImportStatus::Failed ? DescribeFailure(command.File, result) : std::string();

    if (command.Model) {
        if (result.Status != ImportStatus::NotSession) out << DumpSession(session);
        if (!failure.empty()) err << "morvanta: " << failure << "\n";
    } else if (command.Json) {
        out << "{\"file\":" << JsonString(command.File) << ",\"bytes\":" << bytes.size()
            << ",\"magic\":" << JsonString(magic) << ",\"declaredLength\":" << declared
            << ",\"version\":" << JsonString(result.Version) << ",\"verdict\":" << JsonString(verdict)
            << ",\"chunks\":[";
        for (std::size_t i = 0; i < chunks.size(); ++i)
            out << (i ? "," : "") << "{\"tag\":" << JsonString(chunks[i].Tag) << ",\"offset\":" << chunks[i].Position
                << ",\"length\":" << chunks[i].PayloadLength << "}";
        out << "],\"effects\":[";
        for (std::size_t i = 0; i < result.Effects.size(); ++i)
            out << (i ? "," : "") << "{\"owner\":" << JsonString(result.Effects[i].Owner)
                << ",\"effect\":" << JsonString(result.Effects[i].Effect)
                << ",\"route\":" << JsonString(result.Effects[i].Route) << "}";
        out << "],\"error\":" << JsonString(failure) << "}\n";
    } else {
        out << "File:            " << command.File << "\n";
        out << "Size:            " << bytes.size() << " bytes\n";
        out << "Magic:           " << magic << "\n";
        out << "Declared length: " << (hasLength ? std::to_string(declared) : std::string("(missing)")) << "\n";
        out << "Version:         " << (result.VersionRead ? result.Version : std::string("(none)")) << " (" << verdict
            << ")\n";
        if (!chunks.empty()) {
            out << "Chunks:\n";
            out << "  " << std::left << std::setw(10) << "offset" << std::setw(8) << "tag" << "length\n";
            for (const ChunkHeader& c : chunks) {
                std::string tag;
                for (char ch : c.Tag) tag += (static_cast<unsigned char>(ch) >= 32 && ch != 127) ? ch : '.';
                out << "  " << std::left << std::setw(10) << c.Position << std::setw(8) << ("\"" + tag + "\"")
                    << c.PayloadLength << "\n";
            }
        }
        if (!result.Effects.empty()) {
            out << "Effects:\n";
            for (const EffectReport& effect : result.Effects)
                out << "  " << effect.Owner << ": \"" << effect.Effect << "\" -> " << effect.Route << "\n";
        }
        if (!failure.empty()) err << "morvanta: " << failure << "\n";
    }
    return result.Status == ImportStatus::Converted ? kExitOk : kExitSomeFailed;
}

}  // namespace morvanta::cli
