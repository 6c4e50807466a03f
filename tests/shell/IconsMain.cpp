// morvanta-icons DIR: saves the program's icon, as the window draws it, at
// each size of the icon theme: DIR/<size>x<size>/apps/morvanta.png. `make
// icons` writes data/icons/hicolor with it; IconFilesTest keeps the two equal.
#include <QDir>
#include <QImage>
#include <QString>

#include <cstdio>

#include "shell/AppIcon.h"

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: morvanta-icons DIR\n");
        return 2;
    }
    const QString root = QString::fromLocal8Bit(argv[1]);
    for (int size : morvanta::shell::kApplicationIconSizes) {
        const QString folder = QStringLiteral("%1/%2x%2/apps").arg(root).arg(size);
        const QString path = folder + QStringLiteral("/morvanta.png");
        const QImage image = morvanta::shell::ApplicationIconImage(size).convertToFormat(QImage::Format_ARGB32);
        if (!QDir().mkpath(folder) || !image.save(path, "PNG")) {
            std::fprintf(stderr, "morvanta-icons: could not write %s\n", qPrintable(path));
            return 1;
        }
    }
    return 0;
}
