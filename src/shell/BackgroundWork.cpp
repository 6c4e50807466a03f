// Scans and runs on a worker thread.
#include "shell/BackgroundWork.h"

#include <QtConcurrent/QtConcurrentRun>

#include <chrono>
#include <future>

namespace morvanta::shell {

BackgroundWork::BackgroundWork(QObject* parent) : QObject(parent) {
    connect(&watcher_, &QFutureWatcher<void>::finished, this, [this] {
        busy_ = false;
        // The handler may start new work at once, which sets done_ again.
        std::function<void()> done = std::move(done_);
        done_ = nullptr;
        if (done) done();
    });
}

BackgroundWork::~BackgroundWork() {
    if (!busy_) return;
    stop_->store(true);
    done_ = nullptr;
    watcher_.disconnect(this);
    watcher_.waitForFinished();
}

void BackgroundWork::Stop() {
    if (stop_) stop_->store(true);
}

void BackgroundWork::Post(const std::shared_ptr<std::atomic<bool>>& flag, std::function<void()> call) {
    // Each piece of work has its own flag: posts of work that was stopped and
    // replaced are dropped.
    QMetaObject::invokeMethod(
        this,
        [this, flag, call = std::move(call)] {
            if (flag == stop_) call();
        },
        Qt::QueuedConnection);
}

void BackgroundWork::Launch(std::function<void()> work, std::function<void()> done) {
    busy_ = true;
    done_ = std::move(done);
    watcher_.setFuture(QtConcurrent::run(std::move(work)));
}

bool BackgroundWork::StartScan(const std::string& folder, ScanOptions options, ScanHandlers handlers) {
    if (busy_) return false;
    stop_ = std::make_shared<std::atomic<bool>>(false);
    const auto stop = stop_;
    const auto result = std::make_shared<ScanResult>();
    auto shared = std::make_shared<ScanHandlers>(std::move(handlers));
    options.OnFolder = [this, stop, shared](const std::string& at) {
        if (stop->load()) return false;
        if (shared->Folder) Post(stop, [shared, at] { shared->Folder(at); });
        return true;
    };
    options.OnSession = [this, stop, shared](const FoundSession& found) {
        if (shared->Session) Post(stop, [shared, found] { shared->Session(found); });
    };
    Launch([folder, options, result] { *result = FullDirFileList(folder, options); },
           [shared, result] {
               if (shared->Done) shared->Done(*result);
           });
    return true;
}

bool BackgroundWork::StartRun(std::vector<RunRow> rows, RunSettings settings, RunHandlers handlers) {
    if (busy_) return false;
    stop_ = std::make_shared<std::atomic<bool>>(false);
    const auto stop = stop_;
    const auto summary = std::make_shared<RunSummary>();
    auto shared = std::make_shared<RunHandlers>(std::move(handlers));

    RunCallbacks callbacks;
    callbacks.ShouldStop = [stop] { return stop->load(); };
    callbacks.Progress = [this, stop, shared](const RunProgress& progress) {
        if (shared->Progress) Post(stop, [shared, progress] { shared->Progress(progress); });
    };
    callbacks.FileDone = [this, stop, shared](const FileOutcome& outcome) {
        if (shared->FileDone) Post(stop, [shared, outcome] { shared->FileDone(outcome); });
    };
    callbacks.AskOverwrite = [this, stop, shared](const std::string& message, const std::string&) {
        if (!shared->AskOverwrite) return kSkipFile;
        auto answer = std::make_shared<std::promise<int>>();
        std::future<int> future = answer->get_future();
        Post(stop, [shared, stop, answer, message] {
            answer->set_value(stop->load() ? kCancelRun : shared->AskOverwrite(message));
        });
        // Waits for the user, but not past a stop: the window may be going.
        using namespace std::chrono_literals;
        while (future.wait_for(50ms) != std::future_status::ready)
            if (stop->load()) return kCancelRun;
        try {
            return future.get();
        } catch (const std::future_error&) {
            return kCancelRun;
        }
    };
    Launch(
        [rows = std::move(rows), settings = std::move(settings), callbacks, summary]() mutable {
            *summary = RunConversion(rows, settings, callbacks);
        },
        [shared, summary] {
            if (shared->Done) shared->Done(*summary);
        });
    return true;
}

}  // namespace morvanta::shell
