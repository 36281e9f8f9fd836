// One program for each home folder, because two would write over each other's files. The first one holds a lock and
// listens at a local socket; a further start asks it to come to the front, and ends. The lock decides, never the files,
// which a killed program leaves behind. They are in the user's runtime folder, or in a private one among the temporary
// files, and named by the home. Main thread only. Where there is no such lock every start is the first.
#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>
#include <functional>
#include <map>
#include <memory>

class QSocketNotifier;

namespace qm {

class OnlyProgram : public QObject {
    Q_OBJECT

public:
    enum class Start {
        First,
        HandedOver,  // to the first, which has answered
        NoAnswer     // the first has not answered within a second
    };

    // Of the program with this home; empty: there is no other. The folder is for the lock and the socket.
    explicit OnlyProgram(const QString& home, const QString& folder = runtimeFolder());
    ~OnlyProgram() override;

    Start start();

    // How the first answers the others, with what the desktop gave them for coming to the front, or nothing. Needs the
    // event loop.
    void listen(std::function<void(const QByteArray& token)> comeToFront);

    // The program ends: the next start is the first. What is left of a program may keep its files for as long as a
    // thread of it waits for a disk that does not answer, and would be taken for one that hangs.
    void leave();

    static QString runtimeFolder();  // empty if there is none

private:
    bool takeLock();
    void openSocket();
    bool isAnswered(int milliseconds) const;
    void acceptCalls();
    void hear(int call);
    void endCall(int call);

    QString m_lockPath;
    QString m_socketPath;
    int m_lock = -1;
    int m_socket = -1;
    std::function<void(const QByteArray&)> m_comeToFront;
    std::unique_ptr<QSocketNotifier> m_notifier;
    std::map<int, std::unique_ptr<QSocketNotifier>> m_calls;
};

}  // namespace qm
