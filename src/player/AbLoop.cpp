#include "player/AbLoop.h"

#include <algorithm>

#include "player/OutletSetters.h"
#include "player/TimeFormat.h"

namespace qm {

namespace {

const QString kFirstText = QStringLiteral("00:00:00");  // of the fields

QTTime markA(const PlayListArrays& list, int row) {
    return {list.markAarray[row], list.timescaleArray[row], 0};
}

QTTime markB(const PlayListArrays& list, int row) {
    return {list.markBarray[row], list.timescaleArray[row], 0};
}

void showMark(TimeLabel* field, QTTime mark) {
    if (!field) return;
    if (const auto text = stringFromQTTimeLite(mark)) field->setText(*text);
    field->setVisible(true);
}

}  // namespace

AbLoop::AbLoop(Uses<const CurrentMovie, const MovieHandle, LoopState, MarkBState, MarkTimes> state,
               PlayListArrays& list, Uses<const LoopOutlets, const PlayListOutlet> outlets, MovieToolbox& toolbox,
               PositionClock& clock)
    : m_movie(state),
      m_handle(state),
      m_loopState(state),
      m_markB(state),
      m_markTimes(state),
      m_list(list),
      m_outlets(outlets),
      m_listOutlet(outlets),
      m_toolbox(toolbox),
      m_clock(clock) {}

void AbLoop::loopSwitch() {
    if (!m_movie.qtMovie) return;
    m_loopState.isLooping = !m_loopState.isLooping;
    if (m_loopState.isLooping) {
        const int row = selectedRow(m_listOutlet, m_list);
        if (row < 0) return;  // stays on without a range; the next press switches it off
        switchOn(row);
    } else {
        switchOff();
    }
    displayLoopFields();
}

void AbLoop::switchOn(int row) {
    const QTTime a = markA(m_list, row), b = markB(m_list, row);
    m_movie.qtMovie->setSelectionAttribute({a, QTTimeDecrement(b, a)});
    m_movie.qtMovie->setLoopsAttribute(true);
    m_movie.qtMovie->setPlaysSelectionOnlyAttribute(true);
    m_told = {m_movie.qtMovie->quickTimeMovie(), a, b, true, true};
    showState(m_outlets.loopButton, QStringLiteral("db_loop_on.png"), true);
    m_clock.startCueTimer();
}

void AbLoop::switchOff() {
    m_markB.markBset = false;
    m_movie.qtMovie->setLoopsAttribute(false);
    m_movie.qtMovie->setPlaysSelectionOnlyAttribute(false);
    m_told = {};
    showState(m_outlets.loopButton, QStringLiteral("db_loop_off.png"), false);
}

void AbLoop::switchOffForTrack() {
    if (!m_loopState.isLooping) return;
    m_loopState.isLooping = false;
    showState(m_outlets.loopButton, QStringLiteral("db_loop_off.png"), false);
    displayLoopFields();
    showText(m_outlets.loopOut, kFirstText);
    if (m_shown) m_shown->bIsShown = stringFromQTTimeLite(m_shown->b) == kFirstText;
}

void AbLoop::markAUpdate() {
    const int row = selectedRow(m_listOutlet, m_list);
    if (!m_movie.qtMovie || row < 0) return;
    m_list.markAarray[row] = m_movie.qtMovie->currentTime().timeValue;
    reloadTable(m_listOutlet.playList);
    showState(m_outlets.markAButton, QStringLiteral("db_set_in_on.png"), true);
    rearmAndShow();
}

void AbLoop::markBUpdate() {
    const int row = selectedRow(m_listOutlet, m_list);
    if (!m_movie.qtMovie || row < 0) return;
    m_list.markBarray[row] = m_movie.qtMovie->currentTime().timeValue;
    reloadTable(m_listOutlet.playList);
    showState(m_outlets.markBButton, QStringLiteral("db_set_out_on.png"), true);
    m_markB.markBset = true;
    rearmAndShow();
}

void AbLoop::rearmAndShow() {
    if (m_loopState.isLooping) {
        m_loopState.isLooping = false;
        loopSwitch();
    }
    displayLoopFields();
}

void AbLoop::resetMarks() {
    m_markTimes.timeB = QTTime{};
    m_markTimes.timeA = QTTime{};
    if (!m_movie.qtMovie) return;
    m_markB.markBset = false;
    m_movie.qtMovie->setPlaysSelectionOnlyAttribute(false);
    if (hasTold(*m_movie.qtMovie)) m_told.selectionOnly = false;
    const int row = selectedRow(m_listOutlet, m_list);
    if (row < 0) return;
    m_list.markAarray[row] = 0;
    m_list.markBarray[row] = m_toolbox.GetMovieDuration(m_handle.quickTimeMovie);
    reloadTable(m_listOutlet.playList);
    showState(m_outlets.markAButton, QStringLiteral("db_set_in_off.png"), false);
    showState(m_outlets.markBButton, QStringLiteral("db_set_out_off.png"), false);
    displayLoopFields();
}

void AbLoop::displayLoopFields() {
    const int row = selectedRow(m_listOutlet, m_list);
    if (row < 0) return;
    const QTTime a = markA(m_list, row), b = markB(m_list, row);
    showMark(m_outlets.loopIn, a);
    showMark(m_outlets.loopOut, b);
    m_shown = {a, b, a.timeValue != 0, b.timeValue != m_list.durations[row], stringFromQTTimeLite(b).has_value()};
}

std::optional<std::pair<double, double>> AbLoop::repeatedPassage() const {
    if (!m_movie.qtMovie || !hasTold(*m_movie.qtMovie) || !m_told.loops) return std::nullopt;
    const QTTime whole = m_movie.qtMovie->duration();
    const auto end = static_cast<double>(whole.timeValue);
    const auto inMovie = [&](QTTime mark) {
        return std::clamp(static_cast<double>(mark.timeValue) * whole.timeScale / mark.timeScale, 0.0, end);
    };
    if (m_told.selectionOnly && m_told.a.timeScale > 0) {
        const std::pair passage(inMovie(m_told.a), inMovie(m_told.b));
        if (passage.first != passage.second) return passage;
    }
    return std::pair(0.0, end);  // an empty range is no range: the whole movie repeats
}

}  // namespace qm
