// Helpers of the window's tests and of the screenshot tool: a settings file
// of its own in a temporary folder, prompts answered by script, and folders
// of built sessions.
#pragma once

#include <QDir>
#include <QFile>
#include <QSettings>
#include <QStringList>
#include <QTemporaryDir>

#include <deque>
#include <functional>
#include <memory>
#include <vector>

#include "ExampleSessions.h"
#include "SesBuilder.h"
#include "WholeSessions.h"
#include "shell/Prompts.h"

namespace morvanta::shell::testing {

// A settings store that is never the user's.
inline std::unique_ptr<QSettings> TemporarySettings(const QTemporaryDir& dir) {
    return std::make_unique<QSettings>(dir.filePath(QStringLiteral("Morvanta.conf")), QSettings::IniFormat);
}

inline void WriteBytes(const QString& path, const std::vector<std::uint8_t>& bytes) {
    QFile file(path);
    file.open(QIODevice::WriteOnly | QIODevice::Truncate);
    file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<qint64>(bytes.size()));
}

// Every example session in `folder`.
inline void WriteExampleSessions(const QString& folder) {
    QDir().mkpath(folder);
    for (const auto& file : morvanta::testing::ExampleSessions())
        WriteBytes(folder + QLatin1Char('/') + QString::fromStdString(file.Name), file.Bytes);
}

// The band session of every writer version in `folder`, named as in examples/.
inline void WriteBandSessions(const QString& folder) {
    QDir().mkpath(folder);
    for (const auto& version : morvanta::testing::WriterVersions())
        WriteBytes(folder + QLatin1Char('/') + QString::fromStdString(version.Stem) + QStringLiteral(".ses"),
                   morvanta::testing::WholeSession(version.Text));
}

// Every box the window shows, in order, as "caption|text" and the details
// as further lines; questions are answered from the queues (Yes, and
// "&Yes" at the overwrite prompt, when a queue is empty).
class ScriptedPrompts : public Prompts {
public:
    struct Record {
        QMessageBox::Icon Icon = QMessageBox::NoIcon;
        QString Caption;
        QString Text;
        QStringList Details;
    };

    std::vector<Record> Shown;
    std::deque<bool> YesNoAnswers;
    std::deque<int> OverwriteAnswers;
    std::vector<int> OverwriteFocus;  // the last answer each prompt was given
    std::vector<QString> OverwriteMessages;
    QString PickedFolder;
    std::function<void()> WhileAskingOverwrite;  // something the user does meanwhile

    void Tell(QMessageBox::Icon icon, const QString& caption, const QString& text,
              const QStringList& details) override {
        Shown.push_back({icon, caption, text, details});
    }
    bool AskYesNo(const QString& caption, const QString& text, bool) override {
        Shown.push_back({QMessageBox::Question, caption, text, {}});
        if (YesNoAnswers.empty()) return true;
        const bool answer = YesNoAnswers.front();
        YesNoAnswers.pop_front();
        return answer;
    }
    int AskOverwrite(const QString& message, int lastAnswer) override {
        OverwriteMessages.push_back(message);
        OverwriteFocus.push_back(lastAnswer);
        if (WhileAskingOverwrite) WhileAskingOverwrite();
        if (OverwriteAnswers.empty()) return 0;
        const int answer = OverwriteAnswers.front();
        OverwriteAnswers.pop_front();
        return answer;
    }
    QString PickFolder(const QString&, const QString&) override { return PickedFolder; }
};

}  // namespace morvanta::shell::testing
