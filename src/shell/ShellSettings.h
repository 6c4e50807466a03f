// What the window remembers between runs: its place, its two folders, its
// options and the widths of the file list's columns, in one per-user store
// read once at start and written once at the end.
#pragma once

#include <QSettings>
#include <QString>

#include <array>

#include "run/Discovery.h"

namespace morvanta::shell {

inline constexpr std::array<double, 5> kDefaultColumnWidths{3350, 2880, 1500, 1800, 1500};  // twips
inline constexpr int kTwipsPerPixel = 15;

struct ShellSettings {
    double Top = 0;   // twips
    double Left = 0;  // twips
    QString LastDir;  // CurrentFolder
    QString TargDir;  // TargetTextBox
    int Target = 0;   // 0 "Source Folders", 1 "Specific Folder..."
    bool AutoRefresh = false;
    bool ScanSubfolders = false;
    int Language = 0;  // row of LanguageTable
    int FileFilter = kAllFileTypesMask;
    std::array<double, 5> ColumnWidths = kDefaultColumnWidths;  // twips, in column order
    bool NonEnglish = false;
    bool DontUseSESPathNames = false;
    bool WellFormed = false;  // the documents are repaired to well-formed XML

    bool operator==(const ShellSettings&) const = default;
};

// The stored values, each absent one with its default. A "Language" beyond
// the table gives row 0; a "TargDir" whose folder is gone gives
// `programFolder`, as does an absent "LastDir" or "TargDir".
ShellSettings LoadSettings(QSettings& store, const QString& programFolder);

// Deletes the three sections and writes every key again, in order. False
// when the store could not be written; the caller tells the user.
bool SaveSettings(QSettings& store, const ShellSettings& settings);

}  // namespace morvanta::shell
