// The main window of Morvanta. Left: the folder tree, with the automatic
// refresh and sub-folder boxes, and above it the list of writer versions
// that narrows the session list. Right: the session list with its totals,
// and below it where the documents go (beside their sessions or into one
// folder). Bottom: the tick buttons; the language, well-formed and
// path-name options; and Convert, with a progress bar that takes their
// place during a run. The window starts and ends the program; scans and
// runs go to the core on a worker thread, and the controls are disabled
// until they are done.
#pragma once

#include <QMainWindow>
#include <QSettings>

#include <array>
#include <memory>
#include <optional>

#include "shell/Prompts.h"
#include "shell/ShellSettings.h"
#include "shell/SessionList.h"

class QCheckBox;
class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;
class QRadioButton;
class QToolButton;

namespace morvanta::shell {

class BackgroundWork;
class Dirtree;
class FileListModel;
class FileTypesModel;
class ProgressStatus;
class TickListView;

class MainWindow : public QMainWindow {
    Q_OBJECT
public:
    // `store` is read at Start and written when the window closes. Without
    // `prompts` the real message boxes are shown.
    explicit MainWindow(std::unique_ptr<QSettings> store, std::unique_ptr<Prompts> prompts = nullptr,
                        QWidget* parent = nullptr);
    ~MainWindow() override;

    // The start sequence: settings, ticks, the last folder, the window, and
    // the first scan when "A&uto Refresh" is ticked. The roots of the tree
    // are the file system root and the home folder unless given.
    void Start(const QStringList& treeRoots = {});

    // The folder that stands for the program's own folder: the home folder.
    static QString ProgramFolder();

    // What the tree, the list and the prompts read of the window.
    const SessionList& Sessions() const { return sessions_; }
    const FileTypeTicks& FileTypes() const { return types_; }
    Dirtree* FolderTree() const { return folderTree_; }
    QString CurrentFolder() const { return currentFolder_; }
    int OverwriteAnswer() const { return overwriteAnswer_; }
    bool Busy() const;

    void SetFramesAccess(bool state);
    void SetColumns();
    void GoToLastItem(const QString& tDir);
    void SESFileRefresh();
    void UpdateTotals();
    void ConvertButtonClick();

signals:
    void ScanFinished();
    void RunFinished();

protected:
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void BuildControls();
    void BuildMenus();
    void SetTabOrder();
    void ApplySettings(const ShellSettings& settings);
    ShellSettings CollectSettings() const;

    // Discovery.
    void FolderTreeNodeClick(const QString& key);
    void StartScan(const QString& folder, bool recurse);
    void OnScanDone(const ScanResult& result);
    void ClearFileList();
    void SetScanAccess(bool state);
    void FileTypeClicked(int row);
    void ResetlButtonClick(int index);
    void AutoRefreshClick();
    void ScanSubfoldersClick();
    void RefreshNowClick();
    void TreeExpandOrCollapse();
    void FocusTypes();
    void HeaderClicked(int column);

    // Ticks of FileList.
    void FileListRowClicked(int row);
    void FileActionButtonClick(int index);

    // The conversion run.
    RunSettings CurrentRunSettings() const;
    void OnRunDone(const RunSummary& summary);
    void ShowProgressFrame();
    void PlaceProgressFrame();

    void FileButtonClick();
    void CentreWindow();
    void ShowAbout();

    std::unique_ptr<QSettings> store_;
    std::unique_ptr<Prompts> prompts_;
    BackgroundWork* work_;
    ProgressStatus* progressStatus_ = nullptr;

    SessionList sessions_;
    FileTypeTicks types_;
    FileListModel* fileModel_ = nullptr;
    FileTypesModel* typesModel_ = nullptr;

    QGroupBox* pathFrame_ = nullptr;
    Dirtree* folderTree_ = nullptr;
    QCheckBox* autoRefreshCheck_ = nullptr;
    QCheckBox* scanSubfoldersCheck_ = nullptr;
    QPushButton* refreshNowButton_ = nullptr;
    QGroupBox* frame1_ = nullptr;
    TickListView* sesFileTypes_ = nullptr;
    std::array<QPushButton*, 3> resetlButtons_{};
    QGroupBox* fileFrame_ = nullptr;
    TickListView* fileList_ = nullptr;
    QLabel* totFilesLabel_ = nullptr;
    QLabel* totBytesLabel_ = nullptr;
    QGroupBox* targetOptionsFrame_ = nullptr;
    std::array<QRadioButton*, 2> targetOptions_{};
    QLineEdit* targetTextBox_ = nullptr;
    QToolButton* fileButton_ = nullptr;
    QGroupBox* buttonFrame_ = nullptr;
    std::array<QPushButton*, 3> fileActionButtons_{};
    QPushButton* convertButton_ = nullptr;
    QCheckBox* nonEnglishCheck_ = nullptr;
    QComboBox* languageList_ = nullptr;
    QCheckBox* wellFormedCheck_ = nullptr;
    QCheckBox* noPathNamesCheck_ = nullptr;
    QWidget* progressFrame_ = nullptr;
    QProgressBar* progressBar_ = nullptr;

    QString currentFolder_;
    std::array<double, 5> columnWidths_ = kDefaultColumnWidths;
    bool forceRefresh_ = false;
    bool typeChangeInProgress_ = false;
    bool skipTypeRefresh_ = false;
    bool noPathNames_ = false;
    int overwriteAnswer_ = 0;

    // Work in progress.
    bool scanning_ = false;
    bool running_ = false;
    bool scanDropped_ = false;  // the running scan was stopped; its rows are not wanted
    std::optional<std::pair<QString, bool>> pendingScan_;  // folder and recursion of the next scan
    bool closePending_ = false;
    bool startScan_ = false;  // the scan of the start, under ProgressStatus
    QWidget* focusAfterScan_ = nullptr;  // the tree, or SESFileTypes when a handler of the types scans
    QString savedCaption_;
    std::vector<std::string> runKeys_;  // the key of each row handed to the run
};

}  // namespace morvanta::shell
