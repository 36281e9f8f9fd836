// Tells in words what the keys of loop, speed, pitch and sound have done, for those whose eyes are on their hands or on
// nothing, also where nothing has changed by them, and why those of the loop have done nothing. Main thread only.
#pragma once

#include <QObject>
#include <QString>

#include "app/PlayerState.h"
#include "player/AbLoop.h"
#include "player/Notices.h"
#include "ui/ActionTable.h"
#include "ui/controls/Outlets.h"

namespace qm {

class SpokenDeeds : public QObject {
    Q_OBJECT

public:
    SpokenDeeds(ActionTable& actions, const PlayerState& state, const AbLoop& loop, const Outlets& outlets,
                Notices& notices);

private:
    void tell(ActionId id);
    QString wordsOf(ActionId id) const;  // empty for what needs none
    QString wordsOfTrack() const;
    QString wordsOfSound(ActionId id) const;
    QString wordsOfPosition(ActionId id) const;
    QString wordsOfLoop(ActionId id) const;
    QString wordsOfPassage() const;

    const PlayerState& m_state;
    const AbLoop& m_loop;
    const Outlets& m_outlets;
    Notices& m_notices;
};

}  // namespace qm
