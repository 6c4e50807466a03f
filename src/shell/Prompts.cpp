// The message boxes, the overwrite prompt and the folder picker as the user
// sees them.
#include "shell/Prompts.h"

#include <QFileDialog>
#include <QLabel>
#include <QScreen>

#include <algorithm>

#include "shell/OverwriteDialog.h"

namespace morvanta::shell {
namespace {

// Lines shown in the box itself; a longer list goes behind "Show Details...".
constexpr int kShownDetails = 12;

// A message box wraps its text at 500 pixels, which breaks a line of the
// conversion question in two and a path of the problem list in four. Its
// texts are given room for their longest line, up to half the screen.
void WidenForLongestLines(QMessageBox& box) {
    const QScreen* screen = box.screen();
    const int room = screen ? screen->availableGeometry().width() / 2 : 640;
    for (const char* name : {"qt_msgbox_label", "qt_msgbox_informativelabel"}) {
        auto* label = box.findChild<QLabel*>(QString::fromLatin1(name));
        if (!label) continue;
        int longest = 0;
        for (const QString& line : label->text().split(QLatin1Char('\n')))
            longest = std::max(longest, label->fontMetrics().horizontalAdvance(line));
        label->setMinimumWidth(std::min(longest + 2, room));
    }
}

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
    WidenForLongestLines(box);
    box.exec();
}

bool DialogPrompts::AskYesNo(const QString& caption, const QString& text, bool defaultNo) {
    QMessageBox box(QMessageBox::Question, caption, text, QMessageBox::Yes | QMessageBox::No, owner_);
    box.setDefaultButton(defaultNo ? QMessageBox::No : QMessageBox::Yes);
    box.setEscapeButton(QMessageBox::No);
    WidenForLongestLines(box);
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
