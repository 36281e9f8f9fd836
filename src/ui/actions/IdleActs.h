// Why an act comes to nothing: no track is loaded, none is selected, the list is empty. It is told before the action is
// sent, which stays as it is and does nothing. Main thread only.
#pragma once

#include <QElapsedTimer>
#include <QObject>

#include "app/state/Notices.h"
#include "app/state/Outlets.h"
#include "app/state/PlayListArrays.h"
#include "app/state/PlayerState.h"
#include "ui/actions/ActionTable.h"

namespace qm {

// With a button that asks for files.
void tellListIsEmpty(Notices& notices, ActionTable& actions);

class IdleActs : public QObject {
    Q_OBJECT

public:
    IdleActs(ActionTable& actions, const PlayerState& state, const PlayListArrays& list, const Outlets& outlets,
             Notices& notices);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;  // keys that nobody in the window has taken

private:
    void answerPositionSlider();
    void tellNoTrack();
    void tellNoRow();
    void tellWhereDelWorks();

    ActionTable& m_actions;
    const PlayerState& m_state;
    const PlayListArrays& m_list;
    const Outlets& m_outlets;
    Notices& m_notices;
    QElapsedTimer m_sliderAnswered;  // a drag sends its action again and again
};

}  // namespace qm
