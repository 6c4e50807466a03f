#include "run/ConversionRun.h"

#include <filesystem>

#include "reader/effects/Catalogues.h"
#include "run/ConvertFile.h"

namespace morvanta {
namespace {

constexpr std::string_view kLineBreak = "\r\n";

bool EndsInSeparator(const std::string& path) {
    return !path.empty() && (path.back() == '/' || path.back() == '\\');
}

// Characters of a UTF-8 text: every byte that does not continue a sequence.
std::size_t CharacterCount(const std::string& text) {
    std::size_t count = 0;
    for (const char c : text) count += (static_cast<unsigned char>(c) & 0xC0) != 0x80 ? 1 : 0;
    return count;
}

FileStatus StatusOf(ImportStatus status) {
    switch (status) {
        case ImportStatus::Converted: return FileStatus::Converted;
        case ImportStatus::NotSession: return FileStatus::NotSession;
        case ImportStatus::Refused: return FileStatus::Refused;
        case ImportStatus::Probed:
        case ImportStatus::Failed: break;
    }
    return FileStatus::Failed;
}

}  // namespace

int GetNumberChecked(const std::vector<RunRow>& rows) {
    int count = 0;
    for (const RunRow& row : rows) count += row.Checked ? 1 : 0;
    return count;
}

std::string TargetPathFor(const RunRow& row, const RunSettings& settings) {
    std::string base = settings.Target == TargetOption::SourceFolders ? row.Folder : settings.TargetFolder;
    if (!EndsInSeparator(base)) base += '/';
    // The parent folder of the joined path, so a File with a sub-folder in
    // front lands in that sub-folder of the base.
    const std::filesystem::path joined = base + row.File;
    std::string folder = joined.parent_path().string();
    if (!EndsInSeparator(folder)) folder += '/';
    return folder + std::filesystem::path(row.File).stem().string() + ".sesx";
}

std::string ConfirmationText(int checkedCount, const RunSettings& settings) {
    const std::string destination = settings.Target == TargetOption::SourceFolders
                                        ? "the same folder(s) as the source file(s)."
                                        : settings.TargetFolder + ".";
    std::string text = std::to_string(checkedCount) + " file(s) will be converted to " + destination;
    text += kLineBreak;
    text += kLineBreak;
    text += "Note: If there are existing converted versions of these files in the specified location(s), ";
    text += kLineBreak;
    text += "you will be prompted to overwrite them.";
    text += kLineBreak;
    text += kLineBreak;
    text += "Are you sure you wish to proceed?";
    return text;
}

std::string OverwriteMessage(const std::string& targetPath) {
    std::string text = "File '" + targetPath + "' Already Exists.";
    text += kLineBreak;
    if (CharacterCount(targetPath) < 60) text += kLineBreak;
    return text + "Overwrite Existing File?";
}

std::string SummaryText(int convertedCount, int checkedCount) {
    return "There were " + std::to_string(convertedCount) + " of " + std::to_string(checkedCount) +
           " files successfully converted.";
}

std::vector<std::string> ProblemLines(const RunSummary& summary) {
    std::vector<std::string> lines;
    for (const FileOutcome& outcome : summary.Outcomes) {
        if (outcome.Status == FileStatus::Refused) lines.push_back(outcome.SourcePath + ": " + outcome.Message);
        // A failure message names the path itself.
        if (outcome.Status == FileStatus::Failed) lines.push_back(outcome.Message);
        for (const Diagnostic& warning : outcome.Warnings)
            lines.push_back(outcome.SourcePath + ": warning: " + warning.Message);
    }
    return lines;
}

RunSummary RunConversion(std::vector<RunRow>& rows, const RunSettings& settings, const RunCallbacks& callbacks) {
    RunSummary summary;
    summary.CheckedCount = GetNumberChecked(rows);
    // Every file of the run shares the catalogues read for any of them.
    RunSettings run = settings;
    if (!run.Convert.Catalogues && !run.Convert.CatalogueFolder.empty())
        run.Convert.Catalogues = std::make_shared<CatalogueStore>(run.Convert.CatalogueFolder);
    bool overwriteAll = false;

    for (std::size_t i = 0; i < rows.size(); ++i) {
        RunRow& row = rows[i];
        if (!row.Checked) continue;
        if (callbacks.ShouldStop && callbacks.ShouldStop()) {
            summary.Cancelled = true;
            break;
        }

        FileOutcome outcome;
        outcome.Row = i;
        outcome.SourcePath = row.Folder + (EndsInSeparator(row.Folder) || row.Folder.empty() ? "" : "/") + row.File;
        outcome.TargetPath = TargetPathFor(row, settings);

        std::error_code ec;
        if (!overwriteAll && std::filesystem::exists(outcome.TargetPath, ec)) {
            const int answer = callbacks.AskOverwrite
                                   ? callbacks.AskOverwrite(OverwriteMessage(outcome.TargetPath), outcome.TargetPath)
                                   : kSkipFile;
            if (answer == kCancelRun) {
                summary.Cancelled = true;
                break;
            }
            if (answer == kOverwriteAll) overwriteAll = true;
            if (answer != kOverwrite && answer != kOverwriteAll) {
                outcome.Status = FileStatus::Skipped;
                outcome.Message = "kept the existing " + outcome.TargetPath;
                if (callbacks.FileDone) callbacks.FileDone(outcome);
                summary.Outcomes.push_back(std::move(outcome));
                continue;
            }
        }

        if (callbacks.Progress)
            callbacks.Progress(RunProgress{summary.ConvertedCount + 1, summary.CheckedCount, outcome.SourcePath});

        ImportResult result = ImportSesFile(outcome.SourcePath, outcome.TargetPath, false, run.Convert);
        outcome.Status = StatusOf(result.Status);
        outcome.Version = result.Version;
        outcome.Warnings = std::move(result.Warnings);
        if (outcome.Status == FileStatus::Failed) outcome.Message = DescribeFailure(outcome.SourcePath, result);
        else if (outcome.Status != FileStatus::Converted) outcome.Message = result.Message;
        row.Checked = false;
        ++summary.ConvertedCount;
        if (callbacks.FileDone) callbacks.FileDone(outcome);
        summary.Outcomes.push_back(std::move(outcome));
    }
    return summary;
}

}  // namespace morvanta
