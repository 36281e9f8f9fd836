#include "engine/video/VideoThread.h"

#include <doctest/doctest.h>

#include <atomic>
#include <thread>

#include "engine/video/Films.h"

using namespace qm;
using namespace qm::test;

namespace {

bool comesTrue(const std::function<bool()>& condition) {
    for (int i = 0; i < 20000 && !condition(); ++i) std::this_thread::sleep_for(std::chrono::microseconds(500));
    return condition();
}

bool shows(const VideoThread& video, double seconds) {
    const auto picture = video.picture();
    return picture && std::abs(picture->seconds - seconds) < 1e-6;
}

}  // namespace

TEST_CASE("the mailbox holds the picture that the clock asks for, and nothing is decoded until somebody watches") {
    ComputedFilm film;
    std::atomic<double> now = 4;
    std::atomic<int> decoded = 0;
    film.onDecode = [&] { ++decoded; };
    VideoThread video(film.opener(), [&] { return VideoMoment{now, 0}; });
    video.clockChanged();
    CHECK_FALSE(video.picture());
    CHECK(decoded == 0);
    video.setWatched(true);
    CHECK(comesTrue([&] { return shows(video, 4); }));
    now = 11;
    video.clockChanged();
    CHECK(comesTrue([&] { return shows(video, 11); }));
    now = 2;
    video.clockChanged();
    CHECK(comesTrue([&] { return shows(video, 2); }));
}

TEST_CASE("the pictures follow a clock that runs, in both directions") {
    ComputedFilm film;
    std::atomic<double> now = 4;
    std::atomic<double> rate = 1;
    VideoThread video(film.opener(), [&] { return VideoMoment{now, rate}; });
    video.setWatched(true);
    for (int i = 0; i < 20; ++i) {
        now = 4 + i * 0.04;
        CHECK(comesTrue([&] { return shows(video, now); }));
    }
    rate = -1;
    video.clockChanged();
    for (int i = 19; i > 0; --i) {
        now = 4 + i * 0.04;
        CHECK(comesTrue([&] { return shows(video, now); }));
    }
}

TEST_CASE("a clock that stands still lets the thread sleep") {
    ComputedFilm film;
    std::atomic<int> asked = 0;
    VideoThread video(film.opener(), [&] {
        ++asked;
        return VideoMoment{3, 0};
    });
    video.setWatched(true);
    CHECK(comesTrue([&] { return shows(video, 3); }));
    int before = -1;
    CHECK(comesTrue([&] {
        const bool sleeps = asked == before;
        before = asked;
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        return sleeps;
    }));
}

TEST_CASE("a film that cannot be opened has no picture, and the thread still ends") {
    std::atomic<int> tries = 0;
    VideoThread video(
        [&]() -> std::unique_ptr<VideoReader> {
            ++tries;
            return nullptr;
        },
        [] { return VideoMoment{}; });
    video.setWatched(true);
    CHECK(comesTrue([&] { return tries > 0; }));
    video.setWatched(false);
    CHECK_FALSE(video.picture());
}
