// ProgressStatus: a one-line message centred over the main window while
// the first scan of the start runs.
#pragma once

#include <QWidget>

class QLabel;

namespace morvanta::shell {

class ProgressStatus : public QWidget {
    Q_OBJECT
public:
    explicit ProgressStatus(QWidget* owner);

    // Sets PrtCaption, places the window over its owner and shows it.
    void ShowText(const QString& text);
    QString Text() const;

private:
    QWidget* owner_;
    QLabel* caption_;
};

}  // namespace morvanta::shell
