// Runs a folder scan or a conversion run on a worker thread, one at a time,
// so that the window stays responsive. Everything the work reports reaches
// the handlers on the interface thread; the overwrite question is asked
// there and its answer handed back to the waiting worker.
#pragma once

#include <QFutureWatcher>
#include <QObject>

#include <atomic>
#include <functional>
#include <memory>
#include <string>

#include "run/ConversionRun.h"
#include "run/Discovery.h"

namespace morvanta::shell {

struct ScanHandlers {
    std::function<void(const std::string& folder)> Folder;   // a folder is being read
    std::function<void(const FoundSession& found)> Session;  // a session was found
    std::function<void(const ScanResult& result)> Done;
};

struct RunHandlers {
    std::function<int(const std::string& message)> AskOverwrite;  // one of the answers of the run
    std::function<void(const RunProgress& progress)> Progress;
    std::function<void(const FileOutcome& outcome)> FileDone;
    std::function<void(const RunSummary& summary)> Done;
};

class BackgroundWork : public QObject {
    Q_OBJECT
public:
    explicit BackgroundWork(QObject* parent = nullptr);
    // Stops what runs and waits for it; nothing is reported any more.
    ~BackgroundWork() override;

    bool Busy() const { return busy_; }

    // Each returns false, and does nothing, while other work runs.
    bool StartScan(const std::string& folder, ScanOptions options, ScanHandlers handlers);
    bool StartRun(std::vector<RunRow> rows, RunSettings settings, RunHandlers handlers);

    // Asks the work to end early: a scan before its next folder, a run
    // before its next file (a pending question is answered "&Cancel").
    // Done is still reported.
    void Stop();

private:
    // Runs `work` on the worker thread and `done` here once it has ended.
    void Launch(std::function<void()> work, std::function<void()> done);
    // Calls `call` here from the worker, unless the work of `flag` has been
    // replaced.
    void Post(const std::shared_ptr<std::atomic<bool>>& flag, std::function<void()> call);

    QFutureWatcher<void> watcher_;
    std::shared_ptr<std::atomic<bool>> stop_;
    std::function<void()> done_;
    bool busy_ = false;
};

}  // namespace morvanta::shell
