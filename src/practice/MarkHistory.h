// The changes of one track's marks, to be undone and done again. A value; time is given, in milliseconds of a clock
// that only goes forward.
#pragma once

#include <cstdint>
#include <deque>
#include <optional>
#include <vector>

#include "practice/Marks.h"

namespace qm {

struct MarkState {
    Marks marks;
    bool bIsSet = false;  // markBset
    friend bool operator==(const MarkState&, const MarkState&) = default;
};

enum class MarkChange { MoveA, MoveB, MoveBoth, Halve, Double, Passage, Snap, Type, Draw, Choose, Reset };

class MarkHistory {
public:
    static constexpr std::size_t kMostSteps = 100;

    // Changes of one kind that follow within a second are one step. True if this one began a step.
    bool add(MarkChange kind, const MarkState& before, const MarkState& after, std::int64_t milliseconds);

    bool canUndo() const { return !m_done.empty(); }
    bool canRedo() const { return !m_undone.empty(); }

    // What the marks are to be now; none where there is nothing to undo, or to do again.
    std::optional<MarkState> undo();
    std::optional<MarkState> redo();

private:
    struct Step {
        MarkChange kind;
        MarkState before;
        MarkState after;
        std::int64_t changed;
    };

    std::deque<Step> m_done;
    std::vector<Step> m_undone;
    bool m_goesOn = false;  // the newest step may still take a change
};

}  // namespace qm
