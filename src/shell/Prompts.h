// Every question and message box of the window goes through one object, so
// that a test can answer them and read their texts.
#pragma once

#include <QMessageBox>
#include <QString>
#include <QStringList>

class QWidget;

namespace morvanta::shell {

class Prompts {
public:
    virtual ~Prompts() = default;

    // A message with one OK button. `details` are further lines (a list of
    // files) shown under the text.
    virtual void Tell(QMessageBox::Icon icon, const QString& caption, const QString& text,
                      const QStringList& details = {}) = 0;
    // A Yes/No question with the question icon; true for Yes.
    virtual bool AskYesNo(const QString& caption, const QString& text, bool defaultNo) = 0;
    // The overwrite prompt: returns the index of the button pressed (0 Yes,
    // 1 Yes to All, 2 No, 3 Cancel); the focus starts on `lastAnswer`.
    virtual int AskOverwrite(const QString& message, int lastAnswer) = 0;
    // A folder picker; empty when cancelled.
    virtual QString PickFolder(const QString& start, const QString& prompt) = 0;
};

// The real boxes, modal to `owner`.
class DialogPrompts : public Prompts {
public:
    explicit DialogPrompts(QWidget* owner) : owner_(owner) {}

    void Tell(QMessageBox::Icon icon, const QString& caption, const QString& text,
              const QStringList& details = {}) override;
    bool AskYesNo(const QString& caption, const QString& text, bool defaultNo) override;
    int AskOverwrite(const QString& message, int lastAnswer) override;
    QString PickFolder(const QString& start, const QString& prompt) override;

private:
    QWidget* owner_;
};

}  // namespace morvanta::shell
