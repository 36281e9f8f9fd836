#include "library/PlayListFile.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <utility>

#include "engine/api/Log.h"
#include "library/KeptFile.h"
#include "library/PlayListFormat.h"
#include "library/SupportFolder.h"
#include "library/WholeFile.h"
#include "ui/controls/PlayListView.h"

namespace qm {

namespace {

constexpr qint64 kLargestFile = qint64(512) << 20;  // a million tracks; more is no play list

void log(const QString& line) {
    qmLog(line.toUtf8().toStdString());
}

QString tr(const char* text) {
    return QCoreApplication::translate("qm::PlayListFile", text);
}

}  // namespace

PlayListFile::PlayListFile(PlayListArrays& list, const PlayListOutlet& outlets, Notices& notices,
                           std::function<QString()> home)
    : m_list(list), m_outlets(outlets), m_notices(notices), m_home(home ? std::move(home) : homeFolder) {}

QString PlayListFile::path() const {
    const QString home = m_home();
    return home.isEmpty() ? QString() : home + kSupportFolder + QStringLiteral("/Quillmere.xml");
}

QString PlayListFile::pathBeside(const QString& word) const {
    const QString home = m_home();
    return home.isEmpty() ? QString() : home + kSupportFolder + QStringLiteral("/Quillmere.%1.xml").arg(word);
}

void PlayListFile::loadPlayList() {
    const QString file = path();
    if (file.isEmpty() || !QFileInfo::exists(file)) return;
    m_fileIsDamaged = !readFile(file);
    m_rowsInFile = m_list;
    if (m_fileIsDamaged) {
        const QFileInfo original(QFileInfo(file).canonicalFilePath());
        if (original.isFile()) m_keptFile = keepAside(original.filePath(), QStringLiteral("damaged"));
        tellDamage();
    }
    if (m_outlets.playList) m_outlets.playList->reloadData();
}

void PlayListFile::tellDamage() const {
    const int read = m_rowsInFile.count();
    const QString what = read == 0   ? tr("The play list is damaged, and nothing of it could be read")
                         : read == 1 ? tr("The play list is damaged: only its first track could be read")
                                     : tr("The play list is damaged: only its first %1 tracks could be read").arg(read);
    const QString where = tr("; the file is kept as %1").arg(QFileInfo(m_keptFile).fileName());
    m_notices.tell({m_keptFile.isEmpty() ? what : what + where, {}, {}, QStringLiteral("damaged play list"), true});
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

bool PlayListFile::savePlayList() {
    const QString file = path();
    if (file.isEmpty()) return false;
    QDir().mkpath(m_home() + kSupportFolder);
    return writeFile(file);
}

// At each moment a whole list lies under the file's name, the former one or the new one.
bool PlayListFile::writeFile(const QString& path) {
    const QString original = QFileInfo(path).canonicalFilePath();  // empty if there is none
    if (m_fileIsDamaged && m_keptFile.isEmpty() && !original.isEmpty()) {
        m_keptFile = keepAside(original, QStringLiteral("damaged"));
        if (m_keptFile.isEmpty()) return failed(tr("the damaged file cannot be kept aside, so it stays as it is"));
    }
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || !writePlayList(file, m_list)) return failed(file.errorString());
    const bool isGood = !m_fileIsDamaged && QFileInfo(original).isFile();
    if (isGood && !m_list.isSameButMarks(m_rowsInFile) && !keepAs(original, pathBeside(QStringLiteral("previous"))))
        log(QStringLiteral("savePlayList: the list that is replaced cannot be kept"));
    if (!commitWhole(file)) return failed(file.errorString());
    m_fileIsDamaged = false;
    m_keptFile.clear();
    m_rowsInFile = m_list;
    return true;
}

bool PlayListFile::failed(const QString& why) {
    log(QStringLiteral("savePlayList: %1: %2").arg(path(), why));
    m_notices.tell({tr("The play list could not be saved: %1").arg(why), {}, {}, QStringLiteral("save"), true});
    return false;
}

}  // namespace qm
