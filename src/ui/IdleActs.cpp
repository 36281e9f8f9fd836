#include "ui/IdleActs.h"

#include <QKeyEvent>

#include "player/OutletSetters.h"
#include "ui/controls/FadingWindow.h"

namespace qm {

namespace {

constexpr int kOneDragMilliseconds = 3000;
const QString kSubject = QStringLiteral("idle act");

}  // namespace

void tellListIsEmpty(Notices& notices, ActionTable& actions) {
    notices.tell({IdleActs::tr("The play list is empty: drop a file on it, or open one"), IdleActs::tr("Open…"),
                  [&actions] { actions.send(ActionId::openFile); }, kSubject});
}

IdleActs::IdleActs(ActionTable& actions, const PlayerState& state, const PlayListArrays& list, const Outlets& outlets,
                   Notices& notices)
    : m_actions(actions), m_state(state), m_list(list), m_outlets(outlets), m_notices(notices) {
    const auto before = [&actions](ActionId id, auto tell) {
        actions.setPreparation(id, [tell] {
            tell();
            return true;
        });
    };
    for (const ActionId id :
         {ActionId::goToStart, ActionId::skip1, ActionId::skip10, ActionId::skip30, ActionId::skip60, ActionId::skip300,
          ActionId::skipBack, ActionId::skip_10, ActionId::skip_60, ActionId::exportMovie})
        before(id, [this] { tellNoTrack(); });
    for (const ActionId id :
         {ActionId::removeListEntry, ActionId::selectTrack, ActionId::rowDoubleClicked, ActionId::displayInfo})
        before(id, [this] { tellNoRow(); });
    before(ActionId::pause, [this] {
        if (m_state.qtMovie && !m_state.isPlaying) m_notices.tell({tr("Nothing is playing"), {}, {}, kSubject});
        tellNoTrack();
    });
    before(ActionId::cueUpdate, [this] { answerPositionSlider(); });
    if (outlets.mainWindow) outlets.mainWindow->installEventFilter(this);
}

void IdleActs::tellNoTrack() {
    if (m_state.qtMovie) return;
    if (m_list.count() == 0) return tellListIsEmpty(m_notices, m_actions);
    m_notices.tell({tr("No track is loaded"), {}, {}, kSubject});
}

void IdleActs::tellNoRow() {
    if (selectedRow(m_outlets, m_list) >= 0) return;
    if (m_list.count() == 0) return tellListIsEmpty(m_notices, m_actions);
    m_notices.tell({tr("No track is selected"), {}, {}, kSubject});
}

void IdleActs::answerPositionSlider() {
    if (m_sliderAnswered.isValid() && !m_sliderAnswered.hasExpired(kOneDragMilliseconds)) return;
    m_sliderAnswered.start();
    const bool isLocked = m_state.qtMovie && m_state.isLooping && m_state.markBset;
    if (!isLocked) {
        if (m_state.qtMovie) m_sliderAnswered.invalidate();
        return tellNoTrack();
    }
    m_notices.tell({tr("The loop holds the position: switch it off to move freely"), tr("Loop Off"),
                    [this] { m_actions.send(ActionId::loopSwitch); }, kSubject});
}

bool IdleActs::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress) {
        const auto& key = *static_cast<QKeyEvent*>(event);
        const bool deletes = key.key() == Qt::Key_Delete || key.key() == Qt::Key_Backspace;
        if (deletes && key.modifiers() == Qt::NoModifier && !key.isAutoRepeat()) tellWhereDelWorks();
    }
    return QObject::eventFilter(watched, event);
}

void IdleActs::tellWhereDelWorks() {
    m_notices.tell({tr("Del removes a track when the play list has the keyboard"), tr("Go to the List"),
                    [this] { m_outlets.playList->setFocus(Qt::ShortcutFocusReason); }, kSubject});
}

}  // namespace qm
