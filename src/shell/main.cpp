// morvanta-gui: the desktop window. It acts on no command line; a second
// start brings the running window to the front and ends.
#include <QApplication>
#include <QSettings>

#include "shell/MainWindow.h"
#include "shell/ShellTexts.h"
#include "shell/SingleInstance.h"

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QApplication::setOrganizationName(morvanta::shell::kProgramTitle);
    QApplication::setApplicationName(morvanta::shell::kProgramTitle);
    QApplication::setApplicationVersion(morvanta::shell::VersionText());

    morvanta::shell::SingleInstance instance(morvanta::shell::kProgramTitle);
    if (instance.HandOver()) return 0;
    instance.Listen();

    morvanta::shell::MainWindow window(std::make_unique<QSettings>());
    QObject::connect(&instance, &morvanta::shell::SingleInstance::Activated, &window, [&window] {
        window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
        window.show();
        window.raise();
        window.activateWindow();
    });
    window.Start();
    return app.exec();
}
