// The hand-over to a running window over a local socket.
#include "shell/SingleInstance.h"

#include <QLocalServer>
#include <QLocalSocket>

#include "services/Platform.h"

namespace morvanta::shell {
namespace {

constexpr int kTimeoutMs = 1000;
const QByteArray kShowMessage = QByteArrayLiteral("show\n");

}  // namespace

SingleInstance::SingleInstance(const QString& name, QObject* parent)
    : QObject(parent), serverName_(name + QStringLiteral("-") + QString::fromStdString(CurrentUserKey())) {}

bool SingleInstance::HandOver() {
    QLocalSocket socket;
    socket.connectToServer(serverName_);
    if (!socket.waitForConnected(kTimeoutMs)) return false;
    socket.write(kShowMessage);
    socket.waitForBytesWritten(kTimeoutMs);
    socket.disconnectFromServer();
    return true;
}

bool SingleInstance::Listen() {
    server_ = new QLocalServer(this);
    server_->setSocketOptions(QLocalServer::UserAccessOption);
    if (!server_->listen(serverName_)) {
        // A socket left behind by an instance that ended badly.
        QLocalServer::removeServer(serverName_);
        if (!server_->listen(serverName_)) return false;
    }
    connect(server_, &QLocalServer::newConnection, this, [this] {
        while (QLocalSocket* socket = server_->nextPendingConnection()) {
            connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
            connect(socket, &QLocalSocket::readyRead, this, [this, socket] {
                if (socket->readAll().contains(kShowMessage)) emit Activated();
            });
        }
    });
    return true;
}

}  // namespace morvanta::shell
