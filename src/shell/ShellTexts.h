// The texts and captions the window shows itself; those of the conversion
// run come from the core (run/ConversionRun.h).
#pragma once

#include <QString>

#include "services/ProgramVersion.h"

namespace morvanta::shell {

inline const QString kProgramTitle = QString::fromUtf8(kProgramName.data(), static_cast<qsizetype>(kProgramName.size()));
inline const QString kProjectWebPage = QStringLiteral("https://morvanta.org/");

// "1.5.00": major, minor and a two-digit revision.
inline QString VersionText() { return QString::fromStdString(morvanta::VersionText()); }

// "Morvanta - Version 1.5.00".
inline QString WindowCaption() { return kProgramTitle + QStringLiteral(" - Version ") + VersionText(); }

inline const QString kFileTypesCaption = QStringLiteral("SES File Types");
inline const QString kAtLeastOneItem = QStringLiteral("You must have at least one item checked.");
inline const QString kErrorCaption = QStringLiteral("Error");
inline const QString kCannotAccess = QStringLiteral("Cannot access the selected item ");
inline const QString kSettingsCaption = QStringLiteral("For Information...");
inline const QString kSettingsFailed =
    QStringLiteral("Access to the settings store failed and the current Morvanta settings could not be saved.");
inline const QString kBrowsePrompt =
    QStringLiteral("Please select a folder to place backup copies of your selected SES files.");
inline const QString kConvertingText = QStringLiteral("Converting - Please Wait");
inline const QString kReadingData = QStringLiteral("Reading data...");
inline const QString kReadingCaption = QStringLiteral("Reading ");

// The question before a recursive scan of a whole file system.
inline QString RootFolderQuestion(const QString& drive) {
    return QStringLiteral("The root folder of Drive ") + drive +
           QStringLiteral(" is selected and might take some time to scan.\nAre you sure you wish to scan the "
                          "entire Drive?");
}

// Texts of the core use "\r\n" between lines; a label wants "\n".
inline QString DisplayText(const std::string& text) {
    return QString::fromStdString(text).replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
}

}  // namespace morvanta::shell
