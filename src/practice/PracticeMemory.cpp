#include "practice/PracticeMemory.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace qm {

void PracticeMemory::load(PracticeTrack track) {
    *this = PracticeMemory();
    m_track = std::move(track);
    m_record.sound = m_track.sound;
    m_record.scale = m_track.marked.scale;
    m_record.title = m_track.title;
    m_record.artist = m_track.artist;
    m_record.paths = {m_track.path};
}

void PracticeMemory::found(const PracticeRecord& record, std::int64_t now) {
    if (m_track.sound.isEmpty() || record.sound != m_track.sound) return;
    m_record = merged(m_record, record.inScale(m_record.scale), m_order, now);
    m_isKept = true;
    if (record.paths.value(0) != m_track.path) m_isUnsaved = true;
    if (!loop(m_inUse)) m_inUse.clear();
}

int PracticeMemory::adopt(const PracticeRecord& other, std::int64_t now) {
    if (m_track.sound.isEmpty()) return 0;
    const auto before = std::ssize(loops());
    const PracticeRecord converted = other.inScale(m_record.scale);
    for (const KeptLoop* kept : converted.keptLoops()) {
        KeptLoop copy = *kept;
        copy.id = freeLoopId(m_record.loops);
        copy.changed = now;
        if (copy.name.isEmpty()) copy.name = freeName();
        const auto all = loops();
        if (std::none_of(all.begin(), all.end(), [&](const KeptLoop* loop) { return hasSameSettings(*loop, copy); }))
            insert(std::move(copy));
    }
    return static_cast<int>(std::ssize(loops()) - before);
}

const KeptLoop* PracticeMemory::loop(const QString& id) const {
    for (const KeptLoop* loop : loops())
        if (loop->id == id) return loop;
    return nullptr;
}

KeptLoop* PracticeMemory::changeable(const QString& id, std::int64_t moment) {
    KeptLoop* loop = findLoop(m_record.loops, id);
    if (!loop) return nullptr;
    loop->changed = laterThan(loop->changed, moment);
    m_isUnsaved = true;
    return loop;
}

QString PracticeMemory::freeName() const {
    const auto kept = loops();
    for (qsizetype number = std::ssize(kept) + 1;; ++number) {
        const QString name = tr("Loop %1").arg(number);
        if (std::none_of(kept.begin(), kept.end(), [&](const KeptLoop* loop) { return loop->name == name; }))
            return name;
    }
}

void PracticeMemory::insert(KeptLoop loop) {
    if (std::ssize(loops()) >= PracticeRecord::kMostLoops) return;
    const QString id = loop.id;
    m_record.loops.push_back({.id = id, .loop = std::move(loop), .removed = 0, .stored = {}});
    m_isKept = m_isUnsaved = true;
}

PracticeMemory::Keeping PracticeMemory::keep(const LoopSettings& now, std::int64_t moment) {
    const MarkedTrack& track = m_track.marked;
    if (m_track.sound.isEmpty() || track.isAtRest(now.marks) || !track.holdsLoop(now.marks)) return {};
    KeptLoop fresh{
        .id = freeLoopId(m_record.loops), .name = freeName(), .speed = {}, .cents = {}, .bpm = {}, .changed = moment};
    putSettings(fresh, now);
    for (const KeptLoop* loop : loops())
        if (hasSameSettings(*loop, fresh)) return {Kept::AlreadyThere, loop->id};
    if (std::ssize(loops()) >= PracticeRecord::kMostLoops) return {Kept::Full, {}};
    m_inUse = fresh.id;
    insert(std::move(fresh));
    return {Kept::New, m_inUse};
}

bool PracticeMemory::update(const LoopSettings& now, std::int64_t moment) {
    const MarkedTrack& track = m_track.marked;
    const KeptLoop* used = loop(m_inUse);
    if (!used || track.isAtRest(now.marks) || !track.holdsLoop(now.marks)) return false;
    KeptLoop wanted = *used;
    putSettings(wanted, now);
    if (hasSameSettings(wanted, *used)) return false;
    putSettings(*changeable(m_inUse, moment), now);
    return true;
}

bool PracticeMemory::rename(const QString& id, const QString& name, std::int64_t moment) {
    const KeptLoop* former = loop(id);
    if (!former) return false;
    QString wanted = name.trimmed().left(PracticeRecord::kLongestName).trimmed();
    if (wanted.isEmpty()) wanted = freeName();
    if (wanted == former->name) return false;
    changeable(id, moment)->name = wanted;
    return true;
}

bool PracticeMemory::setTempo(const QString& id, double bpm, std::int64_t moment) {
    const KeptLoop* former = loop(id);
    if (!former || !(bpm >= 20 && bpm <= 400)) return false;
    const double rounded = std::round(bpm * 100) / 100;
    if (former->bpm == rounded) return false;
    changeable(id, moment)->bpm = rounded;
    return true;
}

bool PracticeMemory::move(const QString& id, int place) {
    if (!moveLoop(m_record.loops, id, place)) return false;
    m_order = LoopOrder::Ours;
    m_isUnsaved = true;
    return true;
}

bool PracticeMemory::remove(const QString& id, std::int64_t moment) {
    auto removed = removeLoop(m_record.loops, id, moment);
    if (!removed) return false;
    m_removed.push_back(std::move(*removed));
    if (m_inUse == id) m_inUse.clear();
    m_isUnsaved = true;
    return true;
}

bool PracticeMemory::undoRemoval(std::int64_t moment) {
    if (m_removed.empty()) return false;
    bringBackLoop(m_record.loops, std::move(m_removed.back()), moment);
    m_removed.pop_back();
    m_isUnsaved = true;
    return true;
}

std::optional<QString> PracticeMemory::removedName() const {
    return m_removed.empty() ? std::nullopt : std::optional(m_removed.back().loop.name);
}

const KeptLoop* PracticeMemory::choose(const QString& id) {
    const KeptLoop* chosen = loop(id);
    if (!chosen || !canBeChosen(*chosen)) return nullptr;
    m_inUse = id;
    return chosen;
}

const KeptLoop* PracticeMemory::chooseNeighbour(int step) {
    std::vector<const KeptLoop*> able = loops();
    std::erase_if(able, [&](const KeptLoop* loop) { return !canBeChosen(*loop); });
    if (able.empty()) return nullptr;
    const auto count = std::ssize(able);
    const auto here = std::find_if(able.begin(), able.end(), [&](const KeptLoop* l) { return l->id == m_inUse; });
    const auto next = here == able.end() ? 0 : (here - able.begin() + step % count + count) % count;
    return choose(able[static_cast<std::size_t>(next)]->id);
}

bool PracticeMemory::isChanged(const LoopSettings& now) const {
    const KeptLoop* used = loop(m_inUse);
    return used && isPlayedOtherwise(*used, now);
}

void PracticeMemory::stopAt(StoppedAt here, std::int64_t moment) {
    if (!m_isKept) return;
    if (const auto& former = m_record.last) {
        here.changed = laterThan(former->changed, moment);
        here.stored = former->stored;
    } else {
        here.changed = moment;
    }
    here.speed = keptSetting(here.speed);
    here.cents = keptSetting(here.cents);
    m_record.last = std::move(here);
    m_lastIsUnsaved = true;
}

const StoppedAt* PracticeMemory::whereYouStopped(std::int64_t position, double speed, double cents) const {
    const auto& last = m_record.last;
    if (!last) return nullptr;
    const bool isNear = std::abs(last->position - position) <= m_record.scale;
    return isNear && isSameSetting(last->speed, speed) && isSameSetting(last->cents, cents) ? nullptr : &*last;
}

std::optional<std::pair<PracticeRecord, LoopOrder>> PracticeMemory::takeUnsaved(bool withLast) {
    if (!m_isKept || !(m_isUnsaved || (withLast && m_lastIsUnsaved))) return std::nullopt;
    m_isUnsaved = m_lastIsUnsaved = false;
    return std::pair(m_record, std::exchange(m_order, LoopOrder::Theirs));
}

void PracticeMemory::notSaved(LoopOrder order) {
    m_isUnsaved = m_isKept;
    if (order == LoopOrder::Ours) m_order = order;
}

void PracticeMemory::saved(const PracticeRecord& asWritten, std::int64_t now) {
    if (asWritten.sound != m_track.sound) return;
    m_record = merged(m_record, asWritten.inScale(m_record.scale), m_order, now);
    if (!loop(m_inUse)) m_inUse.clear();
}

}  // namespace qm
