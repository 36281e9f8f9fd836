// The acts of the user that can be taken back, the newest first: by Undo in the menu, or by the button of the notice
// that says what was done. A subject adds an act after it has done it. New tracks come on top of the play list and are
// no acts, so a row is found again by how many rows lie below it. Main thread only. Undo without an act does nothing.
#pragma once

#include <QObject>
#include <QString>
#include <deque>
#include <functional>

#include "app/state/Notices.h"

namespace qm {

class UndoHistory : public QObject {
    Q_OBJECT

public:
    struct Act {
        QString name;                // as the menu has it after "Undo"
        std::function<void()> undo;  // called at most once, after all newer acts have been undone
        QString done = {};           // told now, with a button that undoes it; empty: nothing is told
        QString undone = {};         // told when it has been undone
    };

    explicit UndoHistory(Notices& notices) : m_notices(notices) {}

    void add(Act act);
    void undo();
    QString newestName() const { return m_acts.empty() ? QString() : m_acts.back().name; }  // empty: nothing to undo

signals:
    void changed();

private:
    void tell(const QString& text, const QString& button, std::function<void()> act);

    Notices& m_notices;
    std::deque<Act> m_acts;
    int m_changes = 0;  // acts added and undone: what a notice was told for is the newest while this stands still
};

}  // namespace qm
