// The icon images installed for the desktop are the window's own drawing,
// pixel for pixel, at every size the window carries and no other.
#include <QtTest>

#include <algorithm>

#include "shell/AppIcon.h"

using namespace morvanta::shell;

namespace {

const QString kIconFolder = QStringLiteral(MORVANTA_SOURCE_DIR "/data/icons/hicolor");

}  // namespace

class IconFilesTest : public QObject {
    Q_OBJECT
private slots:
    void TheThemeFoldersAreTheWindowsSizes() {
        QStringList expected;
        for (int size : kApplicationIconSizes) expected << QStringLiteral("%1x%1").arg(size);
        QStringList found = QDir(kIconFolder).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
        std::sort(expected.begin(), expected.end());
        std::sort(found.begin(), found.end());
        QCOMPARE(found, expected);
        for (const QString& folder : found)
            QCOMPARE(QDir(kIconFolder + QLatin1Char('/') + folder + QStringLiteral("/apps")).entryList(QDir::Files),
                     QStringList{QStringLiteral("morvanta.png")});
    }

    void EachImageIsTheDrawingAtItsSize_data() {
        QTest::addColumn<int>("size");
        for (int size : kApplicationIconSizes) QTest::addRow("%dpx", size) << size;
    }

    void EachImageIsTheDrawingAtItsSize() {
        QFETCH(int, size);
        const QString path = QStringLiteral("%1/%2x%2/apps/morvanta.png").arg(kIconFolder).arg(size);
        QImage committed(path);
        QVERIFY2(!committed.isNull(), qPrintable(path + QStringLiteral(" cannot be read; `make icons` writes it")));
        committed = committed.convertToFormat(QImage::Format_ARGB32);
        const QImage drawn = ApplicationIconImage(size).convertToFormat(QImage::Format_ARGB32);
        QCOMPARE(committed.size(), drawn.size());
        int differing = 0;
        for (int y = 0; y < size; ++y)
            for (int x = 0; x < size; ++x) differing += committed.pixel(x, y) != drawn.pixel(x, y);
        QVERIFY2(differing == 0, qPrintable(QStringLiteral("%1 pixels differ from the drawing in %2; `make icons` "
                                                           "writes the images anew")
                                                .arg(differing)
                                                .arg(path)));
    }
};

QTEST_MAIN(IconFilesTest)
#include "IconFilesTest.moc"
