#include "practice/MarkHistory.h"

namespace qm {

namespace {

constexpr std::int64_t kOneStepMilliseconds = 1000;

}  // namespace

bool MarkHistory::add(MarkChange kind, const MarkState& before, const MarkState& after, std::int64_t milliseconds) {
    if (before == after) return false;
    m_undone.clear();
    if (m_goesOn && m_done.back().kind == kind && m_done.back().after == before &&
        milliseconds - m_done.back().changed <= kOneStepMilliseconds) {
        m_done.back().after = after;
        m_done.back().changed = milliseconds;
        return false;
    }
    m_done.push_back({kind, before, after, milliseconds});
    if (m_done.size() > kMostSteps) m_done.pop_front();
    m_goesOn = true;
    return true;
}

std::optional<MarkState> MarkHistory::undo() {
    if (m_done.empty()) return std::nullopt;
    m_goesOn = false;
    m_undone.push_back(m_done.back());
    m_done.pop_back();
    return m_undone.back().before;
}

std::optional<MarkState> MarkHistory::redo() {
    if (m_undone.empty()) return std::nullopt;
    m_goesOn = false;
    m_done.push_back(m_undone.back());
    m_undone.pop_back();
    return m_done.back().after;
}

}  // namespace qm
