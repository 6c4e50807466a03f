// The settings store over QSettings: sections "WINDOW", "PATHS" and
// "SETTINGS", every value kept as text.
#include "shell/ShellSettings.h"

#include <QFileInfo>

#include <cmath>

#include "services/Recoding.h"

namespace morvanta::shell {
namespace {

constexpr std::array<const char*, 5> kWidthKeys{"ColWidthFolder", "ColWidthFile", "ColWidthVersion",
                                                "ColWidthCreated", "ColWidthBytes"};

QString Text(const QSettings& store, const char* key, const QString& fallback) {
    return store.value(key, fallback).toString();
}

// Places and widths in twips. A stored text far outside any screen (or
// "nan", "inf") gives the default: the window turns the value into pixels
// as an integer.
constexpr double kFarthestTwips = 1e6;

double Number(const QSettings& store, const char* key, double fallback, double lowest = -kFarthestTwips) {
    bool ok = false;
    const double value = store.value(key).toString().toDouble(&ok);
    return ok && std::isfinite(value) && value >= lowest && value <= kFarthestTwips ? value : fallback;
}

int Integer(const QSettings& store, const char* key, int fallback) {
    bool ok = false;
    const int value = store.value(key).toString().toInt(&ok);
    return ok ? value : fallback;
}

bool Flag(const QSettings& store, const char* key) { return Integer(store, key, 0) == 1; }

QString FlagText(bool on) { return on ? QStringLiteral("1") : QStringLiteral("0"); }

}  // namespace

ShellSettings LoadSettings(QSettings& store, const QString& programFolder) {
    ShellSettings s;
    store.beginGroup("WINDOW");
    s.Top = Number(store, "Top", 0);
    s.Left = Number(store, "Left", 0);
    store.endGroup();

    store.beginGroup("PATHS");
    s.LastDir = Text(store, "LastDir", programFolder);
    s.TargDir = Text(store, "TargDir", programFolder);
    store.endGroup();
    if (!QFileInfo(s.TargDir).isDir()) s.TargDir = programFolder;

    store.beginGroup("SETTINGS");
    s.Target = Integer(store, "Target", 0) == 1 ? 1 : 0;
    s.AutoRefresh = Flag(store, "AutoRefresh");
    s.ScanSubfolders = Flag(store, "ScanSubfolders");
    s.Language = Integer(store, "Language", 0);
    if (s.Language < 0 || s.Language >= static_cast<int>(LanguageTable.size())) s.Language = 0;
    s.FileFilter = Integer(store, "FileFilter", kAllFileTypesMask);
    for (std::size_t i = 0; i < kWidthKeys.size(); ++i)
        s.ColumnWidths[i] = Number(store, kWidthKeys[i], kDefaultColumnWidths[i], 0);
    s.NonEnglish = Flag(store, "NonEnglish");
    s.DontUseSESPathNames = store.value("DontUseSESPathNames", "False").toString().compare("True", Qt::CaseInsensitive) == 0;
    s.WellFormed = Flag(store, "WellFormed");
    store.endGroup();
    return s;
}

bool SaveSettings(QSettings& store, const ShellSettings& s) {
    // Whole sections go first, so that keys of no use vanish.
    for (const char* section : {"WINDOW", "PATHS", "SETTINGS"}) store.remove(section);
    if (!store.isWritable()) return false;

    store.beginGroup("WINDOW");
    store.setValue("Top", QString::number(static_cast<float>(s.Top)));
    store.setValue("Left", QString::number(static_cast<float>(s.Left)));
    store.endGroup();

    store.beginGroup("PATHS");
    store.setValue("LastDir", s.LastDir);
    store.setValue("TargDir", s.TargDir.trimmed());
    store.endGroup();

    store.beginGroup("SETTINGS");
    store.setValue("Target", QString::number(s.Target == 0 ? 0 : 1));
    store.setValue("AutoRefresh", FlagText(s.AutoRefresh));
    store.setValue("ScanSubfolders", FlagText(s.ScanSubfolders));
    store.setValue("Language", QString::number(s.Language));
    store.setValue("FileFilter", QString::number(s.FileFilter));
    for (std::size_t i = 0; i < kWidthKeys.size(); ++i)
        store.setValue(kWidthKeys[i], QString::number(s.ColumnWidths[i]));
    store.setValue("NonEnglish", FlagText(s.NonEnglish));
    store.setValue("DontUseSESPathNames", s.DontUseSESPathNames ? QStringLiteral("True") : QStringLiteral("False"));
    store.setValue("WellFormed", FlagText(s.WellFormed));
    store.endGroup();

    store.sync();
    return store.status() == QSettings::NoError;
}

}  // namespace morvanta::shell
