// What the window does: scanning a folder into the session list, the ticks
// of both lists, sorting, and the conversion run with its prompts.
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QThread>
#include <QTreeView>

#include "services/ProgramLocation.h"
#include "services/Recoding.h"
#include "shell/BackgroundWork.h"
#include "shell/Dirtree.h"
#include "shell/ListModels.h"
#include "shell/MainWindow.h"
#include "shell/ProgressStatus.h"
#include "shell/Prompts.h"
#include "shell/ShellTexts.h"

namespace morvanta::shell {
namespace {

std::string LocalPath(const QString& path) { return QFile::encodeName(path).toStdString(); }
QString FromLocalPath(const std::string& path) { return QFile::decodeName(QByteArray::fromStdString(path)); }

QStringList Lines(const std::vector<std::string>& lines) {
    QStringList out;
    for (const std::string& line : lines) out << FromLocalPath(line);
    return out;
}

}  // namespace

// ---- Discovery -------------------------------------------------------------

void MainWindow::FolderTreeNodeClick(const QString& key) {
    if (!forceRefresh_ && !autoRefreshCheck_->isChecked()) {
        ClearFileList();
        return;
    }
    currentFolder_ = key;
    const QString root = QDir::rootPath();
    if (QDir::cleanPath(currentFolder_) == root && scanSubfoldersCheck_->isChecked() &&
        !prompts_->AskYesNo(kProgramTitle, RootFolderQuestion(root), true)) {
        ClearFileList();
        return;
    }
    StartScan(currentFolder_, scanSubfoldersCheck_->isChecked());
}

void MainWindow::SESFileRefresh() {
    const QString key = folderTree_->SelectedKey();
    if (!key.isEmpty()) FolderTreeNodeClick(key);
    forceRefresh_ = false;
}

void MainWindow::ClearFileList() {
    if (scanning_) {
        // The running scan is not wanted any more.
        scanDropped_ = true;
        pendingScan_.reset();
        work_->Stop();
    }
    sessions_.Clear();
    fileModel_->Reload();
    fileList_->header()->setSortIndicatorShown(false);
    UpdateTotals();
}

void MainWindow::SetScanAccess(bool state) {
    for (QGroupBox* frame : {pathFrame_, fileFrame_, buttonFrame_}) frame->setEnabled(state);
    if (state) unsetCursor();
    else setCursor(Qt::BusyCursor);
}

void MainWindow::StartScan(const QString& folder, bool recurse) {
    ClearFileList();
    if (scanning_) {
        // A new scan replaces the running one as soon as that has stopped.
        pendingScan_ = std::make_pair(folder, recurse);
        return;
    }
    scanning_ = true;
    scanDropped_ = false;
    focusAfterScan_ = folderTree_->View();
    SetScanAccess(false);
    savedCaption_ = windowTitle();

    ScanOptions options;
    options.Recurse = recurse;
    options.FileTypeMask = types_.Mask();
    ScanHandlers handlers;
    handlers.Folder = [this](const std::string& at) {
        setWindowTitle(kReadingCaption + FromLocalPath(at).toLower());
    };
    handlers.Session = [this](const FoundSession& found) {
        if (scanDropped_ || !sessions_.Add(found)) return;
        fileModel_->RowsAppended(sessions_.Count() - 1, sessions_.Count() - 1);
    };
    handlers.Done = [this](const ScanResult& result) { OnScanDone(result); };
    work_->StartScan(LocalPath(folder), std::move(options), std::move(handlers));
}

void MainWindow::OnScanDone(const ScanResult& result) {
    scanning_ = false;
    setWindowTitle(savedCaption_);
    if (pendingScan_ && !closePending_) {
        const auto [folder, recurse] = *pendingScan_;
        pendingScan_.reset();
        SetScanAccess(true);
        QWidget* focus = focusAfterScan_;
        StartScan(folder, recurse);
        focusAfterScan_ = focus;
        return;
    }
    SetScanAccess(true);
    if (startScan_) {
        startScan_ = false;
        progressStatus_->hide();
        progressStatus_->deleteLater();
        progressStatus_ = nullptr;
    }
    UpdateTotals();
    if (closePending_) {
        close();
        return;
    }
    focusAfterScan_->setFocus();
    QStringList problems;
    for (const ScanProblem& problem : result.Problems)
        if (!problem.Rejected) problems << FromLocalPath(problem.Message);
    if (!scanDropped_ && !problems.isEmpty()) {
        if (problems.size() == 1) prompts_->Tell(QMessageBox::Critical, kErrorCaption, problems.front());
        else
            prompts_->Tell(QMessageBox::Critical, kErrorCaption,
                           QStringLiteral("%1 items could not be read:").arg(problems.size()), problems);
    }
    scanDropped_ = false;
    emit ScanFinished();
}

void MainWindow::FocusTypes() {
    // A scan that a handler started ends with the focus here as well, not
    // on the tree, as if it had run to its end before the handler went on.
    sesFileTypes_->setFocus();
    if (scanning_) focusAfterScan_ = sesFileTypes_;
}

void MainWindow::UpdateTotals() {
    totFilesLabel_->setText(QString::fromStdString(sessions_.TotalFilesText()));
    totBytesLabel_->setText(QString::fromStdString(sessions_.TotalBytesText()));
}

void MainWindow::FileTypeClicked(int row) {
    const bool kept = types_.Flip(row + 1, typeChangeInProgress_);
    typesModel_->TicksChanged();
    if (!kept) prompts_->Tell(QMessageBox::Information, kFileTypesCaption, kAtLeastOneItem);
    if (!skipTypeRefresh_) SESFileRefresh();
    sesFileTypes_->clearSelection();
    FocusTypes();
}

void MainWindow::ResetlButtonClick(int index) {
    skipTypeRefresh_ = true;
    typeChangeInProgress_ = true;
    forceRefresh_ = false;
    switch (index) {
        case 0: types_.SelectAll(); break;
        case 1: types_.SelectAA3(); break;
        default:
            types_.Invert();
            sesFileTypes_->clearSelection();
            break;
    }
    typesModel_->TicksChanged();
    forceRefresh_ = autoRefreshCheck_->isChecked();
    typeChangeInProgress_ = false;
    SESFileRefresh();
    skipTypeRefresh_ = false;
    FocusTypes();
}

void MainWindow::RefreshNowClick() {
    forceRefresh_ = true;
    SESFileRefresh();
    FocusTypes();
}

void MainWindow::AutoRefreshClick() {
    const bool on = autoRefreshCheck_->isChecked();
    refreshNowButton_->setEnabled(!on);
    if (on) {
        forceRefresh_ = true;
        SESFileRefresh();
    }
    FocusTypes();
}

void MainWindow::ScanSubfoldersClick() {
    if (autoRefreshCheck_->isChecked()) {
        forceRefresh_ = true;
        SESFileRefresh();
    }
    FocusTypes();
}

void MainWindow::TreeExpandOrCollapse() {
    // The tree selects the node itself; the list waits for a click.
    ClearFileList();
}

void MainWindow::HeaderClicked(int column) {
    setCursor(Qt::WaitCursor);
    sessions_.SortBy(column);
    fileModel_->Reload();
    QHeaderView* header = fileList_->header();
    header->setSortIndicatorShown(sessions_.Sorted());
    header->setSortIndicator(sessions_.SortKey(), sessions_.Descending() ? Qt::DescendingOrder : Qt::AscendingOrder);
    unsetCursor();
}

// ---- Ticks of FileList -----------------------------------------------------

void MainWindow::FileListRowClicked(int row) {
    sessions_.Flip(row);
    fileModel_->TicksChanged(row, row);
}

void MainWindow::FileActionButtonClick(int index) {
    switch (index) {
        case 0: sessions_.SelectAll(); break;
        case 1: sessions_.SelectNone(); break;
        default: sessions_.Invert(); break;
    }
    fileModel_->TicksChanged(0, sessions_.Count() - 1);
}

// ---- The conversion run ----------------------------------------------------

RunSettings MainWindow::CurrentRunSettings() const {
    RunSettings settings;
    settings.Target = targetOptions_[0]->isChecked() ? TargetOption::SourceFolders : TargetOption::SpecificFolder;
    settings.TargetFolder = LocalPath(targetTextBox_->text());
    settings.Convert.NoPathNames = noPathNames_;
    settings.Convert.WellFormed = wellFormedCheck_->isChecked();
    settings.Convert.CatalogueFolder = ShippedCatalogueFolder(ProgramFile());
    // One file per core; the list and the progress still follow the rows.
    settings.Jobs = std::max(1, QThread::idealThreadCount());
    if (nonEnglishCheck_->isChecked()) {
        settings.Convert.NonEnglish = true;
        const int row = std::max(0, languageList_->currentIndex());
        settings.Convert.Charset = std::string(LanguageTable[static_cast<std::size_t>(row)].Charset);
    }
    return settings;
}

void MainWindow::ConvertButtonClick() {
    if (Busy()) return;
    const int checkedCount = sessions_.NumberChecked();
    SetFramesAccess(false);
    const auto end = [this] {
        SetFramesAccess(true);
        progressFrame_->hide();
        unsetCursor();
    };
    const QString itemsCaption = QString::fromLatin1(kConvertItemsCaption.data(), kConvertItemsCaption.size());
    const QString convertCaption = QString::fromLatin1(kConvertCaption.data(), kConvertCaption.size());
    if (sessions_.Count() == 0) {
        prompts_->Tell(QMessageBox::Information, itemsCaption, QString::fromLatin1(kNoFilesListed.data()));
        return end();
    }
    if (checkedCount == 0) {
        prompts_->Tell(QMessageBox::Information, itemsCaption, QString::fromLatin1(kNoFilesSelected.data()));
        return end();
    }
    const RunSettings settings = CurrentRunSettings();
    if (!prompts_->AskYesNo(convertCaption, DisplayText(ConfirmationText(checkedCount, settings)), true)) {
        prompts_->Tell(QMessageBox::Information, convertCaption,
                       QString::fromStdString(SummaryText(0, checkedCount)));
        return end();
    }

    progressBar_->setRange(0, checkedCount);
    progressBar_->setValue(0);
    ShowProgressFrame();
    setCursor(Qt::BusyCursor);
    running_ = true;

    runKeys_.clear();
    for (int i = 0; i < sessions_.Count(); ++i) runKeys_.push_back(sessions_.Row(i).Key());

    RunHandlers handlers;
    handlers.AskOverwrite = [this](const std::string& message) {
        unsetCursor();
        overwriteAnswer_ = prompts_->AskOverwrite(DisplayText(message), overwriteAnswer_);
        setCursor(Qt::BusyCursor);
        return overwriteAnswer_;
    };
    handlers.Progress = [this](const RunProgress& progress) { progressBar_->setValue(progress.Value); };
    handlers.FileDone = [this](const FileOutcome& outcome) {
        if (outcome.Status == FileStatus::Skipped || outcome.Row >= runKeys_.size()) return;
        const int row = sessions_.Find(runKeys_[outcome.Row]);
        if (row < 0) return;
        sessions_.SetChecked(row, false);
        fileModel_->TicksChanged(row, row);
    };
    handlers.Done = [this](const RunSummary& summary) { OnRunDone(summary); };
    work_->StartRun(sessions_.RunRows(), settings, std::move(handlers));
}

void MainWindow::OnRunDone(const RunSummary& summary) {
    running_ = false;
    progressFrame_->hide();
    unsetCursor();
    if (!closePending_) {
        const QString convertCaption = QString::fromLatin1(kConvertCaption.data(), kConvertCaption.size());
        prompts_->Tell(QMessageBox::Information, convertCaption,
                       QString::fromStdString(SummaryText(summary.ConvertedCount, summary.CheckedCount)));
        const std::vector<std::string> problems = ProblemLines(summary);
        if (!problems.empty()) {
            bool failed = false, refused = false, warned = false;
            for (const FileOutcome& outcome : summary.Outcomes) {
                failed = failed || outcome.Status == FileStatus::Failed;
                refused = refused || outcome.Status == FileStatus::Refused;
                warned = warned || !outcome.Warnings.empty();
            }
            const QString text = failed || refused
                                     ? (warned ? QStringLiteral("These files were not converted, or were converted "
                                                                "with warnings:")
                                               : QStringLiteral("These files were not converted:"))
                                     : QStringLiteral("These files were converted with warnings:");
            const QString caption = failed || warned ? convertCaption
                                                     : QString::fromLatin1(kRefusalCaption.data(),
                                                                           kRefusalCaption.size());
            prompts_->Tell(failed ? QMessageBox::Critical : QMessageBox::Information, caption, text, Lines(problems));
        }
    }
    SetFramesAccess(true);
    emit RunFinished();
    if (closePending_) close();
}

}  // namespace morvanta::shell
