// One window per user: a second start hands over to the running window,
// which comes to the front, and ends without showing its own.
#pragma once

#include <QObject>
#include <QString>

class QLocalServer;

namespace morvanta::shell {

class SingleInstance : public QObject {
    Q_OBJECT
public:
    // `name` is made unique per user.
    explicit SingleInstance(const QString& name, QObject* parent = nullptr);

    // True when another instance answered and was asked to come forward:
    // this one should end.
    bool HandOver();
    // Becomes the instance that later starts hand over to.
    bool Listen();

    QString ServerName() const { return serverName_; }

signals:
    void Activated();

private:
    QString serverName_;
    QLocalServer* server_ = nullptr;
};

}  // namespace morvanta::shell
