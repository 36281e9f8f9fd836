#include "practice/PracticeSaver.h"

#include <QDateTime>
#include <utility>

#include "engine/api/Log.h"

namespace qm {

namespace {

constexpr int kMilliseconds = 500;                 // from a change until it is written
constexpr std::int64_t kPlaceMilliseconds = 5000;  // between two writes of where the track was left
constexpr int kMostWaitMilliseconds = 1000;        // for the disk, at the end

}  // namespace

std::int64_t PracticeSaver::systemClock() {
    return QDateTime::currentMSecsSinceEpoch();
}

PracticeSaver::PracticeSaver(PracticeMemory& memory, PracticeFolder folder, Clock clock)
    : m_memory(memory), m_folder(std::move(folder)), m_now(std::move(clock)) {
    m_disk.setMaxThreadCount(1);
    m_timer.setSingleShot(true);
    m_timer.setInterval(kMilliseconds);
    connect(&m_timer, &QTimer::timeout, this, &PracticeSaver::save);
}

void PracticeSaver::load(PracticeTrack track) {
    save();
    m_memory.load(std::move(track));
    m_placeSaved = 0;
    m_hasComplained = false;
    readAgain();
}

void PracticeSaver::change() {
    m_timer.start();
}

void PracticeSaver::pauseAt(StoppedAt here) {
    const std::int64_t now = m_now();
    m_memory.stopAt(std::move(here), now);
    if (now - m_placeSaved >= kPlaceMilliseconds) save();
}

void PracticeSaver::readAgain() {
    const QString sound = m_memory.track().sound;
    if (sound.isEmpty()) return;
    m_disk.start([this, folder = m_folder, sound] {
        const auto read = folder.record(sound);
        if (!read) return;
        QMetaObject::invokeMethod(
            this,
            [this, read = *read] {
                if (read.record.sound != m_memory.track().sound) return;
                m_memory.found(read.record, m_now());
                if (m_memory.isUnsaved()) change();
                const bool isNew = !read.damage.isEmpty() && !std::exchange(m_hasComplained, true);
                if (isNew) qmLog("practice: " + read.damage.toStdString());
                emit found(isNew ? read.complaint() : QString());
            },
            Qt::QueuedConnection);
    });
}

void PracticeSaver::askForFormer() {
    const PracticeTrack& track = m_memory.track();
    if (track.sound.isEmpty()) return;
    m_disk.start([this, folder = m_folder, path = track.path, sound = track.sound] {
        const auto former = folder.formerRecord(path, sound);
        if (!former) return;
        QMetaObject::invokeMethod(
            this,
            [this, former = *former, sound] {
                if (sound == m_memory.track().sound && m_memory.loops().empty()) emit foundFormer(former);
            },
            Qt::QueuedConnection);
    });
}

void PracticeSaver::save() {
    m_timer.stop();
    for (const Unsaved& left : std::exchange(m_left, {})) write(left);
    auto unsaved = m_memory.takeUnsaved(true);
    if (!unsaved) return;
    m_placeSaved = m_now();
    write({std::move(unsaved->first), unsaved->second});
}

void PracticeSaver::write(const Unsaved& unsaved) {
    m_disk.start([this, folder = m_folder, unsaved, now = m_now()] {
        const auto saved = folder.save(unsaved.record, unsaved.order, now);
        QMetaObject::invokeMethod(
            this, [this, saved, order = unsaved.order] { written(saved, order); }, Qt::QueuedConnection);
    });
}

void PracticeSaver::written(const PracticeFolder::Saved& saved, LoopOrder order) {
    const bool isLoaded = saved.record.sound == m_memory.track().sound;
    if (saved.outcome == JsonStore::Outcome::Written) {
        if (isLoaded) {
            m_memory.saved(saved.record, m_now());
            emit found({});
        }
    } else if (isLoaded) {
        m_memory.notSaved(order);
    } else {
        m_left.push_back({saved.record, order});
    }
    if (saved.outcome == JsonStore::Outcome::Busy) return;
    const bool fails = saved.outcome == JsonStore::Outcome::Unwritable;
    if (std::exchange(m_hasFailed, fails) == fails) return;
    if (!fails) return emit savesAgain();
    qmLog("practice: loops cannot be saved: " + saved.reason.toStdString());
    emit cannotSave();
}

void PracticeSaver::finish() {
    save();
    m_disk.waitForDone(kMostWaitMilliseconds);
}

}  // namespace qm
