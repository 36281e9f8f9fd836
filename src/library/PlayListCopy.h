// A copy of the play list beside its file, for an end that is no quit: written soon after each change, whole or not at
// all, and taken away when the list has been saved. A copy that is found at the start is what the last session could
// not save; the user is offered to bring it back. Main thread only; the disk is read and written on a thread of its
// own. What cannot be written is told and logged once, and tried again.
#pragma once

#include <QObject>
#include <QThreadPool>
#include <QTimer>
#include <functional>
#include <memory>

#include "app/state/Notices.h"
#include "app/state/PlayListArrays.h"
#include "library/PlayListFile.h"

namespace qm {

class PlayListCopy : public QObject {
    Q_OBJECT

public:
    using Rows = std::shared_ptr<const PlayListArrays>;
    using BringBack = std::function<void(const PlayListArrays& rows)>;

    PlayListCopy(const PlayListArrays& list, const PlayListFile& file, Notices& notices, BringBack bringBack);

    void start();             // looks for what was left, and follows the list from now on
    void finish(bool saved);  // the program ends, the list saved in its file or not

    QString path() const { return m_file.pathBeside(QStringLiteral("unsaved")); }  // of the copy

private:
    struct Left {
        Rows rows;               // null if there was no copy
        bool isOnlyHere = true;  // under the copy's name and no other
    };

    void offer(Rows left);
    void bringBack();
    PlayListArrays withNewTracks(const PlayListArrays& rows) const;
    void followList();
    void written(const QString& error);
    void takeAway();
    bool holdsLeftOnly() const { return m_left.rows && m_left.isOnlyHere; }

    const PlayListArrays& m_list;
    const PlayListFile& m_file;
    Notices& m_notices;
    BringBack m_bringBack;
    QTimer m_timer{this};
    Rows m_kept;  // what is on the disk, or on its way there
    Left m_left;
    bool m_hasLooked = false;  // for what was left
    bool m_isBusy = false;     // the other thread has something to do
    bool m_hasFailed = false;
    QThreadPool m_disk{this};  // of one thread; the last member, so that it is waited for first
};

}  // namespace qm
