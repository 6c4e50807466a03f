// About: the program's name, its version and the project's web page.
#pragma once

#include <QDialog>

namespace morvanta::shell {

class AboutBox : public QDialog {
    Q_OBJECT
public:
    explicit AboutBox(QWidget* owner);

protected:
    // A click anywhere closes the box, as Esc does.
    void mousePressEvent(QMouseEvent* event) override;
};

}  // namespace morvanta::shell
