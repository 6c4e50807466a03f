// The settings store: defaults of a first start, the stored text of every
// key, the round trip, and the rules applied on reading.
#include <QtTest>

#include "ShellTestSupport.h"
#include "shell/ShellSettings.h"

using namespace morvanta::shell;

class SettingsTest : public QObject {
    Q_OBJECT
private slots:
    void initTestCase() { QStandardPaths::setTestModeEnabled(true); }

    void AFirstStartGetsTheDefaults() {
        QTemporaryDir dir;
        const ShellSettings s = LoadSettings(*testing::TemporarySettings(dir), QStringLiteral("/program"));
        ShellSettings expected;
        expected.LastDir = QStringLiteral("/program");
        expected.TargDir = QStringLiteral("/program");
        QCOMPARE(s, expected);
        QCOMPARE(s.FileFilter, 1022);
        QCOMPARE(s.ColumnWidths, (std::array<double, 5>{3350, 2880, 1500, 1800, 1500}));
    }

    void EveryKeyIsStoredAsTextInItsSectionAndReadBack() {
        QTemporaryDir dir;
        ShellSettings s;
        s.Top = 1500;
        s.Left = 2250.5;
        s.LastDir = QStringLiteral("/music/sessions");
        s.TargDir = QStringLiteral("  %1 ").arg(dir.path());
        s.Target = 1;
        s.ScanSubfolders = true;
        s.Language = 11;
        s.FileFilter = 514;
        s.ColumnWidths = {4000, 2880, 1500.5, 1800, 1500};
        s.NonEnglish = true;
        s.DontUseSESPathNames = true;
        s.WellFormed = true;
        {
            auto store = testing::TemporarySettings(dir);
            store->setValue(QStringLiteral("SETTINGS/Obsolete"), QStringLiteral("x"));
            QVERIFY(SaveSettings(*store, s));
        }
        // The stored text, the temporary folder named TEMP.
        QFile file(dir.filePath(QStringLiteral("Morvanta.conf")));
        QFile golden(QStringLiteral(MORVANTA_SOURCE_DIR "/tests/golden/settings.ini"));
        QVERIFY(file.open(QIODevice::ReadOnly) && golden.open(QIODevice::ReadOnly));
        QCOMPARE(QString::fromUtf8(file.readAll()).replace(dir.path(), QStringLiteral("TEMP")),
                 QString::fromUtf8(golden.readAll()));
        ShellSettings expected = s;
        expected.TargDir = dir.path();
        QCOMPARE(LoadSettings(*testing::TemporarySettings(dir), QStringLiteral("/program")), expected);
    }

    void ReadingRules() {
        QTemporaryDir dir;
        auto store = testing::TemporarySettings(dir);
        store->setValue(QStringLiteral("SETTINGS/Language"), QStringLiteral("12"));
        store->setValue(QStringLiteral("PATHS/TargDir"), dir.filePath(QStringLiteral("gone")));
        store->setValue(QStringLiteral("PATHS/LastDir"), dir.filePath(QStringLiteral("gone")));
        store->setValue(QStringLiteral("SETTINGS/Target"), QStringLiteral("7"));
        store->setValue(QStringLiteral("SETTINGS/DontUseSESPathNames"), QStringLiteral("true"));
        const ShellSettings s = LoadSettings(*store, QStringLiteral("/program"));
        QCOMPARE(s.Language, 0);
        QCOMPARE(s.TargDir, QStringLiteral("/program"));
        // A last folder that is gone is the tree's business.
        QCOMPARE(s.LastDir, dir.filePath(QStringLiteral("gone")));
        QCOMPARE(s.Target, 0);
        QVERIFY(s.DontUseSESPathNames);
    }

    void NumbersNoScreenCouldHoldGiveTheirDefaults() {
        QTemporaryDir dir;
        auto store = testing::TemporarySettings(dir);
        store->setValue(QStringLiteral("WINDOW/Top"), QStringLiteral("1e30"));
        store->setValue(QStringLiteral("WINDOW/Left"), QStringLiteral("nan"));
        store->setValue(QStringLiteral("SETTINGS/ColWidthFolder"), QStringLiteral("inf"));
        store->setValue(QStringLiteral("SETTINGS/ColWidthFile"), QStringLiteral("-300"));
        store->setValue(QStringLiteral("SETTINGS/ColWidthBytes"), QStringLiteral("-1e12"));
        store->setValue(QStringLiteral("SETTINGS/ColWidthVersion"), QStringLiteral("2000"));
        const ShellSettings s = LoadSettings(*store, QStringLiteral("/program"));
        QCOMPARE(s.Top, 0.0);
        QCOMPARE(s.Left, 0.0);
        QCOMPARE(s.ColumnWidths, (std::array<double, 5>{3350, 2880, 2000, 1800, 1500}));

        // A window left off screen stays there, as the user may have meant.
        store->setValue(QStringLiteral("WINDOW/Top"), QStringLiteral("-4500"));
        QCOMPARE(LoadSettings(*store, QStringLiteral("/program")).Top, -4500.0);
    }

    void AStoreThatCannotBeWrittenIsReported() {
        QTemporaryDir dir;
        QFile blocker(dir.filePath(QStringLiteral("file")));
        QVERIFY(blocker.open(QIODevice::WriteOnly));
        blocker.close();
        QSettings store(dir.filePath(QStringLiteral("file/Morvanta.conf")), QSettings::IniFormat);
        QVERIFY(!SaveSettings(store, ShellSettings{}));
    }
};

QTEST_GUILESS_MAIN(SettingsTest)
#include "SettingsTest.moc"
