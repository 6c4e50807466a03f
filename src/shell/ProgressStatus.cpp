// The start's "Reading data..." window.
#include "shell/ProgressStatus.h"

#include <QFrame>
#include <QLabel>
#include <QVBoxLayout>

namespace morvanta::shell {

ProgressStatus::ProgressStatus(QWidget* owner)
    : QWidget(owner, Qt::Tool | Qt::FramelessWindowHint), owner_(owner) {
    setObjectName("ProgressStatus");
    // 10845 by 825 twips.
    setFixedSize(723, 55);

    auto* frame = new QFrame(this);
    frame->setObjectName("Frame1");
    frame->setFrameShape(QFrame::Panel);
    frame->setFrameShadow(QFrame::Raised);
    frame->setLineWidth(2);

    caption_ = new QLabel(QStringLiteral("Converting......."), frame);
    caption_->setObjectName("PrtCaption");
    caption_->setAlignment(Qt::AlignCenter);
    QFont bold = caption_->font();
    bold.setBold(true);
    bold.setPointSizeF(bold.pointSizeF() * 1.2);
    caption_->setFont(bold);

    auto* frameLayout = new QVBoxLayout(frame);
    frameLayout->addWidget(caption_);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(frame);
}

void ProgressStatus::ShowText(const QString& text) {
    caption_->setText(text);
    if (owner_) {
        const QRect main = owner_->frameGeometry();
        move(main.left() + (main.width() - width()) / 2, main.top() + (main.height() - height()) / 2);
    }
    show();
    raise();
    repaint();
}

QString ProgressStatus::Text() const { return caption_->text(); }

}  // namespace morvanta::shell
