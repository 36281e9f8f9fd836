#include "practice/JsonStore.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QThread>
#include <cerrno>
#include <cstring>

#include "app/state/KeptFile.h"
#include "app/state/WholeFile.h"
#include "practice/JsonText.h"

namespace qm {

namespace {

constexpr int kMostWaitMilliseconds = 200;  // for the lock
constexpr int kPauseMilliseconds = 5;

// Held by the system for as long as the program lives, so that a program that was killed leaves none behind.
class FolderLock {
public:
    explicit FolderLock(const QString& path)
        : m_file(::open(QFile::encodeName(path).constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW,
                        S_IRUSR | S_IWUSR)) {
        const QDeadlineTimer deadline(kMostWaitMilliseconds);
        if (m_file < 0) return;
        while (::flock(m_file, LOCK_EX | LOCK_NB) != 0) {
            m_isBusy = errno == EWOULDBLOCK || errno == EINTR;
            if (!m_isBusy || deadline.hasExpired()) return;  // where locks cannot be had at all it goes without
            QThread::msleep(kPauseMilliseconds);
        }
        m_isBusy = false;
    }
    ~FolderLock() {
        if (m_file >= 0) ::close(m_file);
    }
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;

    bool isMade() const { return m_file >= 0; }
    bool isBusy() const { return m_isBusy; }

private:
    const int m_file;
    bool m_isBusy = false;
};

// Null: there is no such file. Empty: it cannot be read, or is too large.
QByteArray textOf(const QString& path) {
    QFile file(path);
    if (!QFileInfo(path).isFile()) return QByteArray();
    if (file.size() > JsonStore::kMostBytes || !file.open(QIODevice::ReadOnly)) return QByteArray("");
    const QByteArray text = file.read(JsonStore::kMostBytes + 1);
    return text.isNull() ? QByteArray("") : text;
}

// What a program that was killed while it wrote has left behind. Nobody else writes while the lock is held.
void removeHalfFiles(const QString& folder, const QString& name) {
    for (const QString& half : QDir(folder).entryList({name + QStringLiteral(".??????")}, QDir::Files | QDir::Hidden))
        QFile::remove(folder + u'/' + half);
}

}  // namespace

QString JsonStore::lastGoodPath(const QString& name) const {
    return m_folder + QStringLiteral("/last good/") + name;
}

JsonStore::Read JsonStore::read(const QString& name) const {
    if (m_folder.isEmpty()) return {};
    const QByteArray text = textOf(path(name));
    if (auto object = objectOf(text)) return {std::move(object), {}};
    auto lastGood = objectOf(textOf(lastGoodPath(name)));
    const QString instead = lastGood ? QStringLiteral("the last good one is used") : QStringLiteral("nothing is left");
    if (text.isNull()) return {lastGood, lastGood ? path(name) + QStringLiteral(": is gone; ") + instead : QString()};
    const QString kept = keepAside(path(name), QStringLiteral("damaged"));
    QString damage = path(name) + QStringLiteral(": cannot be read; ") + instead;
    if (!kept.isEmpty()) damage += QStringLiteral("; kept as ") + kept;
    return {std::move(lastGood), damage};
}

JsonStore::Write JsonStore::write(const QString& name, const Change& change) const {
    if (m_folder.isEmpty()) return {Outcome::Unwritable, QStringLiteral("there is no home folder"), {}};
    if (!QDir().mkpath(m_folder)) return {Outcome::Unwritable, m_folder + QStringLiteral(": cannot be made"), {}};
    const FolderLock lock(path(QStringLiteral(".lock")));
    if (!lock.isMade())
        return {
            Outcome::Unwritable, m_folder + QStringLiteral(": ") + QString::fromLocal8Bit(std::strerror(errno)), {}};
    if (lock.isBusy()) return {Outcome::Busy, m_folder + QStringLiteral(": another program writes"), {}};
    const Read stands = read(name);
    const auto object = change(stands.object);
    if (!object) return {Outcome::Written, {}, stands.damage};
    const QByteArray text = jsonText(*object);
    if (text.size() > kMostBytes)
        return {Outcome::Unwritable, path(name) + QStringLiteral(": would be too large"), stands.damage};
    removeHalfFiles(m_folder, name);
    const QString error = replace(name, text, stands.object && stands.damage.isEmpty());
    return {error.isEmpty() ? Outcome::Written : Outcome::Unwritable, error, stands.damage};
}

// Empty, or what went wrong.
QString JsonStore::replace(const QString& name, const QByteArray& text, bool keepFormer) const {
    const QString file = path(name);
    if (textOf(file) == text) return {};
    if (keepFormer) {
        QDir().mkpath(QFileInfo(lastGoodPath(name)).path());
        if (!keepAs(file, lastGoodPath(name))) return lastGoodPath(name) + QStringLiteral(": cannot be written");
    }
    QSaveFile fresh(file);
    if (fresh.open(QIODevice::WriteOnly) && fresh.write(text) == text.size() && commitWhole(fresh)) return {};
    return file + QStringLiteral(": ") + fresh.errorString();
}

}  // namespace qm
