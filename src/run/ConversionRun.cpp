#include "run/ConversionRun.h"

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <thread>

#include "reader/effects/Catalogues.h"
#include "run/ConvertFile.h"
#include "run/Discovery.h"
#include "services/Platform.h"

namespace morvanta {
namespace {

constexpr std::string_view kLineBreak = "\r\n";

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

// The reader's result for one row, without the document, which is on disk
// by then.
ImportResult ConvertRow(const FileOutcome& outcome, const ConvertOptions& options) {
    ImportResult result =
        ImportSesFile(PathFromText(outcome.SourcePath), PathFromText(outcome.TargetPath), false, options);
    result.Document = std::string();
    return result;
}

// One row of a run on its way: the file's outcome, and the reader's result
// once the file is done. A kept document is done from the start.
struct FileWork {
    FileOutcome Outcome;
    ImportResult Result;
    bool Converts = true;
    bool Done = false;
};

// A fixed set of threads that convert the files handed to them, in the
// order they were handed over.
class FileWorkers {
public:
    FileWorkers(std::size_t count, const ConvertOptions& options) : options_(options) {
        for (std::size_t i = 0; i < count; ++i) threads_.emplace_back([this] { Serve(); });
    }
    FileWorkers(const FileWorkers&) = delete;
    FileWorkers& operator=(const FileWorkers&) = delete;
    ~FileWorkers() {
        {
            const std::lock_guard lock(mutex_);
            closing_ = true;
        }
        wake_.notify_all();
        for (std::thread& thread : threads_) thread.join();
    }

    void Submit(FileWork& work) {
        {
            const std::lock_guard lock(mutex_);
            queue_.push_back(&work);
        }
        wake_.notify_one();
    }
    bool IsDone(const FileWork& work) {
        const std::lock_guard lock(mutex_);
        return work.Done;
    }
    void WaitFor(const FileWork& work) {
        std::unique_lock lock(mutex_);
        done_.wait(lock, [&] { return work.Done; });
    }

private:
    void Serve() {
        for (;;) {
            FileWork* work = nullptr;
            {
                std::unique_lock lock(mutex_);
                wake_.wait(lock, [&] { return closing_ || !queue_.empty(); });
                if (queue_.empty()) return;
                work = queue_.front();
                queue_.pop_front();
            }
            ImportResult result = ConvertRow(work->Outcome, options_);
            {
                const std::lock_guard lock(mutex_);
                work->Result = std::move(result);
                work->Done = true;
            }
            done_.notify_all();
        }
    }

    const ConvertOptions& options_;
    std::mutex mutex_;
    std::condition_variable wake_;
    std::condition_variable done_;
    std::deque<FileWork*> queue_;
    bool closing_ = false;
    std::vector<std::thread> threads_;
};

}  // namespace

int GetNumberChecked(const std::vector<RunRow>& rows) {
    int count = 0;
    for (const RunRow& row : rows) count += row.Checked ? 1 : 0;
    return count;
}

std::string TargetPathFor(const RunRow& row, const RunSettings& settings) {
    const std::string base =
        WithClosingSeparator(settings.Target == TargetOption::SourceFolders ? row.Folder : settings.TargetFolder);
    // A File with a sub-folder in front lands in that sub-folder of the base.
    const std::filesystem::path file = PathFromText(row.File);
    const std::string folder = file.has_parent_path() ? WithClosingSeparator(base + file.parent_path().string()) : base;
    return folder + file.stem().string() + ".sesx";
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

RunCounts CountOutcomes(const RunSummary& summary) {
    RunCounts counts;
    for (const FileOutcome& outcome : summary.Outcomes) {
        switch (outcome.Status) {
            case FileStatus::Converted: ++counts.Converted; break;
            case FileStatus::Refused: ++counts.Refused; break;
            case FileStatus::Failed: ++counts.Failed; break;
            case FileStatus::Skipped: ++counts.Skipped; break;
            case FileStatus::NotSession: ++counts.NotSessions; break;
        }
    }
    return counts;
}

std::string CountsText(const RunCounts& counts, int checkedCount) {
    return "Converted " + std::to_string(counts.Converted) + " of " + std::to_string(checkedCount) +
           " files: " + std::to_string(counts.Refused) + " refused, " + std::to_string(counts.Failed) +
           " failed, " + std::to_string(counts.Skipped) + " skipped, " + std::to_string(counts.NotSessions) +
           " not sessions.";
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
    bool replaceAll = settings.Existing == ExistingDocuments::ReplaceAll;

    // With one job every file is converted here, when its turn comes; with
    // more, a few files per thread are kept under way, and each is reported
    // once it and every file before it are done.
    const auto jobs = static_cast<std::size_t>(std::max(settings.Jobs, 1));
    std::optional<FileWorkers> workers;
    if (jobs > 1) workers.emplace(jobs, run.Convert);
    const std::size_t ahead = jobs * 4;
    std::deque<std::unique_ptr<FileWork>> underWay;
    std::set<std::string> targets;
    int handedOver = 0;

    const auto report = [&](FileWork& work) {
        FileOutcome& outcome = work.Outcome;
        if (work.Converts) {
            outcome.Status = StatusOf(work.Result.Status);
            outcome.Version = work.Result.Version;
            outcome.Warnings = std::move(work.Result.Warnings);
            if (outcome.Status == FileStatus::Failed) outcome.Message = DescribeFailure(outcome.SourcePath, work.Result);
            else if (outcome.Status != FileStatus::Converted) outcome.Message = work.Result.Message;
            rows[outcome.Row].Checked = false;
            ++summary.ConvertedCount;
        }
        if (callbacks.FileDone) callbacks.FileDone(outcome);
        summary.Outcomes.push_back(std::move(outcome));
    };
    // Reports the files at the front that are done, waiting for them while
    // more than `keep` are under way.
    const auto reportDone = [&](std::size_t keep) {
        while (!underWay.empty()) {
            FileWork& front = *underWay.front();
            if (front.Converts && workers) {
                if (underWay.size() > keep) workers->WaitFor(front);
                else if (!workers->IsDone(front)) break;
            }
            report(front);
            underWay.pop_front();
        }
    };

    for (std::size_t i = 0; i < rows.size(); ++i) {
        const RunRow& row = rows[i];
        if (!row.Checked) continue;
        if (callbacks.ShouldStop && callbacks.ShouldStop()) {
            summary.Cancelled = true;
            break;
        }

        auto work = std::make_unique<FileWork>();
        FileOutcome& outcome = work->Outcome;
        outcome.Row = i;
        outcome.SourcePath = (row.Folder.empty() ? "" : WithClosingSeparator(row.Folder)) + row.File;
        outcome.TargetPath = TargetPathFor(row, settings);
        // A document that an earlier file of this run writes: that file
        // ends first, so the question and the result are those of one file
        // after the other.
        if (!targets.insert(outcome.TargetPath).second) reportDone(0);

        std::error_code ec;
        if (!replaceAll && std::filesystem::exists(PathFromText(outcome.TargetPath), ec)) {
            int answer = kSkipFile;
            if (settings.Existing == ExistingDocuments::Ask && callbacks.AskOverwrite) {
                reportDone(0);
                answer = callbacks.AskOverwrite(OverwriteMessage(outcome.TargetPath), outcome.TargetPath);
            }
            if (answer == kCancelRun) {
                summary.Cancelled = true;
                break;
            }
            if (answer == kOverwriteAll) replaceAll = true;
            if (answer != kOverwrite && answer != kOverwriteAll) {
                outcome.Status = FileStatus::Skipped;
                outcome.Message = "kept the existing " + outcome.TargetPath;
                work->Converts = false;
                work->Done = true;
            }
        }

        if (work->Converts) {
            if (callbacks.Progress)
                callbacks.Progress(RunProgress{++handedOver, summary.CheckedCount, outcome.SourcePath});
            if (workers) {
                workers->Submit(*work);
            } else {
                work->Result = ConvertRow(outcome, run.Convert);
                work->Done = true;
            }
        }
        underWay.push_back(std::move(work));
        reportDone(workers ? ahead : 0);
    }
    reportDone(0);
    return summary;
}

}  // namespace morvanta
