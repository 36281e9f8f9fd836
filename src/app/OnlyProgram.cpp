#include "app/OnlyProgram.h"

#include <QCryptographicHash>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSocketNotifier>
#include <QThread>
#include <algorithm>
#include <utility>

#include "engine/api/Log.h"

#ifdef Q_OS_UNIX
#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#endif

namespace qm {

#ifdef Q_OS_UNIX

namespace {

constexpr int kMostWaitMilliseconds = 1000;  // for the first program's answer
constexpr int kPauseMilliseconds = 20;       // while the first program is just ending or beginning
constexpr int kWaiting = 8;                  // calls that are not accepted yet
constexpr std::size_t kLongestToken = 4096;
constexpr std::size_t kLongestPath = sizeof(sockaddr_un::sun_path) - 1;
constexpr char kEndOfToken = '\n', kAnswer = '!';
#ifdef MSG_NOSIGNAL
constexpr int kSendFlags = MSG_NOSIGNAL;
#else
constexpr int kSendFlags = 0;
#endif

// The same home is the same program, whatever links lead to it.
QString nameOf(const QString& home) {
    const QString canonical = QDir(home).canonicalPath();
    const QByteArray path = QFile::encodeName(canonical.isEmpty() ? home : canonical);
    const QByteArray hash = QCryptographicHash::hash(path, QCryptographicHash::Sha256).toHex().left(16);
    return QStringLiteral("quillmere-") + QString::fromLatin1(hash);
}

// The address of a socket holds about a hundred letters.
bool leavesRoomForNames(const QString& folder) {
    return static_cast<std::size_t>(QFile::encodeName(folder).size()) + 40 <= kLongestPath;
}

// A folder of this user, in which nobody else can put a socket.
bool isPrivate(const QString& folder) {
    struct stat status {};
    return ::lstat(QFile::encodeName(folder).constData(), &status) == 0 && S_ISDIR(status.st_mode) &&
           status.st_uid == ::geteuid() && (status.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

int makeSocket() {
    const int made = ::socket(AF_UNIX, SOCK_STREAM, 0);
    if (made < 0) return made;
    ::fcntl(made, F_SETFD, FD_CLOEXEC);
    ::fcntl(made, F_SETFL, O_NONBLOCK);
    return made;
}

sockaddr_un addressOf(const QString& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const QByteArray name = QFile::encodeName(path).left(kLongestPath);
    std::memcpy(address.sun_path, name.constData(), static_cast<std::size_t>(name.size()));
    return address;
}

}  // namespace

QString OnlyProgram::runtimeFolder() {
    const QString given = qEnvironmentVariable("XDG_RUNTIME_DIR");
    if (QDir::isAbsolutePath(given) && isPrivate(given) && leavesRoomForNames(given)) return given;
    const QString own = QStringLiteral("%1/quillmere-%2").arg(QDir::tempPath()).arg(::geteuid());
    ::mkdir(QFile::encodeName(own).constData(), S_IRWXU);
    return isPrivate(own) && leavesRoomForNames(own) ? own : QString();
}

OnlyProgram::OnlyProgram(const QString& home, const QString& folder) {
    if (home.isEmpty() || folder.isEmpty()) return;
    const QString name = folder + u'/' + nameOf(home);
    m_lockPath = name + QStringLiteral(".lock");
    m_socketPath = name + QStringLiteral(".socket");
}

OnlyProgram::~OnlyProgram() {
    leave();
}

void OnlyProgram::leave() {
    m_calls.clear();
    m_notifier.reset();
    if (m_socket >= 0) ::close(std::exchange(m_socket, -1));
    if (m_lock >= 0) ::close(std::exchange(m_lock, -1));
}

// A first program that is just ending lets its lock go while this one waits.
OnlyProgram::Start OnlyProgram::start() {
    const QDeadlineTimer deadline(kMostWaitMilliseconds);
    do {
        if (takeLock()) return Start::First;
        if (isAnswered(static_cast<int>(deadline.remainingTime()))) return Start::HandedOver;
        QThread::msleep(kPauseMilliseconds);
    } while (!deadline.hasExpired());
    return Start::NoAnswer;
}

// Also true where locks cannot be had at all.
bool OnlyProgram::takeLock() {
    if (m_lockPath.isEmpty()) return true;
    const int lock =
        ::open(QFile::encodeName(m_lockPath).constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, S_IRUSR | S_IWUSR);
    if (lock >= 0 && ::flock(lock, LOCK_EX | LOCK_NB) == 0) {
        m_lock = lock;
        openSocket();
        return true;
    }
    const int error = errno;
    if (lock >= 0) ::close(lock);
    if (lock >= 0 && error == EWOULDBLOCK) return false;
    qmLog("a second program would not be noticed: " + m_lockPath.toStdString() + ": " + std::strerror(error));
    return true;
}

// Here already, so that others wait for the answer while this program is still being built.
void OnlyProgram::openSocket() {
    const sockaddr_un address = addressOf(m_socketPath);
    ::unlink(address.sun_path);  // of a program that was killed
    m_socket = makeSocket();
    if (m_socket >= 0 && ::bind(m_socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0 &&
        ::listen(m_socket, kWaiting) == 0)
        return;
    qmLog("a second program will get no answer: " + m_socketPath.toStdString() + ": " + std::strerror(errno));
    if (m_socket >= 0) ::close(std::exchange(m_socket, -1));
}

// Waits so long at most; less where nobody listens, or whoever did has ended.
bool OnlyProgram::isAnswered(int milliseconds) const {
    const int call = makeSocket();
    if (call < 0) return false;
    const sockaddr_un address = addressOf(m_socketPath);
    QByteArray token = qgetenv("XDG_ACTIVATION_TOKEN");
    token.replace(kEndOfToken, QByteArray());
    token.append(kEndOfToken);
    pollfd waited{call, POLLIN, 0};
    char heard = 0;
    const bool isAnswered =
        ::connect(call, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0 &&
        ::send(call, token.constData(), static_cast<std::size_t>(token.size()), kSendFlags) == token.size() &&
        ::poll(&waited, 1, milliseconds) == 1 && ::recv(call, &heard, 1, 0) == 1 && heard == kAnswer;
    ::close(call);
    return isAnswered;
}

void OnlyProgram::listen(std::function<void(const QByteArray& token)> comeToFront) {
    if (m_socket < 0) return;
    m_comeToFront = std::move(comeToFront);
    m_notifier = std::make_unique<QSocketNotifier>(m_socket, QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &OnlyProgram::acceptCalls);
}

void OnlyProgram::acceptCalls() {
    for (int call = ::accept(m_socket, nullptr, nullptr); call >= 0; call = ::accept(m_socket, nullptr, nullptr)) {
        ::fcntl(call, F_SETFD, FD_CLOEXEC);
        ::fcntl(call, F_SETFL, O_NONBLOCK);
        auto& notifier = m_calls[call] = std::make_unique<QSocketNotifier>(call, QSocketNotifier::Read);
        connect(notifier.get(), &QSocketNotifier::activated, this, [this, call] { hear(call); });
    }
}

// The token comes in one message; anything else gets no answer.
void OnlyProgram::hear(int call) {
    QByteArray token(kLongestToken, '\0');
    const auto length = ::recv(call, token.data(), kLongestToken, 0);
    if (length < 0 && (errno == EAGAIN || errno == EINTR)) return;
    token.truncate(std::max<qsizetype>(0, length));
    if (token.endsWith(kEndOfToken)) {
        token.chop(1);
        m_comeToFront(token);
        [[maybe_unused]] const auto sent = ::send(call, &kAnswer, 1, kSendFlags);
    }
    endCall(call);
}

void OnlyProgram::endCall(int call) {
    const auto found = m_calls.find(call);
    if (found == m_calls.end()) return;
    found->second->setEnabled(false);
    found->second.release()->deleteLater();  // deleted later, because this runs in its signal
    m_calls.erase(found);
    ::close(call);
}

#else

QString OnlyProgram::runtimeFolder() {
    return {};
}

OnlyProgram::OnlyProgram(const QString&, const QString&) {}

OnlyProgram::~OnlyProgram() = default;

void OnlyProgram::leave() {}

OnlyProgram::Start OnlyProgram::start() {
    return Start::First;
}

void OnlyProgram::listen(std::function<void(const QByteArray& token)>) {}

#endif

}  // namespace qm
