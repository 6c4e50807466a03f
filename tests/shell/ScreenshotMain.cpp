// morvanta-screenshot OUT.png [OVERWRITE.png ABOUT.png [RUN.png]]: shows
// the main window over a folder of built sessions, as a user sees it after
// a scan, and saves a picture of it; and of the overwrite prompt, the About
// box and the window with its progress frame when asked.
// Its settings live in a temporary folder; the user's are never read.
#include <QApplication>
#include <QPixmap>
#include <QProgressBar>
#include <QPushButton>
#include <QStandardPaths>
#include <QTimer>

#include <cstdio>

#include "ShellTestSupport.h"
#include "run/ConversionRun.h"
#include "shell/AboutBox.h"
#include "shell/ListModels.h"
#include "shell/MainWindow.h"
#include "shell/OverwriteDialog.h"
#include "shell/ShellTexts.h"
#include "shell/ShellSettings.h"

using namespace morvanta::shell;

namespace {

bool Save(QWidget& widget, const char* path) {
    widget.show();
    QApplication::processEvents();
    const QPixmap picture = widget.grab();
    const bool saved = picture.save(QString::fromLocal8Bit(path));
    std::fprintf(stderr, "%s %s (%dx%d)\n", saved ? "saved" : "could not save", path, picture.width(),
                 picture.height());
    return saved;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2 && argc != 4 && argc != 5) {
        std::fprintf(stderr, "usage: morvanta-screenshot OUT.png [OVERWRITE.png ABOUT.png [RUN.png]]\n");
        return 2;
    }
    QStandardPaths::setTestModeEnabled(true);
    QApplication app(argc, argv);

    QTemporaryDir dir;
    const QString sessions = dir.filePath(QStringLiteral("Sessions"));
    testing::WriteExampleSessions(sessions);
    testing::WriteExampleSessions(sessions + QStringLiteral("/2004 Archive"));

    auto store = testing::TemporarySettings(dir);
    ShellSettings settings;
    settings.LastDir = sessions;
    settings.TargDir = dir.filePath(QStringLiteral("Converted"));
    QDir().mkpath(settings.TargDir);
    settings.AutoRefresh = true;
    settings.ScanSubfolders = true;
    settings.Language = 11;
    SaveSettings(*store, settings);

    MainWindow window(std::move(store), std::make_unique<testing::ScriptedPrompts>());
    QObject::connect(&window, &MainWindow::ScanFinished, &window, [&] {
        // A few ticks, so the picture shows them.
        window.findChild<QPushButton*>(QStringLiteral("FileActionButton0"))->click();
        auto* list = window.findChild<TickListView*>(QStringLiteral("FileList"));
        for (int row : {1, 4, 5, 6, 9, 12, 13}) emit list->RowClicked(row);
        QTimer::singleShot(300, &window, [&] {
            if (qEnvironmentVariableIsSet("MORVANTA_DEBUG_SIZES"))
                for (QWidget* w : window.findChildren<QWidget*>())
                    if (!w->objectName().isEmpty() && w->isVisible())
                        std::fprintf(stderr, "%s min %d hint %d actual %d\n", qPrintable(w->objectName()),
                                     w->minimumSizeHint().width(), w->sizeHint().width(), w->width());
            bool saved = Save(window, argv[1]);
            if (argc >= 4) {
                OverwriteDialog overwrite(DisplayText(morvanta::OverwriteMessage(
                                              (sessions + QStringLiteral("/audition-3.0.sesx")).toStdString())),
                                          morvanta::kOverwrite, &window);
                saved = Save(overwrite, argv[2]) && saved;
                AboutBox about(&window);
                saved = Save(about, argv[3]) && saved;
                about.hide();
            }
            if (argc == 5) {
                // The frame as a run shows it, half way, over disabled frames.
                window.SetFramesAccess(false);
                auto* frame = window.findChild<QWidget*>(QStringLiteral("ProgressFrame"));
                auto* bar = window.findChild<QProgressBar*>(QStringLiteral("ProgressBar"));
                bar->setRange(0, 7);
                bar->setValue(3);
                frame->move((window.centralWidget()->width() - frame->width()) / 2,
                            (window.centralWidget()->height() - frame->height()) / 2);
                frame->show();
                frame->raise();
                saved = Save(window, argv[4]) && saved;
            }
            QApplication::exit(saved ? 0 : 1);
        });
    });
    window.Start();
    QTimer::singleShot(30000, &app, [] {
        std::fprintf(stderr, "the scan did not finish\n");
        QApplication::exit(1);
    });
    return app.exec();
}
