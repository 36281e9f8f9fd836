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

const PictureViewer kViewer{64, 36, {}};

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
    video.setViewer(kViewer);
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
    video.setViewer(kViewer);
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

TEST_CASE("while the clock stands still, or nobody watches, nothing looks at it") {
    ComputedFilm film;
    std::atomic<int> asked = 0;
    std::atomic<double> rate = 0;
    VideoThread video(film.opener(), [&] {
        ++asked;
        return VideoMoment{3, rate, false, 0, 20};
    });
    const auto sleeps = [&] {
        const int before = asked;
        std::this_thread::sleep_for(std::chrono::milliseconds(400));
        return asked == before;
    };
    video.setViewer(kViewer);
    CHECK(comesTrue([&] { return shows(video, 3); }));
    CHECK(comesTrue(sleeps));
    CHECK(sleeps());
    rate = 1;
    video.clockChanged();
    CHECK(comesTrue([&] { return !sleeps(); }));
    video.setViewer(std::nullopt);
    CHECK(comesTrue(sleeps));
    CHECK(sleeps());
}

TEST_CASE("a film that has come to its end lets the threads sleep, until it is sought") {
    ComputedFilm film;
    std::atomic<int> asked = 0;
    std::atomic<double> now = 20;
    VideoThread video(film.opener(), [&] {
        ++asked;
        return VideoMoment{now, 1, false, 0, 20};
    });
    video.setViewer(kViewer);
    CHECK(comesTrue([&] { return shows(video, 19.96); }));
    CHECK(comesTrue([&] {
        const int before = asked;
        std::this_thread::sleep_for(std::chrono::milliseconds(400));
        return asked == before;
    }));
    now = 4;
    video.clockChanged();
    CHECK(comesTrue([&] { return shows(video, 4); }));
}

TEST_CASE("the viewer is told of each picture, when it is there to be taken, and not after it has gone") {
    ComputedFilm film;
    const auto begin = std::chrono::steady_clock::now();
    const auto now = [&] {
        return 4 + std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    };
    VideoThread video(film.opener(), [&] { return VideoMoment{now(), 1, false, 0, 20}; });
    std::atomic<int> told = 0;
    video.setViewer(PictureViewer{64, 36, [&] { ++told; }});
    std::shared_ptr<const VideoPicture> last;
    int taken = 0, untold = 0;
    CHECK(comesTrue([&] {
        const int toldBefore = told;
        const auto picture = video.picture();
        if (picture == last) return taken >= 20;
        last = picture;
        ++taken;
        untold += told == toldBefore && told < taken;
        return taken >= 20;
    }));
    CHECK(told >= 20);
    CHECK(untold == 0);
    video.setViewer(kViewer);
    const int toldInAll = told;
    CHECK(comesTrue([&] { return video.picture() != last; }));
    CHECK(told == toldInAll);
}

TEST_CASE("a clock that goes on in coarse steps leaves out few pictures") {
    ComputedFilm film;
    constexpr auto kStep = std::chrono::milliseconds(30);
    constexpr double kBegin = 4, kPlayed = 2;
    const auto begin = std::chrono::steady_clock::now();
    const auto now = [&] {
        const auto steps = (std::chrono::steady_clock::now() - begin) / kStep;
        return kBegin + std::chrono::duration<double>(steps * kStep).count();
    };
    VideoThread video(film.opener(), [&] { return VideoMoment{now(), 1, false, 0, 20}; });
    std::atomic<int> told = 0;
    video.setViewer(PictureViewer{64, 36, [&] { ++told; }});
    CHECK(comesTrue([&] { return now() > kBegin + kPlayed; }));
    CHECK(told.load() > 25 * kPlayed * 0.6);
}

TEST_CASE("a film that cannot be opened has no picture, and the thread still ends") {
    std::atomic<int> tries = 0;
    VideoThread video(
        [&]() -> std::unique_ptr<VideoReader> {
            ++tries;
            return nullptr;
        },
        [] { return VideoMoment{}; });
    video.setViewer(kViewer);
    CHECK(comesTrue([&] { return tries > 0; }));
    video.setViewer(std::nullopt);
    CHECK_FALSE(video.picture());
}
