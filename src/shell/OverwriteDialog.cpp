// The overwrite prompt: a warning picture, the message of the run, and the
// four answers.
#include "shell/OverwriteDialog.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

#include "run/ConversionRun.h"
#include "shell/ShellTexts.h"

namespace morvanta::shell {
namespace {

constexpr std::array<const char*, 4> kCaptions{"&Yes", "Yes to &All", "&No", "&Cancel"};

// A long path has no blanks to wrap at: a zero-width space after each
// separator lets the label break it there.
QString Breakable(QString text) { return text.replace(QLatin1Char('/'), QStringLiteral("/\u200B")); }

}  // namespace

OverwriteDialog::OverwriteDialog(const QString& message, int lastAnswer, QWidget* owner)
    : QDialog(owner), answer_(lastAnswer) {
    setObjectName("Overwrite");
    setWindowTitle(kProgramTitle);
    if (owner) setWindowIcon(owner->windowIcon());
    setModal(true);

    auto* frame = new QFrame(this);
    frame->setObjectName("Frame1");
    frame->setFrameShape(QFrame::StyledPanel);

    auto* image = new QLabel(frame);
    image->setObjectName("Image1");
    const int iconSize = style()->pixelMetric(QStyle::PM_MessageBoxIconSize, nullptr, this);
    image->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxWarning, nullptr, this).pixmap(iconSize, iconSize));
    image->setAlignment(Qt::AlignTop | Qt::AlignHCenter);

    messageLabel_ = new QLabel(Breakable(message), frame);
    messageLabel_->setObjectName("MessageLabel");
    messageLabel_->setWordWrap(true);
    messageLabel_->setTextFormat(Qt::PlainText);
    messageLabel_->setMinimumWidth(330);
    messageLabel_->setAlignment(Qt::AlignLeft | Qt::AlignTop);

    auto* messageRow = new QHBoxLayout;
    messageRow->setSpacing(12);
    messageRow->addWidget(image);
    messageRow->addWidget(messageLabel_, 1);

    auto* buttonRow = new QHBoxLayout;
    for (int i = 0; i < 4; ++i) {
        auto* button = new QPushButton(tr(kCaptions[static_cast<std::size_t>(i)]), frame);
        button->setObjectName(QStringLiteral("AnswerButton%1").arg(i));
        button->setMinimumWidth(81);
        connect(button, &QPushButton::clicked, this, [this, i] { Choose(i); });
        buttonRow->addWidget(button);
        buttons_[static_cast<std::size_t>(i)] = button;
    }
    for (int i = 0; i + 1 < 4; ++i) setTabOrder(buttons_[static_cast<std::size_t>(i)], buttons_[static_cast<std::size_t>(i + 1)]);

    auto* frameLayout = new QVBoxLayout(frame);
    frameLayout->setContentsMargins(10, 12, 10, 10);
    frameLayout->setSpacing(12);
    frameLayout->addLayout(messageRow, 1);
    frameLayout->addLayout(buttonRow);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(2, 2, 2, 2);
    layout->addWidget(frame);
    setSizeGripEnabled(false);
}

void OverwriteDialog::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    const int focus = answer_ >= 0 && answer_ < 4 ? answer_ : kOverwrite;
    QPushButton* button = buttons_[static_cast<std::size_t>(focus)];
    button->setDefault(true);
    button->setFocus(Qt::ActiveWindowFocusReason);
}

void OverwriteDialog::reject() {
    answer_ = kCancelRun;
    QDialog::reject();
}

void OverwriteDialog::Choose(int index) {
    answer_ = index;
    accept();
}

}  // namespace morvanta::shell
