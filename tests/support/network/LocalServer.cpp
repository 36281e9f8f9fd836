#include "support/network/LocalServer.h"

#include <QTcpSocket>
#include <QTimer>

namespace qm {

namespace {

constexpr qint64 kFullEnough = 1 << 20;  // waiting to be sent

}  // namespace

Answer page(const QByteArray& content, int status, const QByteArray& moreHeaders) {
    return {"HTTP/1.1 " + QByteArray::number(status) + " Answer\r\nContent-Length: " +
            QByteArray::number(content.size()) + "\r\nConnection: close\r\n" + moreHeaders + "\r\n" + content};
}

Answer redirection(const QByteArray& location) {
    return page({}, 302, "Location: " + location + "\r\n");
}

LocalServer::LocalServer(std::unique_ptr<QTcpServer> server) : m_server(std::move(server)) {
    connect(m_server.get(), &QTcpServer::pendingConnectionAvailable, this, [this] {
        while (QTcpSocket* socket = m_server->nextPendingConnection()) take(socket);
    });
}

bool LocalServer::listen(quint16 port) {
    return m_server->listen(QHostAddress::LocalHost, port);
}

QUrl LocalServer::url(const QByteArray& path, const QString& scheme) const {
    return QUrl(QStringLiteral("%1://127.0.0.1:%2%3").arg(scheme).arg(port()).arg(QString::fromLatin1(path)));
}

void LocalServer::take(QTcpSocket* socket) {
    connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
    connect(socket, &QTcpSocket::readyRead, this, [this, socket] { answer(socket); });
    if (socket->bytesAvailable() > 0) answer(socket);
}

void LocalServer::answer(QTcpSocket* socket) {
    if (!socket->peek(1 << 16).contains("\r\n\r\n")) return;
    const QByteArray path = socket->readAll().split(' ').value(1);
    requests.append(path);
    emit requested(path);
    const Answer answer = answers.value(path, page("not here", 404));
    if (pieceSize > 0) return sendInPieces(socket, answer);
    socket->write(answer.beginning);
    afterTheBeginning(socket, answer);
}

// Each piece on its own way, as far as the system lets it: what is received may be joined again.
void LocalServer::sendInPieces(QTcpSocket* socket, const Answer& answer) {
    socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    auto* timer = new QTimer(socket);
    connect(timer, &QTimer::timeout, this, [this, socket, timer, answer, sent = qsizetype(0)]() mutable {
        if (!socket->isOpen()) return timer->stop();
        socket->write(answer.beginning.mid(sent, pieceSize));
        socket->flush();
        sent += pieceSize;
        if (sent < answer.beginning.size()) return;
        timer->stop();
        afterTheBeginning(socket, answer);
    });
    timer->start(0);
}

void LocalServer::afterTheBeginning(QTcpSocket* socket, const Answer& answer) {
    if (answer.mayEnd || !answer.repeated.isEmpty())
        continueLater(socket, answer);
    else if (answer.hangsUp)
        socket->disconnectFromHost();
}

void LocalServer::continueLater(QTcpSocket* socket, const Answer& answer) {
    auto* timer = new QTimer(socket);
    connect(timer, &QTimer::timeout, socket, [socket, timer, answer] {
        if (!socket->isOpen()) return;
        if (!answer.mayEnd) {
            if (socket->bytesToWrite() < kFullEnough) socket->write(answer.repeated);
        } else if (answer.mayEnd()) {
            timer->stop();
            socket->write(answer.ending);
            socket->disconnectFromHost();
        }
    });
    timer->start(answer.pause);
}

}  // namespace qm
