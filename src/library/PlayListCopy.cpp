#include "library/PlayListCopy.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>
#include <utility>

#include "app/state/KeptFile.h"
#include "app/state/WholeFile.h"
#include "engine/api/Log.h"
#include "library/PlayListFormat.h"

namespace qm {

namespace {

constexpr int kMilliseconds = 2000;          // between two looks at the list
constexpr int kMostWaitMilliseconds = 1000;  // for the disk, at the end
constexpr int kSecondsOfAWrite = 60;         // a half file that is older belongs to no one

void log(const QString& line) {
    qmLog(line.toUtf8().toStdString());
}

// --- on the other thread ---------------------------------------------------------------------------------------------

// What a program that was killed while it wrote has left behind.
void removeHalfFiles(const QString& copy) {
    QDir folder = QFileInfo(copy).dir();
    const QStringList names = {QStringLiteral("Quillmere.xml.??????"), QStringLiteral("Quillmere.unsaved.xml.??????")};
    for (const QFileInfo& file : folder.entryInfoList(names, QDir::Files | QDir::Hidden))
        if (file.lastModified().secsTo(QDateTime::currentDateTime()) > kSecondsOfAWrite) QFile::remove(file.filePath());
}

// Null if there is no copy.
PlayListCopy::Rows readCopy(const QString& path) {
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly)) return nullptr;
    auto rows = std::make_shared<PlayListArrays>();
    if (const auto damage = readPlayList(file.readAll(), *rows, Marks::Kept)) {
        log(QStringLiteral("the unsaved play list: %1: %2; %3 tracks read").arg(path, *damage).arg(rows->count()));
        keepAside(path, QStringLiteral("damaged"));
    }
    return rows;
}

// Empty, or what went wrong.
QString writeCopy(const QString& path, const PlayListArrays& rows) {
    QDir().mkpath(QFileInfo(path).path());
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly) && writePlayList(file, rows, Marks::Kept) && commitWhole(file)) return {};
    return file.errorString();
}

// A list that was offered and not taken is not lost. False if it lies under the copy's name only.
bool keepLeftCopy(const QString& path) {
    const QString kept = keepAside(path, QStringLiteral("not brought back"));
    log(QStringLiteral("the unsaved play list is kept as ") + (kept.isEmpty() ? path : kept));
    return !kept.isEmpty();
}

}  // namespace

PlayListCopy::PlayListCopy(const PlayListArrays& list, const PlayListFile& file, Notices& notices, BringBack bringBack)
    : m_list(list), m_file(file), m_notices(notices), m_bringBack(std::move(bringBack)) {
    m_disk.setMaxThreadCount(1);
    m_timer.setInterval(kMilliseconds);
    connect(&m_timer, &QTimer::timeout, this, &PlayListCopy::followList);
}

void PlayListCopy::start() {
    const QString path = this->path();
    if (path.isEmpty()) return;
    m_kept = std::make_shared<PlayListArrays>(m_file.rowsInFile());
    m_isBusy = true;
    m_disk.start([this, path] {
        removeHalfFiles(path);
        const Rows left = readCopy(path);
        QMetaObject::invokeMethod(
            this, [this, left] { offer(left); }, Qt::QueuedConnection);
    });
    m_timer.start();
}

// --- what was left ---------------------------------------------------------------------------------------------------

void PlayListCopy::offer(Rows left) {
    m_hasLooked = true;
    m_isBusy = false;
    if (!left) return;
    const int count = left->count();
    if (count == 0 || *left == m_file.rowsInFile()) return m_disk.start([path = path()] { QFile::remove(path); });
    m_left = {std::move(left)};
    const QString tracks = count == 1 ? tr("of one track") : tr("of %1 tracks").arg(count);
    log(QStringLiteral("the last session did not end properly; its list %1 can be brought back").arg(tracks));
    m_notices.tell({tr("Quillmere did not end properly; its last list %1 can be brought back").arg(tracks),
                    tr("Bring Back"), [this] { bringBack(); }, QStringLiteral("last list"), true});
}

void PlayListCopy::bringBack() {
    const Rows rows = std::exchange(m_left, {}).rows;
    if (!rows) return;
    m_notices.withdraw(QStringLiteral("last list"));
    m_bringBack(withNewTracks(*rows));
}

// Tracks that were added in this session stay, above the others.
PlayListArrays PlayListCopy::withNewTracks(const PlayListArrays& rows) const {
    const std::vector<QString>& before = m_file.rowsInFile().trackArray;
    QSet<QString> known(before.begin(), before.end());
    known.unite(QSet<QString>(rows.trackArray.begin(), rows.trackArray.end()));
    PlayListArrays all;
    for (int row = 0; row < m_list.count(); ++row)
        if (!known.contains(m_list.trackArray[static_cast<std::size_t>(row)]))
            all.insertEntry(all.count(), m_list.entry(row));
    all.replaceFrom(all.count(), rows);
    return all;
}

// --- the copy of this session ----------------------------------------------------------------------------------------

// The list's texts are shared with its copies, so taking one and comparing with one is quick, and another thread may
// write it while this one goes on changing the list.
void PlayListCopy::followList() {
    if (m_isBusy || (m_list == *m_kept && !m_hasFailed)) return;
    Rows before = std::exchange(m_kept, std::make_shared<PlayListArrays>(m_list));  // given back on the other thread
    m_isBusy = true;
    const QString notKept = tr("the list before it cannot be kept aside");
    m_disk.start([this, path = path(), rows = m_kept, keepLeft = holdsLeftOnly(), notKept, before = std::move(before)] {
        const QString error = keepLeft && !keepLeftCopy(path) ? notKept : writeCopy(path, *rows);
        QMetaObject::invokeMethod(
            this, [this, error] { written(error); }, Qt::QueuedConnection);
    });
}

void PlayListCopy::written(const QString& error) {
    m_isBusy = false;
    if (error.isEmpty()) m_left.isOnlyHere = false;
    const bool failedBefore = std::exchange(m_hasFailed, !error.isEmpty());
    if (failedBefore == m_hasFailed) return;
    const QString subject = QStringLiteral("copy of the play list");
    if (!m_hasFailed) return m_notices.withdraw(subject);
    log(QStringLiteral("the play list cannot be kept: %1: %2").arg(path(), error));
    m_notices.tell({tr("Changes of the play list cannot be kept: %1").arg(error), {}, {}, subject, true});
}

void PlayListCopy::finish(bool saved) {
    if (!m_hasLooked || !m_disk.waitForDone(kMostWaitMilliseconds)) return;
    if (saved) return takeAway();
    if (m_list == *m_kept && !m_hasFailed) return;
    if (holdsLeftOnly() && !keepLeftCopy(path())) return;
    const QString error = writeCopy(path(), m_list);
    if (!error.isEmpty()) log(QStringLiteral("the play list cannot be kept: %1: %2").arg(path(), error));
}

void PlayListCopy::takeAway() {
    if (holdsLeftOnly() && !keepLeftCopy(path())) return;
    m_left.isOnlyHere = false;
    m_kept = std::make_shared<PlayListArrays>(m_file.rowsInFile());
    QFile::remove(path());
}

}  // namespace qm
