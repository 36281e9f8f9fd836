#include "ui/PlayerKeys.h"

#include <QFileInfo>
#include <utility>

#include "player/OutletSetters.h"
#include "ui/IdleActs.h"

namespace qm {

namespace {

constexpr double kRestGain = 0.5;
const QString kOpening = QStringLiteral("opening a track");  // what notices are about

}  // namespace

PlayerKeys::PlayerKeys(PlayerState& state, const PlayListArrays& list, const Outlets& outlets, ActionTable& actions,
                       PositionClock& clock, TrackLoader& loader, TrackInfo& info, Notices& notices)
    : m_state(state),
      m_list(list),
      m_outlets(outlets),
      m_actions(actions),
      m_clock(clock),
      m_loader(loader),
      m_info(info),
      m_notices(notices),
      m_loaded(state, list, outlets) {
    actions.setReceiver(ActionId::silence, *this, &PlayerKeys::silence);
    actions.setReceiver(ActionId::resetGain, *this, &PlayerKeys::resetGain);
    actions.setReceiver(ActionId::resetSound, *this, &PlayerKeys::resetSound);
    for (const ActionId id : {ActionId::toggleStartStop, ActionId::playForward})
        actions.setPreparation(id, [this] { return preparePlay(Direction::Forward); });
    actions.setPreparation(ActionId::playBackward, [this] { return preparePlay(Direction::Backward); });
    connect(&actions, &ActionTable::sent, this, &PlayerKeys::follow);
    connect(&loader.queue(), &FileQueue::ended, this, &PlayerKeys::follow);
    if (!outlets.playList) return;
    connect(outlets.playList, &PlayListView::filesTaken, this, &PlayerKeys::follow);
    // Queued, because the row's own action is connected later.
    connect(outlets.playList, &PlayListView::rowActivated, this, &PlayerKeys::follow, Qt::QueuedConnection);
}

// False when that has been play itself.
bool PlayerKeys::preparePlay(Direction direction) {
    const bool pauses = direction == Direction::Forward && m_state.isPlaying && m_state.qtMovie;
    if (m_loader.isLoading())
        m_notices.tell({tr("%1 is being opened").arg(QFileInfo(m_state.loadedPath).fileName()), {}, {}, kOpening});
    else if (!pauses)
        selectWhatToPlay();
    return !playSelectedRow(direction);
}

// The loaded track's row, which is played on from where it is, or the first row when nothing is loaded.
void PlayerKeys::selectWhatToPlay() {
    if (!m_outlets.playList || selectedRow(m_outlets, m_list) >= 0) return;
    if (m_list.count() == 0) return tellListIsEmpty(m_notices, m_actions);
    const int row = m_state.qtMovie ? m_loaded.row() : 0;
    if (row < 0) return m_notices.tell(tr("The track is not in the play list any more: select another one"));
    m_outlets.playList->selectRowIndex(row);
    if (m_state.qtMovie) m_state.mostRecentlySelected = row;
}

// Without a track, play does what Return does on the selected row, also when that row could not be opened before.
bool PlayerKeys::playSelectedRow(Direction direction) {
    if (m_state.qtMovie || m_loader.isLoading() || selectedRow(m_outlets, m_list) < 0) return false;
    const bool turns = direction == Direction::Forward ? m_state.rate < 0 : m_state.rate > 0;
    if (turns && m_outlets.speedSlider) m_outlets.speedSlider->moveByUser(-m_state.rate);
    m_actions.send(ActionId::rowDoubleClicked);
    return true;
}

void PlayerKeys::silence() {
    if (!m_outlets.gainSlider) return;
    const double gain = m_outlets.gainSlider->value();
    const auto silenced = std::exchange(m_silenced, std::nullopt);
    m_outlets.gainSlider->moveByUser(gain > 0 ? 0 : silenced.value_or(kRestGain));
    if (gain > 0) m_silenced = gain;
}

void PlayerKeys::resetGain() {
    if (m_outlets.gainSlider) m_outlets.gainSlider->moveByUser(kRestGain);
}

void PlayerKeys::resetSound() {
    resetGain();
    m_actions.send(ActionId::resetAudio);
}

// After everything that may have loaded a track, set it going or changed the gain.
void PlayerKeys::follow() {
    if (m_outlets.gainSlider && m_outlets.gainSlider->value() > 0) m_silenced.reset();
    if (m_loader.isLoading() || m_loader.queue().isBusy()) return;
    tellFailures();
    if (m_state.qtMovie && m_state.isPlaying) m_clock.wake();
    const Movie movie = m_state.qtMovie ? m_state.quickTimeMovie : 0;
    if (std::exchange(m_described, movie) == movie) return;
    m_info.movieMetaData();
    if (movie != 0) m_notices.withdraw(kOpening);
}

// The loader itself tells of those that do not answer and of those that are too long.
void PlayerKeys::tellFailures() {
    if (std::exchange(m_failuresTold, m_loader.failures()) == m_loader.failures() || m_state.qtMovie) return;
    const auto& [path, error] = *m_loader.lastFailure();
    if (error.category == ErrorCategory::NoAnswer || error.category == ErrorCategory::TooLong) return;
    Notice notice{failureWords(path, error), {}, {}, kOpening};
    if (error.category == ErrorCategory::NotFound) {
        notice.actText = tr("Look for It…");
        notice.act = [this, folder = QFileInfo(path).path()] {
            m_loader.lookIn(folder);
            m_actions.send(ActionId::openFile);
        };
    }
    m_notices.tell(notice);
}

}  // namespace qm
