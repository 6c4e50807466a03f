// The conversion run: every ticked row becomes a document in the chosen
// place. No user interface inside: questions and progress go through
// callbacks, and the texts a front end shows are built here.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "model/ConvertOptions.h"
#include "model/Diagnostic.h"
#include "reader/ImportSes.h"

namespace morvanta {

struct RunRow {
    std::string Folder;  // ends in a path separator
    std::string File;    // file name, possibly with a sub-folder in front
    bool Checked = false;
};

enum class TargetOption { SourceFolders = 0, SpecificFolder = 1 };

// What happens to a document that is already there.
enum class ExistingDocuments {
    Ask,         // the AskOverwrite callback decides; without it, keep
    ReplaceAll,  // replace every one, asking nothing
    Keep,        // keep every one, asking nothing
};

struct RunSettings {
    TargetOption Target = TargetOption::SourceFolders;
    std::string TargetFolder;  // read for every file
    ConvertOptions Convert;
    ExistingDocuments Existing = ExistingDocuments::Ask;
    // Files converted at once. The callbacks are still called from the
    // caller's thread, in the order of the rows, and the documents are those
    // of a run of one file after the other.
    int Jobs = 1;
};

// Answers of the overwrite question.
inline constexpr int kOverwrite = 0;
inline constexpr int kOverwriteAll = 1;
inline constexpr int kSkipFile = 2;
inline constexpr int kCancelRun = 3;

enum class FileStatus {
    Converted,   // a document was written
    NotSession,  // no "COOLNESS": counted, nothing written
    Refused,     // version not supported: counted, nothing written
    Failed,      // read or write fault: counted, nothing written
    Skipped,     // the user kept the existing document: not counted, row stays ticked
};

struct FileOutcome {
    std::size_t Row = 0;
    std::string SourcePath;
    std::string TargetPath;
    FileStatus Status = FileStatus::Failed;
    std::string Version;
    std::string Message;  // refusal or failure, with the path and offset
    std::vector<Diagnostic> Warnings;
};

struct RunProgress {
    int Value = 0;    // files handed to the reader so far, this one included
    int Maximum = 0;  // CheckedCount
    std::string SourcePath;
};

struct RunCallbacks {
    // Asked when the target exists and no "all" answer was given. Gets the
    // overwrite message; returns one of the answers above. Without it the
    // existing document is kept.
    std::function<int(const std::string& message, const std::string& targetPath)> AskOverwrite;
    std::function<void(const RunProgress&)> Progress;  // before each file is handed to the reader
    std::function<void(const FileOutcome&)> FileDone;  // after each row that was handled
    // Asked before each row; true ends the run there, as a cancel does (a
    // window that is being closed).
    std::function<bool()> ShouldStop;
};

struct RunSummary {
    int CheckedCount = 0;
    int ConvertedCount = 0;  // rows handed to the reader, whatever it made of them
    bool Cancelled = false;
    std::vector<FileOutcome> Outcomes;
};

// Walks the rows from first to last; converts each ticked one and unticks it.
// A question about an existing document is asked before that file's work
// starts and after every earlier file is reported, so a cancel leaves no
// document of a later file behind it.
RunSummary RunConversion(std::vector<RunRow>& rows, const RunSettings& settings,
                         const RunCallbacks& callbacks = {});

// Where the document of a row goes.
std::string TargetPathFor(const RunRow& row, const RunSettings& settings);

int GetNumberChecked(const std::vector<RunRow>& rows);

// Texts of the run, for a front end to show.
inline constexpr std::string_view kConvertItemsCaption = "Convert Items";
inline constexpr std::string_view kConvertCaption = "Convert";
inline constexpr std::string_view kNoFilesListed = "There are no SES files listed.";
inline constexpr std::string_view kNoFilesSelected = "There are no selected items to convert.";
std::string ConfirmationText(int checkedCount, const RunSettings& settings);
std::string OverwriteMessage(const std::string& targetPath);
std::string SummaryText(int convertedCount, int checkedCount);
// What became of the files of a run, counted by status.
struct RunCounts {
    int Converted = 0;  // documents written
    int Refused = 0;
    int Failed = 0;
    int Skipped = 0;
    int NotSessions = 0;
};
RunCounts CountOutcomes(const RunSummary& summary);
// "Converted 2 of 9 files: 3 refused, 4 failed, 0 skipped, 0 not sessions."
std::string CountsText(const RunCounts& counts, int checkedCount);

// One line for each refused or failed file and each warning, in run order,
// for the list a front end shows after the summary.
std::vector<std::string> ProblemLines(const RunSummary& summary);

}  // namespace morvanta
