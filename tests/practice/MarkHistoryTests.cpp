#include "practice/MarkHistory.h"

#include <doctest/doctest.h>

using namespace qm;

namespace {

MarkState at(std::int64_t a, std::int64_t b = 1000, bool bIsSet = false) {
    return {{a, b}, bIsSet};
}

}  // namespace

TEST_CASE("Nothing to undo is nothing") {
    MarkHistory history;
    CHECK_FALSE(history.undo());
    CHECK_FALSE(history.redo());
    CHECK_FALSE(history.add(MarkChange::Type, at(5), at(5), 0));
    CHECK_FALSE(history.canUndo());
}

TEST_CASE("Changes are undone from the newest, and done again") {
    MarkHistory history;
    history.add(MarkChange::Type, at(0), at(5), 0);
    history.add(MarkChange::Halve, at(5), at(5, 500), 100);
    history.add(MarkChange::MoveB, at(5, 500), at(5, 600, true), 200);
    CHECK(history.undo() == at(5, 500));
    CHECK(history.undo() == at(5));
    CHECK(history.redo() == at(5, 500));
    CHECK(history.redo() == at(5, 600, true));
    CHECK_FALSE(history.redo());
    history.undo();
    history.add(MarkChange::Reset, at(5, 500), at(0), 300);
    CHECK_FALSE(history.canRedo());
    CHECK(history.undo() == at(5, 500));
}

TEST_CASE("Changes of one kind within a second of the last are one step") {
    MarkHistory history;
    CHECK(history.add(MarkChange::MoveA, at(0), at(1), 0));
    CHECK_FALSE(history.add(MarkChange::MoveA, at(1), at(2), 900));
    CHECK_FALSE(history.add(MarkChange::MoveA, at(2), at(3), 1900));
    CHECK(history.add(MarkChange::MoveA, at(3), at(4), 2901));
    CHECK(history.add(MarkChange::MoveB, at(4), at(4, 900), 2902));
    CHECK(history.undo() == at(4));
    CHECK(history.undo() == at(3));
    CHECK(history.undo() == at(0));
    CHECK_FALSE(history.canUndo());
}

TEST_CASE("A change after an undo is a step of its own, and so is one that does not follow from the last") {
    MarkHistory history;
    history.add(MarkChange::MoveA, at(0), at(1), 0);
    history.add(MarkChange::Type, at(1), at(7), 10);
    history.undo();
    CHECK(history.add(MarkChange::MoveA, at(1), at(2), 20));
    CHECK(history.add(MarkChange::MoveA, at(9), at(10), 30));
    CHECK(history.undo() == at(9));
    CHECK(history.undo() == at(1));
    CHECK(history.undo() == at(0));
}

TEST_CASE("A hundred steps are kept") {
    MarkHistory history;
    for (int i = 0; i < 150; ++i) history.add(MarkChange::MoveA, at(i), at(i + 1), i * 2000);
    int undone = 0;
    std::optional<MarkState> last;
    while (const auto state = history.undo()) {
        last = state;
        ++undone;
    }
    CHECK(undone == 100);
    CHECK(last == at(50));
}
