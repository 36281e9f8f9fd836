#include "library/PlayListFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <utility>

#include "engine/api/Log.h"
#include "library/PlayListFormat.h"
#include "library/SupportFolder.h"
#include "ui/controls/PlayListView.h"

namespace qm {

namespace {

constexpr qint64 kLargestFile = qint64(512) << 20;  // a million tracks; more is no play list

void log(const QString& line) {
    qmLog(line.toUtf8().toStdString());
}

}  // namespace

PlayListFile::PlayListFile(PlayListArrays& list, const Outlets& outlets, std::function<QString()> home)
    : m_list(list), m_outlets(outlets), m_home(home ? std::move(home) : homeFolder) {}

QString PlayListFile::path() const {
    const QString home = m_home();
    return home.isEmpty() ? QString() : home + kSupportFolder + QStringLiteral("/Quillmere.xml");
}

void PlayListFile::loadPlayList() {
    const QString file = path();
    if (file.isEmpty() || !QFileInfo::exists(file)) return;
    m_fileIsDamaged = !readFile(file);
    if (m_outlets.playList) m_outlets.playList->reloadData();
}

// False if the file holds, or may hold, something that did not reach the list.
bool PlayListFile::readFile(const QString& path) {
    const auto damaged = [&path](const QString& why) {
        log(QStringLiteral("loadPlayList: %1: %2").arg(path, why));
        return false;
    };
    QFile file(path);
    if (!QFileInfo(path).isFile()) return damaged(QStringLiteral("not a file"));
    if (!file.open(QIODevice::ReadOnly)) return damaged(file.errorString());
    if (file.size() > kLargestFile) return damaged(QStringLiteral("too large"));
    const int before = m_list.count();
    const auto damage = readPlayList(file.readAll(), m_list);
    if (!damage) return true;
    return damaged(QStringLiteral("%1; %2 tracks read").arg(*damage).arg(m_list.count() - before));
}

void PlayListFile::savePlayList() {
    const QString file = path();
    if (file.isEmpty()) return;
    QDir().mkpath(m_home() + kSupportFolder);
    writeFile(file);
}

void PlayListFile::writeFile(const QString& path) {
    const QString original = m_fileIsDamaged ? QFileInfo(path).canonicalFilePath() : QString();
    QString kept;
    if (!original.isEmpty()) {
        kept = keepDamagedFile(original);
        if (kept.isEmpty()) {
            log(QStringLiteral("savePlayList: %1: cannot be kept aside, so it stays as it is").arg(path));
            return;
        }
    }
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly) && writePlayList(file, m_list) && file.commit()) {
        m_fileIsDamaged = false;
        return;
    }
    log(QStringLiteral("savePlayList: %1: %2").arg(path, file.errorString()));
    if (!kept.isEmpty()) QFile::rename(kept, original);
}

// Moves the file to a free name beside it; the new name, or nothing if that fails.
QString PlayListFile::keepDamagedFile(const QString& path) const {
    const QFileInfo file(path);
    for (int i = 1; i < 1000; ++i) {
        const QString number = i == 1 ? QString() : QStringLiteral(" %1").arg(i);
        const QString kept = file.path() + u'/' + file.completeBaseName() + QStringLiteral(" (damaged%1)").arg(number) +
                             u'.' + file.suffix();
        if (QFileInfo::exists(kept) || QFileInfo(kept).isSymLink()) continue;
        return QFile::rename(path, kept) ? kept : QString();
    }
    return {};
}

}  // namespace qm
