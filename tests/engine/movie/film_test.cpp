#include <doctest/doctest.h>

#include <cmath>

#include "engine/media/MediaFiles.h"
#include "engine/movie/SteppedPlayer.h"
#include "engine/video/Films.h"

using namespace qm;
using namespace qm::test;

namespace {

constexpr double kPerSecond = 25;
constexpr int kPictures = 150;

// A film of numbered pictures that is watched while the test lets time go on.
struct WatchedFilm {
    explicit WatchedFilm(const std::string& path) : player(open(path)) {
        player.movie->setPictureViewer(PictureViewer{192, 64, {}});
    }

    static OpenedMedia open(const std::string& path) {
        auto opened = openMedia(path);
        REQUIRE(opened);
        REQUIRE(opened.value().openVideo);
        return std::move(opened.value());
    }

    double heardSeconds() const {
        const QTTime time = player.movie->currentTime();
        return double(time.timeValue) / time.timeScale;
    }

    int shownNumber() const {
        const auto picture = player.movie->currentPicture();
        return picture ? numberOf(*picture) : -1;
    }

    // How far the picture that comes to be shown is from the moment that is heard, in seconds of the film.
    double distance() const {
        const double now = heardSeconds();
        const int right = std::min(int(std::floor(now * kPerSecond + 0.05)), kPictures - 1);
        Player::waitFor([&] { return shownNumber() == right; }, 4000);
        const int shown = shownNumber();
        if (shown == right || shown == right - 1 || shown == right + 1) {
            const double begin = shown / kPerSecond, end = begin + 1 / kPerSecond;
            return std::max({begin - now, shown == kPictures - 1 ? 0 : now - end, 0.0});
        }
        return 1;
    }

    double farthestOver(double seconds) {
        double farthest = 0;
        for (double done = 0; done < seconds; done += 0.13) {
            player.play(static_cast<std::size_t>(0.13 * player.movie->duration().timeScale));
            farthest = std::max(farthest, distance());
        }
        return farthest;
    }

    void seekTo(double seconds) {
        const auto scale = player.movie->duration().timeScale;
        player.movie->setCurrentTime({std::llround(seconds * scale), scale, 0});
        player.settle();
    }

    // Beyond the end nothing comes, and each callback would be waited for.
    void playToItsEnd() {
        for (int i = 0; i < 1000 && !player.movie->isDone(); ++i) player.play(100);
    }

    void loop(double from, double to) {
        const auto scale = player.movie->duration().timeScale;
        player.movie->setSelectionAttribute(
            {{std::llround(from * scale), scale, 0}, {std::llround((to - from) * scale), scale, 0}});
        player.movie->setLoopsAttribute(true);
        player.movie->setPlaysSelectionOnlyAttribute(true);
        player.settle();
    }

    Player player;
};

}  // namespace

TEST_CASE("the picture of a film is that of the moment being heard: playing, backward, after jumps, looped, paused") {
    const TemporaryFolder folder;
    const std::pair<const char*, const char*> codings[] = {
        {"b.mp4", "-c:v libx264 -bf 3 -g 40 -c:a aac"},
        {"long.mov", "-c:v libx264 -bf 3 -g 500 -c:a pcm_s16le"},
        {"b.avi", "-c:v mpeg4 -bf 2 -q:v 2 -g 20 -c:a pcm_s16le"},
    };
    for (const auto& [name, coding] : codings) {
        CAPTURE(name);
        const std::string path = folder.file(name);
        REQUIRE(makeFilm(path, kPictures, "25", coding));
        WatchedFilm film(path);

        film.seekTo(2.01);
        CHECK(film.distance() == 0);  // while it stands still
        film.player.start(1);
        CHECK(film.farthestOver(1) < 0.04);
        film.player.movie->setRate(-1);
        CHECK(film.farthestOver(1) < 0.04);
        film.seekTo(4.61);
        CHECK(film.farthestOver(0.5) < 0.04);
        film.player.movie->setRate(0.5f);
        CHECK(film.farthestOver(0.5) < 0.04);
        film.loop(1.1, 1.9);
        CHECK(film.farthestOver(2) < 0.04);
        film.player.movie->setRate(-2);
        CHECK(film.farthestOver(1) < 0.04);
        film.player.movie->setLoopsAttribute(false);
        film.player.movie->setPlaysSelectionOnlyAttribute(false);
        film.player.movie->stop();
        film.player.settle();
        film.player.play(3000);
        film.seekTo(0.33);
        CHECK(film.distance() == 0);
        film.seekTo(5.5);
        CHECK(film.distance() == 0);
    }
}

TEST_CASE("a film whose sound ends before its pictures goes on in silence to the last picture") {
    const TemporaryFolder folder;
    const std::string path = folder.file("a.mov");
    REQUIRE(makeUnevenFilm(path, kPictures, 1, "-c:v libx264 -bf 2 -g 25 -c:a pcm_s16le"));
    WatchedFilm film(path);
    Player& player = film.player;
    const auto scale = player.movie->duration().timeScale;
    const auto loudest = [](const std::vector<StereoFrame>& sound) {
        float most = 0;
        for (const StereoFrame& frame : sound) most = std::max(most, std::abs(frame.left));
        return most;
    };
    CHECK(player.movie->duration() == QTTime{6 * scale, scale, 0});

    film.seekTo(0.5);
    player.start(1);
    player.play(static_cast<std::size_t>(scale));  // into the silence
    CHECK_FALSE(player.movie->isDone());
    CHECK(film.farthestOver(0.5) < 0.04);
    CHECK(loudest(player.play(4410)) == 0);
    film.seekTo(3.3);  // within the silence
    CHECK(film.heardSeconds() == doctest::Approx(3.3).epsilon(0.001));
    CHECK(film.distance() < 0.04);
    film.loop(2, 2.5);
    player.play(static_cast<std::size_t>(2 * scale));
    CHECK(film.heardSeconds() >= 2);
    CHECK(film.heardSeconds() <= 2.5);
    CHECK(film.distance() < 0.04);
    player.movie->setLoopsAttribute(false);
    player.movie->setPlaysSelectionOnlyAttribute(false);
    film.seekTo(5.9);
    film.playToItsEnd();
    CHECK(player.movie->isDone());
    CHECK(player.movie->currentTime() == player.movie->duration());
    CHECK(film.distance() == 0);
    CHECK(film.shownNumber() == kPictures - 1);

    player.movie->setRate(-1);
    player.settle();
    player.play(static_cast<std::size_t>(4.8 * scale));
    CHECK(film.heardSeconds() == doctest::Approx(1.2).epsilon(0.01));
    CHECK(film.distance() < 0.04);
    CHECK(loudest(player.play(static_cast<std::size_t>(scale / 2))) > 0.1f);
}

TEST_CASE("a film whose pictures end before its sound holds the last one") {
    const TemporaryFolder folder;
    const std::string path = folder.file("a.mp4");
    REQUIRE(makeUnevenFilm(path, 25, 12, "-c:v libx264 -bf 2 -g 10 -c:a aac"));
    WatchedFilm film(path);
    const auto showsTheLast = [&] {
        Player::waitFor([&] { return film.shownNumber() == 24; }, 4000);
        return film.shownNumber() == 24;
    };
    CHECK(film.player.movie->duration().timeValue >= 12 * 44100);
    film.seekTo(11.5);
    CHECK(showsTheLast());
    film.player.start(1);
    film.playToItsEnd();
    CHECK(showsTheLast());
    CHECK(film.player.movie->isDone());
    film.player.start(-2);
    film.player.play(44100);
    CHECK(showsTheLast());
    film.loop(5, 6);
    film.player.play(44100);
    CHECK(showsTheLast());
    film.seekTo(0.5);
    film.player.movie->stop();
    film.player.movie->setLoopsAttribute(false);
    film.player.movie->setPlaysSelectionOnlyAttribute(false);
    film.player.settle();
    film.seekTo(0.5);
    Player::waitFor([&] { return film.shownNumber() == 12; }, 4000);
    CHECK(film.shownNumber() == 12);
}
