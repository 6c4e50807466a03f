// The main window: its controls, menus, start sequence, settings and the
// small handlers. Scans and runs are in MainWindowActions.cpp.
#include "shell/MainWindow.h"

#include <QAction>
#include <QFileInfo>
#include <QFrame>
#include <QApplication>
#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QDir>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QShortcut>
#include <QStyle>
#include <QTimer>
#include <QToolButton>
#include <QTreeView>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

#include "services/Recoding.h"
#include "shell/AboutBox.h"
#include "shell/AppIcon.h"
#include "shell/BackgroundWork.h"
#include "shell/Dirtree.h"
#include "shell/ListModels.h"
#include "shell/ProgressStatus.h"
#include "shell/Prompts.h"
#include "shell/ShellTexts.h"

namespace morvanta::shell {
namespace {

// Twips of the window's design to pixels.
constexpr int Px(int twips) { return twips / kTwipsPerPixel; }

QPushButton* Button(const QString& caption, const char* name, QWidget* parent, int width, int height) {
    auto* button = new QPushButton(caption, parent);
    button->setObjectName(name);
    button->setMinimumSize(Px(width), Px(height));
    return button;
}

QGroupBox* Frame(const QString& caption, const char* name, QWidget* parent) {
    auto* frame = new QGroupBox(caption, parent);
    frame->setObjectName(name);
    return frame;
}

// Frames and ConvertButton are bold; what the frames hold is not.
void SetFonts(QWidget* root, QPushButton* convertButton) {
    // Set explicitly, so that a child does not take the bold of its frame.
    QFont normal = QApplication::font();
    normal.setBold(false);
    QFont bold = normal;
    bold.setBold(true);
    for (QWidget* widget : root->findChildren<QWidget*>()) {
        const bool isBold = qobject_cast<QGroupBox*>(widget) || widget == convertButton;
        widget->setFont(isBold ? bold : normal);
    }
}

}  // namespace

MainWindow::MainWindow(std::unique_ptr<QSettings> store, std::unique_ptr<Prompts> prompts, QWidget* parent)
    : QMainWindow(parent),
      store_(std::move(store)),
      prompts_(prompts ? std::move(prompts) : std::make_unique<DialogPrompts>(this)),
      work_(new BackgroundWork(this)) {
    setObjectName("Main");
    setWindowTitle(kProgramTitle);
    setWindowIcon(ApplicationIcon());
    BuildControls();
    BuildMenus();
    SetTabOrder();
    SetFonts(this, convertButton_);
    int widest = 0;
    for (QPushButton* button : {fileActionButtons_[0], fileActionButtons_[1], fileActionButtons_[2], convertButton_})
        widest = std::max(widest, button->sizeHint().width());
    for (QPushButton* button : {fileActionButtons_[0], fileActionButtons_[1], fileActionButtons_[2], convertButton_})
        button->setFixedWidth(widest);

    // Esc anywhere in the window, the lists included, ends the program.
    auto* escape = new QShortcut(QKeySequence(Qt::Key_Escape), this);
    escape->setContext(Qt::WindowShortcut);
    connect(escape, &QShortcut::activated, this, &QWidget::close);
}

MainWindow::~MainWindow() = default;

QString MainWindow::ProgramFolder() { return QDir::homePath(); }

bool MainWindow::Busy() const { return scanning_ || running_; }

void MainWindow::BuildControls() {
    auto* central = new QWidget(this);
    setCentralWidget(central);

    // Left: the folder tree and the types to list.
    pathFrame_ = Frame(QStringLiteral("Path"), "PathFrame", central);
    folderTree_ = new Dirtree(pathFrame_);
    folderTree_->setObjectName("FolderTree");
    folderTree_->SetSelectOnExpand(true);
    folderTree_->View()->setIndentation(Px(250) + 2);
    autoRefreshCheck_ = new QCheckBox(QStringLiteral("A&uto Refresh"), pathFrame_);
    autoRefreshCheck_->setObjectName("AutoRefreshCheck");
    scanSubfoldersCheck_ = new QCheckBox(QStringLiteral("Include S&ubfolders"), pathFrame_);
    scanSubfoldersCheck_->setObjectName("ScanSubfoldersCheck");
    refreshNowButton_ = Button(QStringLiteral("Refresh No&w"), "RefreshNowButton", pathFrame_, 1395, 345);
    {
        auto* checks = new QVBoxLayout;
        checks->setSpacing(2);
        checks->addWidget(autoRefreshCheck_);
        checks->addWidget(scanSubfoldersCheck_);
        auto* row = new QHBoxLayout;
        row->addSpacing(Px(120));
        row->addLayout(checks);
        row->addStretch(1);
        row->addWidget(refreshNowButton_, 0, Qt::AlignVCenter);
        auto* layout = new QVBoxLayout(pathFrame_);
        layout->addWidget(folderTree_, 1);
        layout->addLayout(row);
    }

    frame1_ = Frame(QStringLiteral("Types of SES Files to Display"), "Frame1", central);
    typesModel_ = new FileTypesModel(types_, this);
    sesFileTypes_ = new TickListView(frame1_);
    sesFileTypes_->setObjectName("SESFileTypes");
    sesFileTypes_->setModel(typesModel_);
    sesFileTypes_->setHeaderHidden(true);
    sesFileTypes_->installEventFilter(this);
    resetlButtons_[0] = Button(QStringLiteral("S&elect All"), "ResetlButton0", frame1_, 1185, 345);
    resetlButtons_[1] = Button(QStringLiteral("Select AA&3"), "ResetlButton1", frame1_, 1185, 345);
    resetlButtons_[2] = Button(QStringLiteral("In&vert"), "ResetlButton2", frame1_, 1185, 345);
    {
        auto* row = new QHBoxLayout;
        for (QPushButton* button : resetlButtons_) row->addWidget(button);
        auto* layout = new QVBoxLayout(frame1_);
        layout->addWidget(sesFileTypes_);
        layout->addLayout(row);
    }

    // Right: the session list and where the documents go.
    fileFrame_ = Frame(QStringLiteral("SES Files"), "FileFrame", central);
    fileModel_ = new FileListModel(sessions_, this);
    fileList_ = new TickListView(fileFrame_);
    fileList_->setObjectName("FileList");
    fileList_->setModel(fileModel_);
    fileList_->header()->setSectionsClickable(true);
    fileList_->header()->setStretchLastSection(false);
    fileList_->header()->setSortIndicatorShown(false);
    // A cut folder keeps its end, where folders of one scan differ.
    fileList_->setTextElideMode(Qt::ElideLeft);
    auto* label1 = new QLabel(QStringLiteral("Total Files"), fileFrame_);
    label1->setObjectName("Label1");
    totFilesLabel_ = new QLabel(QStringLiteral("0"), fileFrame_);
    totFilesLabel_->setObjectName("TotFilesLabel");
    totFilesLabel_->setMinimumWidth(Px(1005));
    auto* label2 = new QLabel(QStringLiteral("Total Bytes"), fileFrame_);
    label2->setObjectName("Label2");
    totBytesLabel_ = new QLabel(QStringLiteral("0"), fileFrame_);
    totBytesLabel_->setObjectName("TotBytesLabel");
    totBytesLabel_->setMinimumWidth(Px(1155));
    totBytesLabel_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);

    targetOptionsFrame_ = Frame(QStringLiteral("Create Conversion Files in..."), "TargetOptionsFrame", fileFrame_);
    targetOptions_[0] = new QRadioButton(QStringLiteral("Source Folders"), targetOptionsFrame_);
    targetOptions_[0]->setObjectName("TargetOption0");
    targetOptions_[1] = new QRadioButton(QStringLiteral("Specific Folder..."), targetOptionsFrame_);
    targetOptions_[1]->setObjectName("TargetOption1");
    targetOptions_[0]->setChecked(true);
    targetTextBox_ = new QLineEdit(targetOptionsFrame_);
    targetTextBox_->setObjectName("TargetTextBox");
    targetTextBox_->installEventFilter(this);
    fileButton_ = new QToolButton(targetOptionsFrame_);
    fileButton_->setObjectName("FileButton");
    fileButton_->setIcon(style()->standardIcon(QStyle::SP_DirOpenIcon));
    fileButton_->setToolTip(QStringLiteral("Browse"));
    fileButton_->setMinimumSize(Px(375), Px(315));
    {
        auto* row = new QHBoxLayout(targetOptionsFrame_);
        row->addWidget(targetOptions_[0]);
        row->addSpacing(Px(285));
        row->addWidget(targetOptions_[1]);
        row->addWidget(targetTextBox_, 1);
        row->addWidget(fileButton_);

        auto* totals = new QHBoxLayout;
        totals->addWidget(label1);
        totals->addSpacing(Px(360));
        totals->addWidget(totFilesLabel_);
        totals->addStretch(1);
        totals->addWidget(label2);
        totals->addSpacing(Px(195));
        totals->addWidget(totBytesLabel_);
        totals->addSpacing(Px(420));

        auto* layout = new QVBoxLayout(fileFrame_);
        layout->addWidget(fileList_, 1);
        layout->addLayout(totals);
        layout->addWidget(targetOptionsFrame_);
    }

    // Bottom right: the actions.
    buttonFrame_ = Frame(QStringLiteral("File Options"), "ButtonFrame", central);
        // The four action buttons are as wide as the widest of them needs.
    fileActionButtons_[0] = Button(QStringLiteral("Select &All"), "FileActionButton0", buttonFrame_, 0, 525);
    fileActionButtons_[1] = Button(QStringLiteral("Select &None"), "FileActionButton1", buttonFrame_, 0, 525);
    fileActionButtons_[2] = Button(QStringLiteral("&Invert"), "FileActionButton2", buttonFrame_, 0, 525);
    convertButton_ = Button(QStringLiteral("&Convert"), "ConvertButton", buttonFrame_, 0, 525);
    nonEnglishCheck_ = new QCheckBox(QStringLiteral("Set Language Translation Using..."), buttonFrame_);
    nonEnglishCheck_->setObjectName("NonEnglishCheck");
    languageList_ = new QComboBox(buttonFrame_);
    languageList_->setObjectName("LanguageList");
    for (const LanguageRow& row : LanguageTable) languageList_->addItem(QString::fromLatin1(row.Language.data()));
    languageList_->setEnabled(false);
    languageList_->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    wellFormedCheck_ = new QCheckBox(QStringLiteral("Write well-formed XML"), buttonFrame_);
    wellFormedCheck_->setObjectName("WellFormedCheck");
    wellFormedCheck_->setToolTip(QStringLiteral("Escape \"<\", \">\" and quotes in names and separate \"--\" in the "
                                                "closing comment, so that any XML parser reads the documents"));
    noPathNamesCheck_ = new QCheckBox(QStringLiteral("Don't write path names in SESX files"), buttonFrame_);
    noPathNamesCheck_->setObjectName("NoPathNamesCheck");
    {
        auto* options = new QGridLayout;
        options->setVerticalSpacing(2);
        options->addWidget(nonEnglishCheck_, 0, 0);
        options->addWidget(languageList_, 0, 1);
        options->addWidget(wellFormedCheck_, 0, 2);
        options->addWidget(noPathNamesCheck_, 1, 0, 1, 2);
        auto* row = new QHBoxLayout(buttonFrame_);
        for (QPushButton* button : fileActionButtons_) row->addWidget(button);
        row->addWidget(convertButton_);
        for (QPushButton* button : {fileActionButtons_[0], fileActionButtons_[1], fileActionButtons_[2], convertButton_})
            button->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
        row->addLayout(options);
        row->addStretch(1);
    }

    // The progress frame floats over the window during a run.
    progressFrame_ = new QFrame(central);
    progressFrame_->setObjectName("ProgressFrame");
    static_cast<QFrame*>(progressFrame_)->setFrameShape(QFrame::Panel);
    static_cast<QFrame*>(progressFrame_)->setFrameShadow(QFrame::Raised);
    static_cast<QFrame*>(progressFrame_)->setLineWidth(2);
    progressFrame_->setAutoFillBackground(true);
    auto* label3 = new QLabel(kConvertingText, progressFrame_);
    label3->setObjectName("Label3");
    label3->setAlignment(Qt::AlignCenter);
    progressBar_ = new QProgressBar(progressFrame_);
    progressBar_->setObjectName("ProgressBar");
    {
        auto* layout = new QVBoxLayout(progressFrame_);
        layout->setContentsMargins(Px(180), Px(150), Px(180), Px(150));
        layout->addWidget(label3);
        layout->addWidget(progressBar_);
    }
    progressFrame_->resize(Px(5025), Px(1005) + 10);
    progressFrame_->hide();

    auto* left = new QVBoxLayout;
    left->addWidget(pathFrame_, 1);
    left->addWidget(frame1_);
    auto* right = new QVBoxLayout;
    right->addWidget(fileFrame_, 1);
    right->addWidget(buttonFrame_);
    auto* columns = new QHBoxLayout(central);
    columns->setContentsMargins(6, 2, 6, 6);
    columns->addLayout(left);
    columns->addLayout(right, 1);
    pathFrame_->setFixedWidth(Px(4005) + 4);
    frame1_->setFixedWidth(Px(4005) + 4);

    // The small handlers.
    connect(folderTree_, &Dirtree::NodeClick, this, &MainWindow::FolderTreeNodeClick);
    connect(folderTree_, &Dirtree::Expand, this, &MainWindow::TreeExpandOrCollapse);
    connect(folderTree_, &Dirtree::Collapse, this, &MainWindow::TreeExpandOrCollapse);
    connect(autoRefreshCheck_, &QCheckBox::clicked, this, &MainWindow::AutoRefreshClick);
    connect(scanSubfoldersCheck_, &QCheckBox::clicked, this, &MainWindow::ScanSubfoldersClick);
    connect(refreshNowButton_, &QPushButton::clicked, this, &MainWindow::RefreshNowClick);
    connect(sesFileTypes_, &TickListView::RowClicked, this, &MainWindow::FileTypeClicked);
    for (int i = 0; i < 3; ++i) {
        connect(resetlButtons_[static_cast<std::size_t>(i)], &QPushButton::clicked, this,
                [this, i] { ResetlButtonClick(i); });
        connect(fileActionButtons_[static_cast<std::size_t>(i)], &QPushButton::clicked, this,
                [this, i] { FileActionButtonClick(i); });
    }
    connect(fileList_, &TickListView::RowClicked, this, &MainWindow::FileListRowClicked);
    connect(fileList_->header(), &QHeaderView::sectionClicked, this, &MainWindow::HeaderClicked);
    connect(fileList_->header(), &QHeaderView::sectionResized, this, [this](int column, int, int width) {
        // SetFolderColMinWidth: the folder column never narrower than 315 twips.
        if (column == kFolderColumn && width < Px(315)) fileList_->header()->resizeSection(column, Px(315));
    });
    connect(convertButton_, &QPushButton::clicked, this, &MainWindow::ConvertButtonClick);
    connect(fileButton_, &QToolButton::clicked, this, &MainWindow::FileButtonClick);
    connect(targetTextBox_, &QLineEdit::textChanged, targetTextBox_, &QLineEdit::setToolTip);
    connect(nonEnglishCheck_, &QCheckBox::toggled, languageList_, &QComboBox::setEnabled);
    connect(noPathNamesCheck_, &QCheckBox::toggled, this, [this](bool on) { noPathNames_ = on; });
}

void MainWindow::BuildMenus() {
    QMenu* file = menuBar()->addMenu(QStringLiteral("&File"));
    file->setObjectName("mnuFileMain");
    QAction* exit = file->addAction(QStringLiteral("E&xit"), this, &QWidget::close);
    exit->setObjectName("mnuFileExit");

    QMenu* window = menuBar()->addMenu(QStringLiteral("&Window"));
    window->setObjectName("mnuWindowMain");
    QAction* centre = window->addAction(QStringLiteral("&Centre"), this, &MainWindow::CentreWindow);
    centre->setObjectName("mnuWindowCentre");

    QMenu* help = menuBar()->addMenu(QStringLiteral("&Help"));
    help->setObjectName("mnuHelpMain");
    QAction* about = help->addAction(QStringLiteral("&About"), this, &MainWindow::ShowAbout);
    about->setObjectName("mnuHelpAbout");
}

void MainWindow::SetTabOrder() {
    const QList<QWidget*> order{folderTree_->View(),   autoRefreshCheck_,     scanSubfoldersCheck_,
                                refreshNowButton_,     sesFileTypes_,         resetlButtons_[0],
                                resetlButtons_[1],     resetlButtons_[2],     fileList_,
                                targetOptions_[0],     targetOptions_[1],     targetTextBox_,
                                fileButton_,           fileActionButtons_[0], fileActionButtons_[1],
                                fileActionButtons_[2], convertButton_,        nonEnglishCheck_,
                                languageList_,         wellFormedCheck_,      noPathNamesCheck_};
    for (qsizetype i = 0; i + 1 < order.size(); ++i) setTabOrder(order[i], order[i + 1]);
}

void MainWindow::Start(const QStringList& treeRoots) {
    // The type list shows its nine rows without scrolling.
    sesFileTypes_->setFixedHeight(sesFileTypes_->sizeHintForRow(0) * FileTypeTicks::kRows +
                                  2 * sesFileTypes_->frameWidth() + 2);
    resize(Px(15360), Px(9000));
    folderTree_->SetRoots(treeRoots.isEmpty() ? QStringList{QDir::rootPath(), QDir::homePath()} : treeRoots);

    const ShellSettings settings = LoadSettings(*store_, ProgramFolder());
    ApplySettings(settings);
    setWindowTitle(WindowCaption());
    refreshNowButton_->setEnabled(!autoRefreshCheck_->isChecked());

    typeChangeInProgress_ = false;
    types_.SetMask(settings.FileFilter);
    typesModel_->TicksChanged();
    sesFileTypes_->clearSelection();

    SESFileRefresh();
    GoToLastItem(currentFolder_);
    SetColumns();
    UpdateTotals();
    show();
    // The list's width is known once the window is laid out.
    SetColumns();

    forceRefresh_ = autoRefreshCheck_->isChecked();
    if (forceRefresh_ && !folderTree_->SelectedKey().isEmpty()) {
        // The first scan runs under "Reading data..."; OnScanDone takes it away.
        progressStatus_ = new ProgressStatus(this);
        progressStatus_->ShowText(kReadingData);
        startScan_ = true;
    }
    SESFileRefresh();
    if (!scanning_ && progressStatus_) {
        // The user said no to the scan.
        startScan_ = false;
        progressStatus_->hide();
        progressStatus_->deleteLater();
        progressStatus_ = nullptr;
    }
}

void MainWindow::ApplySettings(const ShellSettings& s) {
    move(static_cast<int>(s.Left) / kTwipsPerPixel, static_cast<int>(s.Top) / kTwipsPerPixel);
    currentFolder_ = s.LastDir;
    targetOptions_[static_cast<std::size_t>(s.Target)]->setChecked(true);
    autoRefreshCheck_->setChecked(s.AutoRefresh);
    scanSubfoldersCheck_->setChecked(s.ScanSubfolders);
    languageList_->setCurrentIndex(s.Language);
    targetTextBox_->setText(s.TargDir);
    columnWidths_ = s.ColumnWidths;
    nonEnglishCheck_->setChecked(s.NonEnglish);
    languageList_->setEnabled(s.NonEnglish);
    noPathNames_ = s.DontUseSESPathNames;
    noPathNamesCheck_->setChecked(noPathNames_);
    wellFormedCheck_->setChecked(s.WellFormed);
}

ShellSettings MainWindow::CollectSettings() const {
    ShellSettings s;
    s.Top = pos().y() * kTwipsPerPixel;
    s.Left = pos().x() * kTwipsPerPixel;
    s.LastDir = currentFolder_;
    s.TargDir = targetTextBox_->text();
    s.Target = targetOptions_[0]->isChecked() ? 0 : 1;
    s.AutoRefresh = autoRefreshCheck_->isChecked();
    s.ScanSubfolders = scanSubfoldersCheck_->isChecked();
    s.Language = languageList_->currentIndex();
    s.FileFilter = types_.Mask();
    for (int i = 0; i < kFileColumnCount; ++i)
        s.ColumnWidths[static_cast<std::size_t>(i)] = fileList_->header()->sectionSize(i) * kTwipsPerPixel;
    s.NonEnglish = nonEnglishCheck_->isChecked();
    s.DontUseSESPathNames = noPathNames_;
    s.WellFormed = wellFormedCheck_->isChecked();
    return s;
}

void MainWindow::SetColumns() {
    QHeaderView* header = fileList_->header();
    for (int i = 0; i < kFileColumnCount; ++i)
        header->resizeSection(i, static_cast<int>(columnWidths_[static_cast<std::size_t>(i)]) / kTwipsPerPixel);
    // The default widths were chosen for a smaller font than most desktops
    // have: the version, date and size columns are made wide enough for
    // their texts, and the folder column gives way so that all five fit.
    // Widths the user has set are kept as they are.
    if (columnWidths_ != kDefaultColumnWidths) return;
    const QFontMetrics metrics = fileList_->fontMetrics();
    const int padding = 2 * fileList_->style()->pixelMetric(QStyle::PM_FocusFrameHMargin) + 12;
    const std::array<std::pair<int, const char*>, 3> samples{{{kVersionColumn, "Cool Edit Pro 1.2a"},
                                                              {kCreatedColumn, "00/00/0000 00:00:00"},
                                                              {kBytesColumn, "0,000,000,000"}}};
    for (const auto& [column, sample] : samples)
        header->resizeSection(column, std::max(header->sectionSize(column),
                                               metrics.horizontalAdvance(QString::fromLatin1(sample)) + padding));
    int total = 0;
    for (int i = 0; i < kFileColumnCount; ++i) total += header->sectionSize(i);
    const int room = fileList_->viewport()->width();
    if (total > room && room > 0)
        header->resizeSection(kFolderColumn, std::max(Px(315), header->sectionSize(kFolderColumn) - (total - room)));
}

void MainWindow::SetFramesAccess(bool state) {
    for (QGroupBox* frame : {pathFrame_, frame1_, fileFrame_, buttonFrame_}) frame->setEnabled(state);
}

void MainWindow::GoToLastItem(const QString& tDir) {
    const QString path = QFileInfo(tDir).isDir() ? tDir : ProgramFolder();
    folderTree_->GoTo(path);
}

void MainWindow::closeEvent(QCloseEvent* event) {
    if (Busy()) {
        // The work ends first, at its next file or folder; then the window.
        closePending_ = true;
        scanDropped_ = scanning_;
        pendingScan_.reset();
        work_->Stop();
        event->ignore();
        return;
    }
    if (progressStatus_) progressStatus_->hide();
    if (!SaveSettings(*store_, CollectSettings()))
        prompts_->Tell(QMessageBox::Information, kSettingsCaption, kSettingsFailed);
    event->accept();
}

void MainWindow::resizeEvent(QResizeEvent* event) {
    QMainWindow::resizeEvent(event);
    PlaceProgressFrame();
}

bool MainWindow::eventFilter(QObject* watched, QEvent* event) {
    if (watched == targetTextBox_ && event->type() == QEvent::FocusIn)
        // After the click that gave the focus has placed the cursor.
        QTimer::singleShot(0, targetTextBox_, &QLineEdit::selectAll);
    if (watched == sesFileTypes_ && event->type() == QEvent::MouseButtonPress) sesFileTypes_->setFocus();
    return QMainWindow::eventFilter(watched, event);
}

void MainWindow::FileButtonClick() {
    targetOptions_[1]->setChecked(true);
    const QString folder = prompts_->PickFolder(targetTextBox_->text(), kBrowsePrompt);
    if (!folder.isEmpty()) targetTextBox_->setText(QDir::toNativeSeparators(folder));
}

void MainWindow::CentreWindow() {
    const QRect screenArea = screen()->geometry();
    const QRect frame = frameGeometry();
    move(screenArea.left() + (screenArea.width() - frame.width()) / 2,
         screenArea.top() + (screenArea.height() - frame.height()) / 2);
}

void MainWindow::ShowAbout() {
    AboutBox about(this);
    about.exec();
}

void MainWindow::PlaceProgressFrame() {
    if (!progressFrame_ || !centralWidget()) return;
    const QSize area = centralWidget()->size();
    progressFrame_->move((area.width() - progressFrame_->width()) / 2, (area.height() - progressFrame_->height()) / 2);
}

void MainWindow::ShowProgressFrame() {
    PlaceProgressFrame();
    progressFrame_->raise();
    progressFrame_->show();
}

}  // namespace morvanta::shell
