// Brings the practice memory of the loaded track from the disk and back, on a thread of its own, so that nobody waits
// for it. Written half a second after a change, before another track, at the end, and on pause, where the track was
// left at most every five seconds. Main thread only. What cannot be written is told and logged once, and tried again
// with the next change.
#pragma once

#include <QObject>
#include <QThreadPool>
#include <QTimer>
#include <functional>
#include <vector>

#include "practice/PracticeFolder.h"
#include "practice/PracticeMemory.h"

namespace qm {

class PracticeSaver : public QObject {
    Q_OBJECT

public:
    using Clock = std::function<std::int64_t()>;  // milliseconds since 1970 in UTC
    static std::int64_t systemClock();

    PracticeSaver(PracticeMemory& memory, PracticeFolder folder, Clock clock = systemClock);

    // Another track, or none; the former one is saved first. What is kept of it comes in with found().
    void load(PracticeTrack track);

    void change();                 // of the memory
    void pauseAt(StoppedAt here);  // the track stands still, here
    void readAgain();              // another program may have written
    void askForFormer();           // whether another sound was kept under this path; answered by foundFormer()
    void finish();                 // the program ends; waits a second at most

signals:
    void found(const QString& complaint);  // the memory has what the file has; what could not be read of it, once
    void foundFormer(const PracticeRecord& former);
    void cannotSave();  // from now on
    void savesAgain();

private:
    struct Unsaved {
        PracticeRecord record;
        LoopOrder order;
    };

    void save();
    void write(const Unsaved& unsaved);
    void written(const PracticeFolder::Saved& saved, LoopOrder order);

    PracticeMemory& m_memory;
    const PracticeFolder m_folder;
    const Clock m_now;
    QTimer m_timer{this};
    std::vector<Unsaved> m_left;  // of former tracks, that could not be written
    std::int64_t m_placeSaved = 0;
    bool m_hasComplained = false;  // of this track's file
    bool m_hasFailed = false;
    QThreadPool m_disk{this};  // of one thread; the last member, so that it is waited for first
};

}  // namespace qm
