// A web server on this machine that answers each path as a test tells it to, also wrongly. It lives on the thread that
// made it, which has to run its event loop.
#pragma once

#include <QByteArray>
#include <QHash>
#include <QTcpServer>
#include <QUrl>
#include <functional>
#include <memory>

class QTcpSocket;

namespace qm {

struct Answer {
    QByteArray beginning;      // sent at once, headers and all
    QByteArray repeated = {};  // sent over and over after that
    int pause = 0;             // milliseconds before each repetition
    bool hangsUp = true;       // after the beginning, unless something is repeated
    QByteArray ending = {};    // sent when it may be, in place of repetitions
    std::function<bool()> mayEnd = {};
};

// A whole answer with its length.
Answer page(const QByteArray& content, int status = 200, const QByteArray& moreHeaders = {});

// Another address to go to.
Answer redirection(const QByteArray& location);

class LocalServer : public QObject {
    Q_OBJECT

public:
    LocalServer() : LocalServer(std::make_unique<QTcpServer>()) {}
    explicit LocalServer(std::unique_ptr<QTcpServer> server);  // or a secure one

    bool listen(quint16 port = 0);
    void stopListening() { m_server->close(); }
    QUrl url(const QByteArray& path = {}, const QString& scheme = QStringLiteral("http")) const;
    quint16 port() const { return m_server->serverPort(); }

    QHash<QByteArray, Answer> answers;  // by path; any other path is not found
    int pieceSize = 0;                  // bytes of an answer's beginning that are sent at a time; 0: all at once
    QList<QByteArray> requests;         // the paths that were asked for

signals:
    void requested(const QByteArray& path);

private:
    void take(QTcpSocket* socket);
    void answer(QTcpSocket* socket);
    void sendInPieces(QTcpSocket* socket, const Answer& answer);
    void afterTheBeginning(QTcpSocket* socket, const Answer& answer);
    void continueLater(QTcpSocket* socket, const Answer& answer);

    std::unique_ptr<QTcpServer> m_server;
};

}  // namespace qm
