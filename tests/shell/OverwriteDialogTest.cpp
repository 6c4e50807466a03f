// The overwrite prompt: the focus on the last answer, Enter repeating it,
// Esc and closing as "&Cancel", and the message as the run made it.
#include <QtTest>

#include <QLabel>
#include <QPushButton>

#include "run/ConversionRun.h"
#include "shell/OverwriteDialog.h"
#include "shell/ShellTexts.h"

using namespace morvanta;
using namespace morvanta::shell;

namespace {

const QString kMessage = DisplayText(OverwriteMessage("/music/a.sesx"));

void ShowAndWait(OverwriteDialog& dialog) {
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
}

}  // namespace

class OverwriteDialogTest : public QObject {
    Q_OBJECT
private slots:
    // The focus stands on the last answer and Enter repeats it; a click on
    // another button answers with that button's index.
    void TheFocusIsOnTheLastAnswerEnterRepeatsItAndButtonsAnswerTheirIndex() {
        const QStringList captions{"&Yes", "Yes to &All", "&No", "&Cancel"};
        for (int answer = 0; answer < 4; ++answer) {
            OverwriteDialog repeated(kMessage, answer, nullptr);
            ShowAndWait(repeated);
            QCOMPARE(QApplication::focusWidget(), repeated.AnswerButton(answer));
            QCOMPARE(repeated.AnswerButton(answer)->text(), captions[answer]);
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
            QCOMPARE(repeated.Answer(), answer);
            QVERIFY(!repeated.isVisible());

            OverwriteDialog clicked(kMessage, (answer + 1) % 4, nullptr);
            ShowAndWait(clicked);
            QTest::mouseClick(clicked.AnswerButton(answer), Qt::LeftButton);
            QCOMPARE(clicked.Answer(), answer);
        }
    }

    void EscAndClosingCancelTheRun() {
        OverwriteDialog escaped(kMessage, 2, nullptr);
        ShowAndWait(escaped);
        QTest::keyClick(&escaped, Qt::Key_Escape);
        QCOMPARE(escaped.Answer(), kCancelRun);

        OverwriteDialog closed(kMessage, 1, nullptr);
        ShowAndWait(closed);
        closed.close();
        QCOMPARE(closed.Answer(), kCancelRun);
    }

    void TheMessageAndCaption() {
        OverwriteDialog dialog(kMessage, 0, nullptr);
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Morvanta"));
        auto* label = dialog.findChild<QLabel*>(QStringLiteral("MessageLabel"));
        QVERIFY(label);
        // Zero-width spaces behind the separators let a long path wrap.
        QCOMPARE(label->text().remove(QChar(0x200B)),
                 QStringLiteral("File '/music/a.sesx' Already Exists.\n\nOverwrite Existing File?"));
    }
};

QTEST_MAIN(OverwriteDialogTest)
#include "OverwriteDialogTest.moc"
