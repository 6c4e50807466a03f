// The About box.
#include "shell/AboutBox.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

#include "shell/AppIcon.h"
#include "shell/ShellTexts.h"

namespace morvanta::shell {

AboutBox::AboutBox(QWidget* owner) : QDialog(owner) {
    setObjectName("About");
    setWindowTitle(QStringLiteral("About ") + kProgramTitle);
    setModal(true);
    // 7785 by 5100 twips.
    resize(519, 340);

    auto* icon = new QLabel(this);
    icon->setObjectName("ApplicationIcon");
    icon->setPixmap(ApplicationIcon().pixmap(96, 96));
    icon->setAlignment(Qt::AlignTop);

    auto* name = new QLabel(kProgramTitle, this);
    name->setObjectName("ApplicationName");
    QFont big = name->font();
    big.setPointSizeF(big.pointSizeF() * 2);
    big.setBold(true);
    name->setFont(big);

    auto* version = new QLabel(QStringLiteral("Version ") + VersionText(), this);
    version->setObjectName("Version");

    auto* purpose = new QLabel(
        QStringLiteral("Converts Cool Edit Pro, Cool Edit 2000 and Adobe Audition 1.0 to 3.0 multitrack "
                       "sessions (.ses) to Adobe Audition XML sessions (.sesx)."),
        this);
    purpose->setWordWrap(true);

    auto* link = new QLabel(QStringLiteral("<a href=\"%1\">%1</a>").arg(kProjectWebPage), this);
    link->setObjectName("WebPageLabel");
    link->setTextFormat(Qt::RichText);
    link->setOpenExternalLinks(true);

    auto* hint = new QLabel(QStringLiteral("Click anywhere or press Esc to close."), this);
    hint->setEnabled(false);

    auto* texts = new QVBoxLayout;
    texts->addWidget(name);
    texts->addWidget(version);
    texts->addSpacing(24);
    texts->addWidget(purpose);
    texts->addSpacing(24);
    texts->addWidget(new QLabel(QStringLiteral("The project's web page:"), this));
    texts->addWidget(link);
    texts->addStretch(1);
    texts->addWidget(hint);

    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(24, 24, 24, 16);
    layout->setSpacing(24);
    layout->addWidget(icon);
    layout->addLayout(texts, 1);
}

void AboutBox::mousePressEvent(QMouseEvent* event) {
    QDialog::mousePressEvent(event);
    accept();
}

}  // namespace morvanta::shell
