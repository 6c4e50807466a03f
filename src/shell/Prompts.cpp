// The message boxes, the overwrite prompt and the folder picker as the user
// sees them.
#include "shell/Prompts.h"

#include <QFileDialog>

#include "shell/OverwriteDialog.h"

namespace morvanta::shell {
namespace {

// Lines shown in the box itself; a longer list goes behind "Show Details...".
constexpr int kShownDetails = 12;

}  // namespace

void DialogPrompts::Tell(QMessageBox::Icon icon, const QString& caption, const QString& text,
                         const QStringList& details) {
    QMessageBox box(icon, caption, text, QMessageBox::Ok, owner_);
    if (!details.isEmpty()) {
        QStringList shown = details.mid(0, kShownDetails);
        if (details.size() > kShownDetails)
            shown << QStringLiteral("... and %1 more").arg(details.size() - kShownDetails);
        box.setInformativeText(shown.join(QLatin1Char('\n')));
        if (details.size() > kShownDetails) box.setDetailedText(details.join(QLatin1Char('\n')));
    }
    box.exec();
}

bool DialogPrompts::AskYesNo(const QString& caption, const QString& text, bool defaultNo) {
    QMessageBox box(QMessageBox::Question, caption, text, QMessageBox::Yes | QMessageBox::No, owner_);
    box.setDefaultButton(defaultNo ? QMessageBox::No : QMessageBox::Yes);
    box.setEscapeButton(QMessageBox::No);
    return box.exec() == QMessageBox::Yes;
}

int DialogPrompts::AskOverwrite(const QString& message, int lastAnswer) {
    OverwriteDialog dialog(message, lastAnswer, owner_);
    dialog.exec();
    return dialog.Answer();
}

QString DialogPrompts::PickFolder(const QString& start, const QString& prompt) {
    return QFileDialog::getExistingDirectory(owner_, prompt, start, QFileDialog::ShowDirsOnly);
}

}  // namespace morvanta::shell
