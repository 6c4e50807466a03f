// Overwrite: asked during a conversion run when a document exists already.
// The answer is the index of the button pressed; the focus starts on the
// button of the previous answer, so Enter repeats it.
#pragma once

#include <QDialog>

#include <array>

class QLabel;
class QPushButton;

namespace morvanta::shell {

class OverwriteDialog : public QDialog {
    Q_OBJECT
public:
    // `lastAnswer` is OverwriteAnswer: the button that gets the focus.
    OverwriteDialog(const QString& message, int lastAnswer, QWidget* owner);

    int Answer() const { return answer_; }
    QPushButton* AnswerButton(int index) const { return buttons_[static_cast<std::size_t>(index)]; }

protected:
    void showEvent(QShowEvent* event) override;
    // Esc, and closing the window, answer "&Cancel".
    void reject() override;

private:
    void Choose(int index);

    std::array<QPushButton*, 4> buttons_{};
    QLabel* messageLabel_ = nullptr;
    int answer_;
};

}  // namespace morvanta::shell
