// A loop is set by three calls and ended by two; what is asked of the renderer, and what is heard, changes once.
#include <doctest/doctest.h>

#include "engine/movie/Heard.h"

using namespace qm;
using namespace qm::test;

namespace {

struct PlayingTrack {
    Player player;
    FileMovie& movie = *player.movie;
    std::uint64_t requests = 0, splices = 0;

    PlayingTrack() {
        player.start();
        player.play(20000);
    }

    // What the calls since the last look have come to.
    void look() {
        player.settle();
        player.play(2000);
        requests = movie.renderThread().requests() - m_requests;
        splices = movie.renderThread().splices() - m_splices;
        m_requests += requests;
        m_splices += splices;
    }

private:
    std::uint64_t m_requests = 0, m_splices = 0;
};

}  // namespace

TEST_CASE_FIXTURE(PlayingTrack, "setting a loop is one request and one splice, and so is ending it") {
    look();
    loop(player, 10000, 200000);
    look();
    CHECK(requests == 1);
    CHECK(splices == 1);
    movie.setLoopsAttribute(false);
    movie.setPlaysSelectionOnlyAttribute(false);
    look();
    CHECK(requests == 1);
    CHECK(splices == 1);
}

TEST_CASE_FIXTURE(PlayingTrack,
                  "a mark that is moved while looping changes the range at once, without leaving the loop") {
    loop(player, 10000, 200000);
    look();
    loop(player, 10000, 150000);
    look();
    CHECK(requests == 1);
    CHECK(splices == 1);
    loop(player, 10000, 150000);
    look();
    CHECK(requests == 0);
    CHECK(splices == 0);
}

TEST_CASE_FIXTURE(PlayingTrack, "the loop of the whole track needs no other call") {
    look();
    movie.setLoopsAttribute(true);
    look();
    CHECK(requests == 1);
    movie.setLoopsAttribute(false);
    look();
    CHECK(requests == 1);
}

TEST_CASE_FIXTURE(PlayingTrack, "a loop that is left half set is heard with whatever is asked for next") {
    movie.setSelectionAttribute({at(10000), at(190000)});
    look();
    movie.setLoopsAttribute(true);
    look();
    CHECK(requests == 0);
    movie.setPitch(0);
    look();
    CHECK(requests == 1);
}
