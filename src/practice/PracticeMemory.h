// The loops of the track that is loaded, as long as it is: which there are, in which order, which one is in use, and
// where the track was left. Knows neither window nor disk: it is given what was found in the file, and says what is to
// be written. Main thread only. Moments are milliseconds since 1970 in UTC, given by whoever calls.
#pragma once

#include <QCoreApplication>
#include <QString>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "practice/LoopEntries.h"
#include "practice/LoopSettings.h"
#include "practice/PracticeMerge.h"

namespace qm {

struct PracticeTrack {
    QString sound;  // the engine's identity of it; empty: nothing can be kept
    QString path;
    QString title;
    QString artist;
    MarkedTrack marked;  // its length and scale
};

class PracticeMemory {
    Q_DECLARE_TR_FUNCTIONS(qm::PracticeMemory)

public:
    enum class Kept {
        New,
        AlreadyThere,  // with the same marks, speed and pitch
        Nothing,       // no track, or the marks hold no loop
        Full,
    };
    struct Keeping {
        Kept outcome = Kept::Nothing;
        QString id;  // of the loop that was kept, or was there
    };

    void load(PracticeTrack track);  // another track, or none: nothing of the former one is left
    const PracticeTrack& track() const { return m_track; }

    // What stands in the file, now or anew; what was done in the meantime stays.
    void found(const PracticeRecord& record, std::int64_t now);

    // Loops of another version of the file, or from a text, kept for this track as well. Answers how many are new.
    int adopt(const PracticeRecord& other, std::int64_t now);

    std::vector<const KeptLoop*> loops() const { return m_record.keptLoops(); }  // in the list's order
    const KeptLoop* loop(const QString& id) const;
    bool canBeChosen(const KeptLoop& loop) const { return loop.fits(m_track.marked.length); }

    Keeping keep(const LoopSettings& now, std::int64_t moment);  // and it is in use
    bool update(const LoopSettings& now, std::int64_t moment);   // the one in use
    bool rename(const QString& id, const QString& name, std::int64_t moment);
    bool setTempo(const QString& id, double bpm, std::int64_t moment);
    bool move(const QString& id, int place);  // in the list; clamped
    bool remove(const QString& id, std::int64_t moment);
    bool undoRemoval(std::int64_t moment);       // of the newest one, until the track changes
    std::optional<QString> removedName() const;  // that undoRemoval() would bring back

    // Puts a loop in use: its marks, speed and pitch are for the caller to set. Null: it cannot be chosen.
    const KeptLoop* choose(const QString& id);
    const KeptLoop* chooseNeighbour(int step);  // 1 the next, -1 the previous that can be chosen, round the end
    void release() { m_inUse.clear(); }         // the marks are reset
    const QString& inUse() const { return m_inUse; }
    bool isChanged(const LoopSettings& now) const;  // the loop in use is played otherwise than it was kept

    // Where the track was left. Noted only once something is kept of it.
    void stopAt(StoppedAt here, std::int64_t moment);
    const StoppedAt* whereYouStopped(std::int64_t position, double speed, double cents) const;  // null: it is here

    bool isUnsaved() const { return m_isKept && m_isUnsaved; }  // more than where the track was left

    // What is to be written, once; none: nothing has changed. `withLast` also where only `last` did.
    std::optional<std::pair<PracticeRecord, LoopOrder>> takeUnsaved(bool withLast);
    void notSaved(LoopOrder order);  // what was taken could not be written: it is unsaved still
    void saved(const PracticeRecord& asWritten, std::int64_t now);

    const PracticeRecord& record() const { return m_record; }

private:
    KeptLoop* changeable(const QString& id, std::int64_t moment);
    QString freeName() const;
    void insert(KeptLoop loop);

    PracticeTrack m_track;
    PracticeRecord m_record;
    bool m_isKept = false;  // there is a record, or will be
    bool m_isUnsaved = false;
    bool m_lastIsUnsaved = false;
    LoopOrder m_order = LoopOrder::Theirs;  // Ours: the order was changed here
    QString m_inUse;
    std::vector<RemovedLoop> m_removed;
};

}  // namespace qm
