#include "player/AbLoop.h"

#include <algorithm>

#include "player/OutletSetters.h"
#include "player/TimeFormat.h"

namespace qm {

namespace {

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

AbLoop::AbLoop(PlayerState& state, PlayListArrays& list, const Outlets& outlets, MovieToolbox& toolbox,
               PositionClock& clock)
    : m_state(state), m_list(list), m_outlets(outlets), m_toolbox(toolbox), m_clock(clock) {}

void AbLoop::loopSwitch() {
    if (!m_state.qtMovie) return;
    m_state.isLooping = !m_state.isLooping;
    if (m_state.isLooping) {
        const int row = selectedRow(m_outlets, m_list);
        if (row < 0) return;  // stays on without a range; the next press switches it off
        switchOn(row);
    } else {
        switchOff();
    }
    displayLoopFields();
}

void AbLoop::switchOn(int row) {
    const QTTime a = markA(m_list, row), b = markB(m_list, row);
    m_state.qtMovie->setSelectionAttribute({a, QTTimeDecrement(b, a)});
    m_state.qtMovie->setLoopsAttribute(true);
    m_state.qtMovie->setPlaysSelectionOnlyAttribute(true);
    m_told = {m_state.qtMovie->quickTimeMovie(), a, b, true, true};
    showImage(m_outlets.loopButton, QStringLiteral("db_loop_on.png"));
    m_clock.startCueTimer();
}

void AbLoop::switchOff() {
    m_state.markBset = false;
    m_state.qtMovie->setLoopsAttribute(false);
    m_state.qtMovie->setPlaysSelectionOnlyAttribute(false);
    m_told = {};
    showImage(m_outlets.loopButton, QStringLiteral("db_loop_off.png"));
}

void AbLoop::markAUpdate() {
    const int row = selectedRow(m_outlets, m_list);
    if (!m_state.qtMovie || row < 0) return;
    m_list.markAarray[row] = m_state.qtMovie->currentTime().timeValue;
    reloadTable(m_outlets.playList);
    showImage(m_outlets.markAButton, QStringLiteral("db_set_in_on.png"));
    rearmAndShow();
}

void AbLoop::markBUpdate() {
    const int row = selectedRow(m_outlets, m_list);
    if (!m_state.qtMovie || row < 0) return;
    m_list.markBarray[row] = m_state.qtMovie->currentTime().timeValue;
    reloadTable(m_outlets.playList);
    showImage(m_outlets.markBButton, QStringLiteral("db_set_out_on.png"));
    m_state.markBset = true;
    rearmAndShow();
}

void AbLoop::rearmAndShow() {
    if (m_state.isLooping) {
        m_state.isLooping = false;
        loopSwitch();
    }
    displayLoopFields();
}

void AbLoop::resetMarks() {
    m_state.timeB = QTTime{};
    m_state.timeA = QTTime{};
    if (!m_state.qtMovie) return;
    m_state.markBset = false;
    m_state.qtMovie->setPlaysSelectionOnlyAttribute(false);
    if (hasTold(*m_state.qtMovie)) m_told.selectionOnly = false;
    const int row = selectedRow(m_outlets, m_list);
    if (row < 0) return;
    m_list.markAarray[row] = 0;
    m_list.markBarray[row] = m_toolbox.GetMovieDuration(m_state.quickTimeMovie);
    reloadTable(m_outlets.playList);
    showImage(m_outlets.markAButton, QStringLiteral("db_set_in_off.png"));
    showImage(m_outlets.markBButton, QStringLiteral("db_set_out_off.png"));
    displayLoopFields();
}

void AbLoop::displayLoopFields() {
    const int row = selectedRow(m_outlets, m_list);
    if (row < 0) return;
    const QTTime a = markA(m_list, row), b = markB(m_list, row);
    showMark(m_outlets.loopIn, a);
    showMark(m_outlets.loopOut, b);
    m_shown = {a, b, a.timeValue != 0, b.timeValue != m_list.durations[row]};
}

std::optional<std::pair<double, double>> AbLoop::repeatedPassage() const {
    if (!m_state.qtMovie || !hasTold(*m_state.qtMovie) || !m_told.loops) return std::nullopt;
    const QTTime whole = m_state.qtMovie->duration();
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
