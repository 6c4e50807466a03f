// The window as a user drives it: the start over the last folder, ticking,
// a conversion with its questions and messages, the type filter, scanning
// by hand, the root-folder question, and the settings written at the end.
// Every box is answered by script and its text compared in full.
#include <QtTest>

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QStyle>
#include <QStyleOptionComboBox>
#include <QTreeView>

#include "SessionPayloads.h"
#include "ShellTestSupport.h"
#include "TrackPayloads.h"
#include "run/ConversionRun.h"
#include "run/Discovery.h"
#include "shell/Dirtree.h"
#include "shell/DirtreeModel.h"
#include "shell/MainWindow.h"
#include "shell/ShellTexts.h"
#include "shell/SingleInstance.h"

using namespace morvanta;
using namespace morvanta::shell;
namespace support = morvanta::shell::testing;
using morvanta::testing::Bytes;
using morvanta::testing::HeaderBytes;
using morvanta::testing::NamedEntry;
using morvanta::testing::SesBuilder;
using morvanta::testing::TrackEntryBytes;
using morvanta::testing::UpperTrksPayload;

namespace {

QStringList Files(const MainWindow& window) {
    QStringList files;
    for (int i = 0; i < window.Sessions().Count(); ++i) files << QString::fromStdString(window.Sessions().Row(i).File);
    return files;
}

QString ReadText(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromLatin1(file.readAll()) : QString();
}

void WriteText(const QString& path, const QByteArray& text) {
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(text);
}

template <typename T>
T* Control(const MainWindow& window, const char* name) {
    T* control = window.findChild<T*>(QString::fromLatin1(name));
    if (!control) qFatal("no control %s", name);
    return control;
}

void ClickRow(QTreeView* view, int row) {
    const QRect at = view->visualRect(view->model()->index(row, 1 < view->model()->columnCount() ? 1 : 0));
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, at.center());
}

// A settings store in `dir` whose last folder is `lastDir`, with "A&uto
// Refresh" ticked, so that the window scans it at the start.
std::unique_ptr<QSettings> AutoRefreshStore(const QTemporaryDir& dir, const QString& lastDir, bool subfolders = false) {
    auto store = support::TemporarySettings(dir);
    ShellSettings settings;
    settings.LastDir = lastDir;
    settings.TargDir = dir.path();
    settings.AutoRefresh = true;
    settings.ScanSubfolders = subfolders;
    SaveSettings(*store, settings);
    return store;
}

const QStringList kExampleFiles{"audition-1.0.ses",      "audition-1.5.ses",       "audition-2.0.ses",
                                "audition-3.0.ses",      "cool-edit-2000.ses",     "cool-edit-pro-1.2.ses",
                                "cool-edit-pro-1.2a.ses", "cool-edit-pro-2.00.ses", "cool-edit-pro-2.1.ses"};

// A window whose boxes are answered by script, and the signals of its scans and runs.
struct Driven {
    std::unique_ptr<support::ScriptedPrompts> owned = std::make_unique<support::ScriptedPrompts>();
    support::ScriptedPrompts& prompts = *owned;
    MainWindow window;
    QSignalSpy scans{&window, &MainWindow::ScanFinished};
    QSignalSpy runs{&window, &MainWindow::RunFinished};

    explicit Driven(std::unique_ptr<QSettings> store) : window(std::move(store), std::move(owned)) {}

    void Click(const char* button) const { QTest::mouseClick(Control<QPushButton>(window, button), Qt::LeftButton); }
    bool Convert() {
        Click("ConvertButton");
        return runs.wait(20000);
    }
    // The boxes shown since the last call, each as "<icon> <caption>: <text>"
    // and its details as further lines; the icon "?" is a question, "i" an
    // information, "!" a warning, "x" an error.
    QStringList Boxes() {
        QStringList boxes;
        for (const support::ScriptedPrompts::Record& box : prompts.Shown) {
            const QChar icon = QStringLiteral("-i!x?").at(static_cast<int>(box.Icon));  // by QMessageBox::Icon
            boxes << (QStringList{icon + QStringLiteral(" ") + box.Caption + ": " + box.Text} + box.Details).join('\n');
        }
        prompts.Shown.clear();
        return boxes;
    }
};

}  // namespace

class MainWindowTest : public QObject {
    Q_OBJECT
private slots:
    void initTestCase() { QStandardPaths::setTestModeEnabled(true); }

    void ScanTickConvertAndRemember() {
        QTemporaryDir dir;
        const QString sessions = dir.filePath("Sessions");
        const QString folder = sessions + "/";
        support::WriteBandSessions(sessions);
        support::WriteBytes(sessions + "/UPPER.SES", SesBuilder().Version("Audition 3.0").Build());
        WriteText(sessions + "/notes.txt", "not a session");
        // Cut short inside its version chunk: the reader rejects it.
        std::vector<std::uint8_t> cut = SesBuilder().Version("Audition 3.0").Build();
        cut.resize(24);
        support::WriteBytes(sessions + "/cut.ses", cut);
        QDir().mkpath(sessions + "/sub");
        support::WriteBytes(sessions + "/sub/deep.ses", SesBuilder().Version("Audition 2.0").Build());

        Driven ui(AutoRefreshStore(dir, sessions));
        MainWindow& window = ui.window;

        // The start scans the last folder, as "A&uto Refresh" is ticked.
        window.Start({dir.path()});
        QCOMPARE(window.windowTitle(), QStringLiteral("Morvanta - Version 1.5.00"));
        QVERIFY(ui.scans.wait(10000));
        QCOMPARE(Files(window), kExampleFiles);
        QVERIFY(ui.prompts.Shown.empty());  // a rejected file is passed over without a word
        QCOMPARE(window.CurrentFolder(), QDir::cleanPath(sessions));
        QCOMPARE(window.FolderTree()->SelectedKey(), QDir::cleanPath(sessions));
        QCOMPARE(QString::fromStdString(window.Sessions().Row(4).Version), QStringLiteral("Cool Edit 2000 1.0"));
        QCOMPARE(Control<QLabel>(window, "TotFilesLabel")->text(), QStringLiteral("9"));
        QCOMPARE(Control<QLabel>(window, "TotBytesLabel")->text(), QStringLiteral("50,915"));
        QVERIFY(Control<QWidget>(window, "FileFrame")->isEnabled());
        QVERIFY(!Control<QPushButton>(window, "RefreshNowButton")->isEnabled());

        // Nothing ticked yet.
        ui.Click("ConvertButton");
        QCOMPARE(ui.Boxes(), QStringList{"i Convert Items: There are no selected items to convert."});
        QVERIFY(Control<QWidget>(window, "ButtonFrame")->isEnabled());

        // A click anywhere on a row flips its tick, and so does the space bar.
        auto* fileList = Control<QTreeView>(window, "FileList");
        ClickRow(fileList, 2);
        QVERIFY(window.Sessions().Row(2).Checked);
        ClickRow(fileList, 2);
        QVERIFY(!window.Sessions().Row(2).Checked);
        QTest::keyClick(fileList, Qt::Key_Space);
        QCOMPARE(window.Sessions().NumberChecked(), 1);
        ui.Click("FileActionButton2");
        QCOMPARE(window.Sessions().NumberChecked(), 8);
        ui.Click("FileActionButton1");
        QCOMPARE(window.Sessions().NumberChecked(), 0);
        ui.Click("FileActionButton0");
        QCOMPARE(window.Sessions().NumberChecked(), 9);

        // Two documents exist; one file has become a refused version since
        // the scan, one is cut short.
        WriteText(sessions + "/audition-1.0.sesx", "old");
        WriteText(sessions + "/audition-1.5.sesx", "old");
        support::WriteBytes(sessions + "/audition-2.0.ses", SesBuilder().Version("Cool Edit Pro 2.01").Build());
        support::WriteBytes(sessions + "/audition-3.0.ses", SesBuilder()
                                                                .Version("Audition 3.0")
                                                                .ChunkWithLength("TRKS", 500, Bytes())
                                                                .DeclaredLength(900)
                                                                .Build());
        ui.prompts.OverwriteAnswers = {kSkipFile, kOverwrite};
        ui.Click("ConvertButton");
        QVERIFY(!Control<QWidget>(window, "PathFrame")->isEnabled());
        QVERIFY(Control<QWidget>(window, "ProgressFrame")->isVisible());
        QVERIFY(ui.runs.wait(20000));

        QCOMPARE(ui.prompts.OverwriteMessages.size(), std::size_t{2});
        QCOMPARE(ui.prompts.OverwriteMessages[0],
                 QStringLiteral("File '%1audition-1.0.sesx' Already Exists.\n%2Overwrite Existing File?")
                     .arg(folder, folder.size() + 17 < 60 ? "\n" : ""));
        QCOMPARE(ui.prompts.OverwriteFocus, (std::vector<int>{0, kSkipFile}));
        QCOMPARE(ui.Boxes(),
                 (QStringList{"? Convert: 9 file(s) will be converted to the same folder(s) as the source file(s).\n\n"
                              "Note: If there are existing converted versions of these files in the specified "
                              "location(s), \nyou will be prompted to overwrite them.\n\n"
                              "Are you sure you wish to proceed?",
                              "i Convert: There were 8 of 9 files successfully converted.",
                              "x Convert: These files were not converted:\n" + folder +
                                  "audition-2.0.ses: Cool Edit Pro 2.01 is not currently supported\n" + folder +
                                  "audition-3.0.ses: offset 40 (chunk \"TRKS\"): a 32-bit integer of 4 bytes at "
                                  "offset 40 runs past the end of the file (0 bytes left)"}));

        QCOMPARE(ReadText(sessions + "/audition-1.0.sesx"), QStringLiteral("old"));
        QVERIFY(ReadText(sessions + "/audition-1.5.sesx").startsWith("<?xml"));
        QVERIFY(ReadText(sessions + "/cool-edit-pro-2.1.sesx").startsWith("<?xml"));
        QVERIFY(!QFile::exists(sessions + "/audition-2.0.sesx"));
        QCOMPARE(window.Sessions().NumberChecked(), 1);  // the file kept at "&No"
        QVERIFY(window.Sessions().Row(0).Checked);
        QVERIFY(!Control<QWidget>(window, "ProgressFrame")->isVisible());
        QVERIFY(Control<QWidget>(window, "PathFrame")->isEnabled());
        QCOMPARE(Control<QProgressBar>(window, "ProgressBar")->value(), 8);

        // "Yes to &All" asks once in a run; the next run asks again, with
        // the focus on that answer, and "&Cancel" ends the run there.
        ClickRow(fileList, 1);
        ui.prompts.OverwriteAnswers = {kOverwriteAll};
        QVERIFY(ui.Convert());
        QCOMPARE(ui.prompts.OverwriteFocus, (std::vector<int>{0, kSkipFile, kOverwrite}));
        QCOMPARE(ui.Boxes().back(), QStringLiteral("i Convert: There were 2 of 2 files successfully converted."));
        QVERIFY(ReadText(sessions + "/audition-1.0.sesx").startsWith("<?xml"));

        // Recoded as Cyrillic: the document gains a byte order mark.
        Control<QCheckBox>(window, "NonEnglishCheck")->click();
        QVERIFY(Control<QComboBox>(window, "LanguageList")->isEnabled());
        Control<QComboBox>(window, "LanguageList")->setCurrentIndex(1);
        ClickRow(fileList, 0);
        ui.prompts.OverwriteAnswers = {kCancelRun};
        QVERIFY(ui.Convert());
        QCOMPARE(ui.prompts.OverwriteFocus.back(), kOverwriteAll);
        QCOMPARE(ui.Boxes().back(), QStringLiteral("i Convert: There were 0 of 1 files successfully converted."));
        QVERIFY(window.Sessions().Row(0).Checked);
        ui.prompts.OverwriteAnswers = {kOverwrite};
        QVERIFY(ui.Convert());
        QVERIFY(ReadText(sessions + "/audition-1.0.sesx").startsWith(QString::fromLatin1("\xEF\xBB\xBF<?xml")));

        // The type filter: only "Audition 3.0", which cannot be unticked.
        ui.Click("ResetlButton1");
        QVERIFY(ui.scans.wait(10000));
        support::WriteBytes(sessions + "/audition-3.0.ses", SesBuilder().Version("Audition 3.0").Build());
        QCOMPARE(Files(window), QStringList{"audition-3.0.ses"});
        ui.prompts.Shown.clear();
        ClickRow(Control<QTreeView>(window, "SESFileTypes"), 8);
        QCOMPARE(ui.Boxes(), QStringList{"i SES File Types: You must have at least one item checked."});
        QCOMPARE(window.FileTypes().Mask(), 1 << 9);
        QVERIFY(ui.scans.wait(10000));
        ClickRow(Control<QTreeView>(window, "SESFileTypes"), 0);
        QVERIFY(ui.scans.wait(10000));
        QCOMPARE(Files(window), (QStringList{"audition-3.0.ses", "cool-edit-2000.ses"}));
        ui.Click("ResetlButton0");
        QVERIFY(ui.scans.wait(10000));
        QStringList listed = kExampleFiles;
        listed.removeOne("audition-2.0.ses");  // its version has no row any more
        QCOMPARE(Files(window), listed);

        // Without "A&uto Refresh" a click on a folder only clears the list;
        // "Refresh No&w" scans it.
        Control<QCheckBox>(window, "AutoRefreshCheck")->click();
        QVERIFY(Control<QPushButton>(window, "RefreshNowButton")->isEnabled());
        QTreeView* tree = window.FolderTree()->View();
        const QModelIndex sub = window.FolderTree()->Model()->IndexOfPath(sessions + "/sub");
        QVERIFY(sub.isValid());
        tree->scrollTo(sub);
        QTest::mouseClick(tree->viewport(), Qt::LeftButton, {}, tree->visualRect(sub).center());
        QCOMPARE(window.Sessions().Count(), 0);
        QCOMPARE(Control<QLabel>(window, "TotFilesLabel")->text(), QStringLiteral("0"));
        QCOMPARE(window.CurrentFolder(), QDir::cleanPath(sessions));
        ui.Click("RefreshNowButton");
        QVERIFY(ui.scans.wait(10000));
        QCOMPARE(Files(window), QStringList{"deep.ses"});
        QCOMPARE(window.CurrentFolder(), sessions + "/sub");

        // Esc ends the program; the settings are written on the way.
        Control<QCheckBox>(window, "NoPathNamesCheck")->click();
        Control<QCheckBox>(window, "WellFormedCheck")->click();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        QTest::keyClick(Control<QTreeView>(window, "SESFileTypes"), Qt::Key_Escape);
        QVERIFY(!window.isVisible());
        const ShellSettings saved = LoadSettings(*support::TemporarySettings(dir), "/program");
        QCOMPARE(saved.LastDir, sessions + "/sub");
        QCOMPARE(saved.AutoRefresh, false);
        QCOMPARE(saved.FileFilter, 1022);
        QCOMPARE(saved.NonEnglish, true);
        QCOMPARE(saved.Language, 1);
        QCOMPARE(saved.DontUseSESPathNames, true);
        QCOMPARE(saved.WellFormed, true);
        QCOMPARE(saved.TargDir, dir.path());
    }

    void TheWholeFileSystemIsScannedOnlyWhenTheUserSaysSo() {
        QTemporaryDir dir;
        Driven ui(AutoRefreshStore(dir, "/", true));
        ui.prompts.YesNoAnswers = {false};
        ui.window.Start({"/"});
        QCOMPARE(ui.Boxes(), QStringList{"? Morvanta: The root folder of Drive / is selected and might take some "
                                         "time to scan.\nAre you sure you wish to scan the entire Drive?"});
        QVERIFY(!ui.window.Busy());
        QCOMPARE(ui.window.Sessions().Count(), 0);
        QVERIFY(!ui.window.findChild<QWidget*>("ProgressStatus") ||
                !ui.window.findChild<QWidget*>("ProgressStatus")->isVisible());
    }

    void ClosingDuringARunEndsItAfterTheCurrentFile() {
        QTemporaryDir dir;
        const QString sessions = dir.filePath("Sessions");
        support::WriteBandSessions(sessions);
        WriteText(sessions + "/audition-1.0.sesx", "old");
        Driven ui(AutoRefreshStore(dir, sessions));
        MainWindow& window = ui.window;
        window.Start({dir.path()});
        QVERIFY(ui.scans.wait(10000));
        ui.Click("FileActionButton0");

        // The window is closed while the first file is asked about.
        ui.prompts.WhileAskingOverwrite = [&window] { window.close(); };
        ui.Click("ConvertButton");
        QVERIFY(window.isVisible());
        QVERIFY(ui.runs.wait(20000));
        QVERIFY(!window.isVisible());
        QCOMPARE(ui.prompts.Shown.size(), std::size_t{1});  // the question before the run, no summary
        QVERIFY(ReadText(sessions + "/audition-1.0.sesx").startsWith("<?xml"));
        QVERIFY(!QFile::exists(sessions + "/audition-1.5.sesx"));
        QCOMPARE(window.Sessions().NumberChecked(), 8);
        QCOMPARE(LoadSettings(*support::TemporarySettings(dir), "/program").LastDir, QDir::cleanPath(sessions));
    }

    void ASecondStartHandsOverToTheFirst() {
        const QString name = QStringLiteral("MorvantaTest-%1").arg(QCoreApplication::applicationPid());
        SingleInstance second(name);
        QVERIFY(!second.HandOver());  // nobody is listening yet
        SingleInstance first(name);
        QVERIFY(first.Listen());
        QSignalSpy activated(&first, &SingleInstance::Activated);
        QVERIFY(second.HandOver());
        QVERIFY(activated.wait(5000));
    }

    void AScanEndsWithTheFocusWhereItsHandlerPutIt() {
        QTemporaryDir dir;
        const QString sessions = dir.filePath("Sessions");
        support::WriteBandSessions(sessions);
        Driven ui(AutoRefreshStore(dir, sessions));
        MainWindow& window = ui.window;
        QSignalSpy& scans = ui.scans;
        window.Start({dir.path()});
        QVERIFY(scans.wait(10000));
        // The widget that has the focus when the window is active.
        QCOMPARE(window.focusWidget(), window.FolderTree()->View());

        // The type buttons and ticks rescan and leave the focus on the types.
        ui.Click("ResetlButton1");
        QVERIFY(scans.wait(10000));
        QCOMPARE(window.focusWidget(), Control<QWidget>(window, "SESFileTypes"));
        // Space ticks the current row; which row is current must not hang on
        // whether the window happens to be active when the focus moves.
        auto* types = Control<QAbstractItemView>(window, "SESFileTypes");
        types->setCurrentIndex(types->model()->index(0, 0));
        QTest::keyClick(types, Qt::Key_Space);  // row 1 ticked as well
        QVERIFY(scans.wait(10000));
        QCOMPARE(window.FileTypes().Mask(), (1 << 1) | (1 << 9));
        QCOMPARE(window.focusWidget(), Control<QWidget>(window, "SESFileTypes"));

        // A click on a folder scans it and gives the tree the focus.
        QTreeView* tree = window.FolderTree()->View();
        const QModelIndex folder = window.FolderTree()->Model()->IndexOfPath(sessions);
        QTest::mouseClick(tree->viewport(), Qt::LeftButton, {}, tree->visualRect(folder).center());
        QVERIFY(scans.wait(10000));
        QCOMPARE(window.focusWidget(), tree);
    }

    void ColumnWidthsTheUserSetAreKept() {
        // A wide folder column and a narrow date: no longer the defaults.
        const std::array<double, 5> widths{9000, 2880, 1500, 900, 1500};
        QTemporaryDir dir;
        ShellSettings settings;
        settings.ColumnWidths = widths;
        SaveSettings(*support::TemporarySettings(dir), settings);
        MainWindow window(support::TemporarySettings(dir), std::make_unique<support::ScriptedPrompts>());
        window.Start({dir.path()});
        QApplication::processEvents();
        window.close();
        QCOMPARE(LoadSettings(*support::TemporarySettings(dir), "/program").ColumnWidths, widths);
    }

    // "Write well-formed XML" reaches the run: without it the summary is
    // followed by the places no XML parser reads, with it they are repaired.
    void WellFormedXmlRepairsWhatTheWarningsName() {
        QTemporaryDir dir;
        const QString sessions = dir.filePath("Sessions");
        QDir().mkpath(sessions);
        support::WriteBytes(sessions + "/mix--final.ses",
                            SesBuilder()
                                .Chunk("hdr ", HeaderBytes(44100))
                                .Version("Audition 3.0", 32)
                                .Chunk("TRKS", UpperTrksPayload(true, 1, {TrackEntryBytes(NamedEntry(1, u"Verse <1>"))}))
                                .Build());
        Driven ui(AutoRefreshStore(dir, sessions));
        ui.window.Start({dir.path()});
        QVERIFY(ui.scans.wait(10000));
        QCOMPARE(Files(ui.window), QStringList{"mix--final.ses"});

        ui.Click("FileActionButton0");
        QVERIFY(ui.Convert());
        const QString source = sessions + "/mix--final.ses: warning: document line ";
        QCOMPARE(ui.Boxes().back(), "i Convert: These files were converted with warnings:\n" + source +
                                        "10 is not well-formed XML: unescaped \"<\" in the text of <name> "
                                        "(--well-formed escapes it)\n" +
                                        source +
                                        "359 is not well-formed XML: \"--\" inside a comment (--well-formed "
                                        "separates it)");

        auto* wellFormed = Control<QCheckBox>(ui.window, "WellFormedCheck");
        QVERIFY(!wellFormed->isChecked());
        wellFormed->click();
        ui.Click("FileActionButton0");
        QVERIFY(ui.Convert());
        // No box of warnings behind the summary.
        QCOMPARE(ui.Boxes().back(), QStringLiteral("i Convert: There were 1 of 1 files successfully converted."));
        QVERIFY(ReadText(sessions + "/mix--final.sesx").contains("\n<name>Verse &lt;1&gt;</name>\n"));
    }

    void AFirstStartTicksEveryTypeListsNothingUntilAskedAndShowsEveryLanguageWhole() {
        QTemporaryDir dir;
        MainWindow window(support::TemporarySettings(dir), std::make_unique<support::ScriptedPrompts>());
        window.Start({dir.path()});
        QCOMPARE(window.FileTypes().Mask(), 1022);
        QCOMPARE(window.Sessions().Count(), 0);
        QVERIFY(!window.Busy());
        QCOMPARE(window.pos(), QPoint(0, 0));
        QCOMPARE(Control<QPushButton>(window, "RefreshNowButton")->isEnabled(), true);
        // Every language name is shown whole.
        QApplication::processEvents();
        auto* list = Control<QComboBox>(window, "LanguageList");
        QStyleOptionComboBox option;
        option.initFrom(list);
        option.editable = false;
        const QRect field =
            list->style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, list);
        for (int row = 0; row < list->count(); ++row)
            QVERIFY2(list->fontMetrics().horizontalAdvance(list->itemText(row)) <= field.width(),
                     qPrintable(list->itemText(row)));
    }
};

QTEST_MAIN(MainWindowTest)
#include "MainWindowTest.moc"
