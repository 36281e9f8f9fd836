#include "engine/video/PictureServer.h"

#include <doctest/doctest.h>

#include <cmath>
#include <vector>

#include "engine/media/MediaFiles.h"
#include "engine/video/Films.h"

using namespace qm;
using namespace qm::test;

namespace {

constexpr std::size_t kBudget = std::size_t{96} << 20;

// A playback that moves when the test moves it, and a server that gets its work done in between.
struct Playback {
    explicit Playback(VideoOpener open, std::size_t budget = kBudget) : server(std::move(open), budget) {}

    std::shared_ptr<const VideoPicture> shown() {
        while (server.prepare(moment)) {
        }
        const ReadyPicture* ready = server.schedule().at(moment);
        return ready ? ready->picture : nullptr;
    }

    double secondsToChange() {
        shown();
        return server.schedule().secondsToChange(moment);
    }

    // All that can be done while the moment lasts. A server that never finds an end fails.
    int settle() {
        int steps = 0;
        while (steps < 100000 && server.work(moment)) {
            mostBytes = std::max(mostBytes, server.bytes());
            ++steps;
        }
        CHECK(steps < 100000);
        return steps;
    }

    // Moves on in real time, folding at the seam of a loop.
    void advance(double seconds) {
        passed += seconds;
        moment.seconds += moment.rate * seconds;
        const double length = moment.rangeEnd - moment.rangeBegin;
        if (moment.loops && moment.seconds >= moment.rangeEnd) moment.seconds -= length;
        if (moment.loops && moment.seconds < moment.rangeBegin) moment.seconds += length;
    }

    VideoMoment moment;
    PictureServer server;
    std::size_t mostBytes = 0;
    double passed = 0;
};

// The farthest that a shown picture is from the right one, in seconds of real time, over so much play.
double farthestOver(Playback& playback, double seconds, const std::function<double(const VideoPicture&)>& timeOf,
                    double perSecond, double last) {
    constexpr double kStep = 0.004;
    double farthest = 0;
    for (double passed = 0; passed < seconds; passed += kStep) {
        playback.settle();
        const auto picture = playback.shown();
        REQUIRE(picture);
        const double begin = timeOf(*picture), end = begin + 1 / perSecond;
        const double now = playback.moment.seconds;
        const double after = now >= last ? 0 : std::max(now - end, 0.0), before = std::max(begin - now, 0.0);
        farthest = std::max(farthest, std::max(after, before) / std::abs(playback.moment.rate));
        playback.advance(kStep);
    }
    return farthest;
}

// Plays so long while decoding takes its time, and answers the longest time for which the right picture was not there.
double longestWithout(Playback& playback, double seconds) {
    double passed = 0, since = 0, longest = 0;
    while (passed < seconds) {
        const double before = playback.passed;
        if (!playback.server.prepare(playback.moment) && !playback.server.work(playback.moment))
            playback.advance(0.001);
        playback.mostBytes = std::max(playback.mostBytes, playback.server.bytes());
        passed += playback.passed - before;
        const ReadyPicture* ready = playback.server.schedule().at(playback.moment);
        if (ready && ready->end > playback.moment.shownTime()) since = passed;
        longest = std::max(longest, passed - since);
    }
    return longest;
}

// Ordinary high definition, shown in a small window: 250 pictures between key pictures, and a second and a quarter to
// decode them all.
struct HighDefinition {
    explicit HighDefinition(double from, double rate) {
        film.pictures = 1500;
        film.group = 250;
        film.pixels = 1920 * 1080;
        film.bytesPerPicture = 1920 * 1080 * 3 / 2;
        film.onDecode = [this] { playback.advance(0.005); };
        playback.server.setPlace({560, 315});
        playback.moment = {from, rate, false, 0, 60};
        longestWithout(playback, 1.5);
    }

    double turn(double rate, double seconds) {
        playback.moment.rate = rate;
        return longestWithout(playback, seconds);
    }

    double loop(double begin, double end, double seconds) {
        playback.moment.loops = true;
        playback.moment.rangeBegin = begin;
        playback.moment.rangeEnd = end;
        return longestWithout(playback, seconds);
    }

    ComputedFilm film;
    Playback playback{film.opener(), std::size_t{256} << 20};
};

constexpr double kNotSeen = 0.02;  // seconds: shorter than a picture is shown

double ownTime(const VideoPicture& picture) {
    return picture.seconds;
}

const double kRates[] = {0.35, 0.5, 1, 1.7, 2.5, -0.35, -0.5, -1, -2.5};

}  // namespace

TEST_CASE("the picture shown is the one of the moment at every speed in both directions") {
    for (const double rate : kRates) {
        CAPTURE(rate);
        ComputedFilm film;
        Playback playback(film.opener());
        playback.moment = {rate > 0 ? 4.0 : 14.0, rate};
        CHECK(farthestOver(playback, 3, ownTime, 25, 20) < 0.005);
    }
}

TEST_CASE("coded films are in step at every speed, forward, backward, after jumps and through the seam of a loop") {
    const TemporaryFolder folder;
    const std::pair<const char*, const char*> codings[] = {
        {"b.mp4", "-c:v libx264 -bf 3 -g 40 -c:a aac"},
        {"long.mov", "-c:v libx264 -bf 3 -g 500 -c:a pcm_s16le"},
        {"m.avi", "-c:v mjpeg -q:v 2 -pix_fmt yuvj420p -c:a pcm_s16le"},
    };
    for (const auto& [name, coding] : codings) {
        const std::string path = folder.file(name);
        REQUIRE(makeFilm(path, 150, "25", coding));
        const auto opened = openMedia(path);
        REQUIRE(opened);
        int unreadable = 0;
        const auto codedTime = [&](const VideoPicture& picture) {
            const int number = numberOf(picture);
            unreadable += number < 0;
            return number / 25.0;
        };
        Playback playback(opened.value().openVideo);
        for (const double rate : {0.35, 2.5, -0.35, -1.0, -2.5}) {
            CAPTURE(name);
            CAPTURE(rate);
            playback.moment = {rate > 0 ? 0.2 : 5.9, rate};
            CHECK(farthestOver(playback, 1.2, codedTime, 25, 6) < 0.04);
            playback.moment.seconds = 3.1;
            CHECK(farthestOver(playback, 0.4, codedTime, 25, 6) < 0.04);
            playback.moment = {2.2, rate, true, 1.9, 3.3};
            CHECK(farthestOver(playback, 4, codedTime, 25, 6) < 0.04);
        }
        CHECK(unreadable == 0);
    }
}

TEST_CASE("paused after a skip the right picture stands there at once and nothing more is done") {
    ComputedFilm film;
    Playback playback(film.opener());
    for (const double time : {7.31, 3.999, 0.0, 4.0, 19.99, 25.0}) {
        CAPTURE(time);
        playback.moment = {time, 0};
        playback.settle();
        REQUIRE(playback.shown());
        const double expected = std::min(std::floor((time + 0.001) * 25) / 25, 19.96);
        CHECK(playback.shown()->seconds == doctest::Approx(expected));
        const int reads = film.reads;
        CHECK_FALSE(playback.server.work(playback.moment));
        CHECK(film.reads == reads);
        CHECK(std::isinf(playback.secondsToChange()));
        CHECK(playback.shown() == playback.shown());
    }
}

TEST_CASE("the time to the next picture follows the speed and ends at the seam of a loop") {
    ComputedFilm film;
    Playback playback(film.opener());
    playback.moment = {2.01, 0.5};
    playback.settle();
    CHECK(playback.secondsToChange() == doctest::Approx((0.03 - 0.001) / 0.5));
    playback.moment = {2.01, -0.5};
    playback.settle();
    CHECK(playback.secondsToChange() == doctest::Approx((0.01 + 0.001) / 0.5));
    playback.moment = {2.01, 1, true, 1, 2.02};
    playback.settle();
    CHECK(playback.secondsToChange() == doctest::Approx(0.01 - 0.001));
}

TEST_CASE("pictures beyond the seam of a loop are there before it is reached") {
    for (const double rate : {1.0, -1.0}) {
        CAPTURE(rate);
        ComputedFilm film;
        Playback playback(film.opener());
        const double edge = rate > 0 ? 15.0 : 5.0;
        playback.moment = {edge - rate * 0.02, rate, true, 5, 15};
        playback.settle();
        const int reads = film.reads;
        playback.advance(0.03);
        REQUIRE(playback.shown());
        CHECK(std::abs(playback.shown()->seconds - playback.moment.seconds) < 0.05);
        CHECK(film.reads == reads);
    }
}

TEST_CASE("a short loop is decoded once and then served from memory") {
    for (const double rate : {1.0, -1.0}) {
        CAPTURE(rate);
        ComputedFilm film;
        Playback playback(film.opener());
        playback.moment = {5.05, rate, true, 5, 5.4};
        CHECK(farthestOver(playback, 1, ownTime, 25, 20) < 0.005);
        const int reads = film.reads;
        CHECK(farthestOver(playback, 3, ownTime, 25, 20) < 0.005);
        CHECK(film.reads == reads);
    }
}

TEST_CASE("while decoding is slower than play, late pictures are left out and none is shown far behind") {
    ComputedFilm film;
    film.pictures = 2000;
    Playback playback(film.opener());
    playback.moment = {1, 2.5};
    film.onDecode = [&] { playback.advance(0.030); };  // 33 of 62 pictures a second
    double farthest = 0;
    int shown = 0;
    std::shared_ptr<const VideoPicture> last;
    while (playback.moment.seconds < 60) {
        if (!playback.server.work(playback.moment)) playback.advance(0.001);
        const auto picture = playback.shown();
        if (!picture || picture == last) continue;
        last = picture;
        ++shown;
        farthest = std::max(farthest, playback.moment.seconds - picture->seconds);
    }
    CHECK(farthest < 0.35);
    CHECK(shown > 20);
    CHECK(film.reads < 1475);
}

TEST_CASE("memory stays within its budget, and what is too large for it is still shown") {
    for (const double rate : kRates) {
        for (const bool loops : {false, true}) {
            CAPTURE(rate);
            CAPTURE(loops);
            ComputedFilm film;
            film.group = 250;
            film.bytesPerPicture = std::size_t{4} << 20;
            Playback playback(film.opener());
            playback.moment = {rate > 0 ? 5.0 : 15.0, rate, loops, 4, 16};
            CHECK(farthestOver(playback, 2, ownTime, 25, 20) < 0.005);
            CHECK(playback.mostBytes <= kBudget);
        }
    }
    ComputedFilm huge;
    huge.bytesPerPicture = std::size_t{64} << 20;
    Playback playback(huge.opener());
    playback.moment = {5, -1};
    CHECK(farthestOver(playback, 1, ownTime, 25, 20) < 0.005);
}

TEST_CASE("backward play reads each group few times, forward play every picture once") {
    ComputedFilm film;
    Playback forward(film.opener());
    forward.moment = {0, 1};
    farthestOver(forward, 10, ownTime, 25, 20);
    CHECK(film.reads < 280);
    CHECK(film.seeks == 1);
    film.reads = 0;
    Playback backward(film.opener());
    backward.moment = {20, -1};
    farthestOver(backward, 10, ownTime, 25, 20);
    CHECK(film.reads < 700);
}

TEST_CASE("before the first picture of a film that one is shown, and after the last one that") {
    ComputedFilm film;
    film.first = 0.5;
    film.pictures = 100;
    for (const double rate : {0.0, 1.0, -1.0}) {
        CAPTURE(rate);
        Playback playback(film.opener());
        playback.moment = {0.1, rate};
        playback.settle();
        REQUIRE(playback.shown());
        CHECK(playback.shown()->seconds == doctest::Approx(0.5));
        playback.moment.seconds = 10;
        playback.settle();
        REQUIRE(playback.shown());
        CHECK(playback.shown()->seconds == doctest::Approx(0.5 + 99 / 25.0));
    }
}

TEST_CASE("a film without a picture that can be decoded is given up") {
    ComputedFilm film;
    film.pictures = 0;
    film.group = 1;
    Playback playback([] {
        class Empty : public VideoReader {
            bool seek(double) override { return true; }
            bool gainsBySeeking(double, double) override { return false; }
            Outcome next(RawPicture&, double, std::int64_t) override { return Outcome::End; }
            double secondsPerPicture() const override { return 0.04; }
            RawPicture reduced(const RawPicture& picture, std::int64_t) override { return picture; }
            std::shared_ptr<const VideoPicture> convert(const RawPicture&, PictureSize) override { return nullptr; }
        };
        return std::make_unique<Empty>();
    });
    for (const double rate : {0.0, 1.0, -1.0}) {
        playback.moment = {3, rate, true, 1, 5};
        playback.settle();
        CHECK_FALSE(playback.shown());
    }
}

TEST_CASE("turns and jumps in quick succession, before anything could be decoded, do no harm") {
    ComputedFilm film;
    Playback playback(film.opener());
    for (int i = 0; i < 30; ++i) {
        const double rates[] = {1, -1, 0};
        playback.moment = {i * 0.6, rates[i % 3]};
        playback.server.work(playback.moment);
    }
    playback.moment = {11.5, -1};
    playback.settle();
    REQUIRE(playback.shown());
    CHECK(playback.shown()->seconds == doctest::Approx(11.48));
}

TEST_CASE("a picture that was kept small for playing backward is shown as sharp as can be when it stands still") {
    HighDefinition large(20, -1);
    large.playback.server.setPlace({1920, 1080});
    large.turn(-1, 6);
    REQUIRE(large.playback.shown());
    CHECK(large.playback.server.schedule().at(large.playback.moment)->madeOf < 1920 * 1080 / 2);
    large.playback.moment.rate = 0;
    large.playback.settle();
    REQUIRE(large.playback.shown());
    CHECK(large.playback.server.schedule().at(large.playback.moment)->madeOf == 1920 * 1080);
}

TEST_CASE("backward, every group of pictures is there before it is reached") {
    for (const double rate : {-0.5, -1.0, -2.0}) {
        CAPTURE(rate);
        HighDefinition film(55, rate);
        CHECK(longestWithout(film.playback, 20) < kNotSeen);
        CHECK(film.playback.mostBytes <= std::size_t{256} << 20);
    }
}

TEST_CASE("a turn shows what was just shown, for as long as it takes to decode what lies before it") {
    HighDefinition film(14, 1);
    CHECK(film.turn(1, 4) < kNotSeen);
    CHECK(film.turn(-1, 9) < kNotSeen);
    CHECK(film.turn(1, 4) < kNotSeen);
    CHECK(film.turn(-1, 3) < kNotSeen);
    CHECK(film.turn(-2, 5) < kNotSeen);
    CHECK(film.turn(2, 3) < kNotSeen);
    CHECK(film.playback.mostBytes <= std::size_t{256} << 20);
}

TEST_CASE("the first wrap of a loop finds its pictures ready, in both directions, as do all that follow") {
    HighDefinition film(13, 1);
    film.turn(1, 3);
    CHECK(film.loop(13.8, 19, 30) < kNotSeen);
    CHECK(film.turn(-1, 20) < kNotSeen);
    HighDefinition justPassed(16, 1);
    justPassed.turn(1, 1.2);
    CHECK(justPassed.loop(17.3, justPassed.playback.moment.seconds + 0.02, 12) < kNotSeen);
    CHECK(justPassed.turn(-1, 6) < kNotSeen);
}

TEST_CASE("the pictures to come are ready to be painted before they are due") {
    for (const double rate : {1.0, -1.0}) {
        CAPTURE(rate);
        ComputedFilm film;
        Playback playback(film.opener());
        playback.moment = {rate > 0 ? 5.34 : 5.1, rate, true, 5, 5.4};  // the seam comes with the next but one
        playback.settle();
        playback.shown();
        const int conversions = film.conversions;
        for (int picture = 0; picture < 3; ++picture) {
            playback.advance(0.04);
            const ReadyPicture* ready = playback.server.schedule().at(playback.moment);
            REQUIRE(ready);
            CHECK(ready->begin <= playback.moment.shownTime());
            CHECK(ready->end > playback.moment.shownTime());
        }
        CHECK(film.conversions == conversions);
    }
}
