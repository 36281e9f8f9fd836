// Sees to it that no finished recording is lost: one that stands where the next is to be written is set aside, one that
// cannot be moved to where the user wants it stays, and those that were left in the support folder, where nobody looks,
// are offered. Each is told. Main thread only.
#pragma once

#include <QString>
#include <QStringList>
#include <functional>

#include "player/Notices.h"
#include "record/RecordedFile.h"
#include "ui/controls/Outlets.h"

namespace qm {

class Takes {
public:
    Takes(Notices& notices, const MainWindowOutlet& outlets);

    // Before a recording to `path` begins. False when a file stands there that cannot be set aside: then nothing may be
    // recorded, or it would be lost.
    bool makeRoom(const QString& path);

    // Moves a finished recording to where the user wants it. False when it stays where it is.
    bool keep(const QString& take, const QString& wanted);

    // Looks for recordings in the support folder, on another thread, and offers them one after the other.
    void offerLeft();

    // A recording that is being made is no finished one.
    void setIsBeingMade(std::function<bool(const QString& path)> isBeingMade) {
        m_isBeingMade = std::move(isBeingMade);
    }
    void setRunPanel(RunSavePanel run) { m_runPanel = std::move(run); }

private:
    QStringList finished(QStringList takes) const;
    void offer(const QString& text);
    void offerThese(const QStringList& left);
    void keepNextLeft();

    Notices& m_notices;
    const MainWindowOutlet& m_outlets;
    RunSavePanel m_runPanel;
    std::function<bool(const QString& path)> m_isBeingMade = [](const QString&) { return false; };
};

}  // namespace qm
