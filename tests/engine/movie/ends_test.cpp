#include <doctest/doctest.h>

#include "engine/movie/Heard.h"

using namespace qm;
using namespace qm::test;

TEST_CASE("a movie is done at its end forward and at its start backward, and not before it moved") {
    Player p(2000);
    CHECK_FALSE(p.movie->isDone());
    p.start();
    p.play(4000);
    CHECK(p.movie->isDone());
    CHECK(p.movie->currentTime() == p.movie->duration());
    p.movie->setRate(-1);
    p.settle();
    CHECK_FALSE(p.movie->isDone());
    p.play(4000);
    CHECK(p.movie->isDone());
    CHECK(p.now() == 0);
}

TEST_CASE("a movie that was moved to its end while it stood still is not done") {
    Player p(2000);
    p.movie->setCurrentTime(at(2000));
    CHECK_FALSE(p.movie->isDone());
    p.start();
    p.play(500);
    p.pause();
    p.movie->setCurrentTime(at(3000));
    p.settle();
    CHECK(p.now() == 2000);
    CHECK_FALSE(p.movie->isDone());
}

TEST_CASE("a movie that has played to its end is done until it is moved or played again") {
    Player p(2000);
    p.start();
    p.play(4000);
    p.pause();
    CHECK(p.movie->isDone());
    p.movie->setCurrentTime(at(500));
    CHECK_FALSE(p.movie->isDone());
    p.start();
    p.movie->setCurrentTime(at(2000));
    CHECK(p.movie->isDone());
}

TEST_CASE("play at the end begins at the start, whether it was played or moved there") {
    Player played(2000);
    played.start();
    played.play(4000);
    played.pause();
    Player moved(2000);
    moved.movie->setCurrentTime(at(2000));
    for (Player* p : {&played, &moved}) {
        p->start();
        CHECK_FALSE(p->movie->isDone());
        const auto frames = settled(p->play(1000));
        REQUIRE_FALSE(frames.empty());
        CHECK(frames.front() == 0);
        CHECK(breaks(frames) == 0);
    }
}

TEST_CASE("play at the end without a rate of its own begins at the start, too") {
    Player p(2000);
    p.start();
    p.play(4000);
    p.pause();
    p.movie->play();
    CHECK(p.now() == 0);
}

TEST_CASE("backward play of a movie just opened begins at its end") {
    Player p(50000);
    p.start(-1);
    CHECK_FALSE(p.movie->isDone());
    const auto frames = settled(p.play(30000));
    REQUIRE_FALSE(frames.empty());
    CHECK(frames.front() == 49999);
    CHECK(breaks(frames, -1) == 0);
}

TEST_CASE("at an end the other direction goes back over what was played") {
    Player p(2000);
    p.start();
    p.play(4000);
    p.start(-1);
    CHECK(p.now() == 2000);
    const auto frames = heard(p.play(1500));
    REQUIRE_FALSE(frames.empty());
    CHECK(breaks(frames, -1) == 0);
    p.play(2000);
    CHECK(p.movie->isDone());
    CHECK(p.now() == 0);
    p.pause();
    p.start(1);
    CHECK(settled(p.play(500)).front() == 0);
}

TEST_CASE("another speed at the end that was played to stays there") {
    Player p(2000);
    p.start();
    p.play(4000);
    for (const float rate : {1.2f, 0.0f, 0.5f}) {
        p.movie->setRate(rate);
        p.settle();
        CHECK(heard(p.play(500)).empty());
        CHECK(p.movie->isDone());
    }
}

TEST_CASE("standing still at the start, a backward rate begins at the end") {
    Player p(50000);
    p.start(0);
    p.movie->setRate(-1);
    p.settle();
    CHECK(settled(p.play(2000)).front() == 49999);
}
