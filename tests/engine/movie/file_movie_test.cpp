#include <doctest/doctest.h>

#include <algorithm>
#include <future>
#include <limits>
#include <vector>

#include "engine/media/MediaFiles.h"
#include "engine/movie/FileEngine.h"
#include "engine/movie/Heard.h"
#include "engine/movie/SteppedPlayer.h"

using namespace qm;
using namespace qm::test;

TEST_CASE("a movie starts stopped at its beginning and says how long it is") {
    Player p;
    CHECK(p.movie->currentTime() == QTTime{0, kRate, 0});
    CHECK(p.movie->duration() == QTTime{10 * kRate, kRate, 0});
    CHECK(p.movie->timeScaleAttribute() == kRate);
}

TEST_CASE("play gives the track from its first frame, whole and without a break") {
    Player p;
    p.start();
    const auto frames = settled(p.play(kRate));
    CHECK(frames.front() == 0);
    CHECK(breaks(frames) == 0);
}

TEST_CASE("the current time is the frame that the device has played") {
    Player p;
    p.start();
    p.play(128 + 5000);
    CHECK(p.now() == 5000);
}

TEST_CASE("stop keeps the position and resume loses and repeats nothing") {
    Player p;
    p.start();
    const auto before = settled(p.play(5000));
    p.movie->stop();
    p.play(1000);
    const std::int64_t paused = p.now();
    p.play(1000);
    CHECK(p.now() == paused);
    p.start();
    const auto after = p.play(2000);
    CHECK(frameOf(after[128].left) == paused + 128);
    CHECK(paused == before.back() + 128 + 1);
}

TEST_CASE("a seek lands on exactly its frame, playing or paused") {
    Player p;
    p.movie->setCurrentTime(at(123456));
    CHECK(p.now() == 123456);
    p.settle();
    CHECK(p.now() == 123456);
    p.start();
    CHECK(settled(p.play(500)).front() == 123456);
    p.movie->setCurrentTime(at(300000));
    CHECK(p.now() == 300000);
    const auto sound = heard(p.play(4000));
    CHECK(std::find(sound.begin(), sound.end(), 300000) != sound.end());
    CHECK(p.now() > 300000);
}

TEST_CASE("a time before the start or past the end is held at the start or the end") {
    Player p;
    p.movie->setCurrentTime(at(-1));
    CHECK(p.now() == 0);
    p.movie->setCurrentTime(at(11 * kRate));
    CHECK(p.movie->currentTime() == p.movie->duration());
    p.settle();
    CHECK(p.movie->currentTime() == p.movie->duration());
}

TEST_CASE("backward play gives the exact reverse from the end") {
    Player p(50000);
    p.movie->setCurrentTime(at(50000));
    p.start(-1);
    const auto frames = settled(p.play(30000));
    CHECK(frames.front() == 49999);
    CHECK(breaks(frames, -1) == 0);
}

TEST_CASE("until a rate is set, play runs at the one that the movie prefers") {
    Player p(50000, codedFrame, -1);
    p.movie->setCurrentTime(at(50000));
    p.movie->play();
    p.settle();
    CHECK(breaks(settled(p.play(20000)), -1) == 0);
    CHECK(p.now() < 31000);
    p.movie->setPreferredRateAttribute(0.5f);
    p.movie->play();
    p.settle();
    const std::int64_t turned = p.now();
    p.play(20000);
    CHECK(p.now() > turned + 5000);
}

TEST_CASE("a rate that was set holds, whatever the movie prefers") {
    Player p(50000, codedFrame, -1);
    p.start(1);
    p.movie->setPreferredRateAttribute(2);
    p.movie->stop();
    p.movie->play();
    p.settle();
    CHECK(breaks(settled(p.play(20000))) == 0);
    CHECK(p.now() > 19000);
}

TEST_CASE("a movie that prefers no rate at all, or an absurd one, plays and can be told another") {
    for (const double rate : {0.0, 32767.0, -32768.0}) {
        CAPTURE(rate);
        Player p(50000, codedFrame, rate);
        p.movie->play();
        p.settle();
        p.play(200);
        p.start(1);
        p.movie->setCurrentTime(at(0));
        p.settle();
        p.play(5000);
        CHECK(p.now() > 2000);
    }
}

TEST_CASE("turning round while playing goes back over what was just heard") {
    Player p;
    p.start();
    p.play(20000);
    p.movie->setRate(-1);
    p.settle();
    p.play(2000);
    const auto back = heard(p.play(4000));
    CHECK(breaks(back, -1) == 0);
    CHECK(back.front() < 20000);
}

TEST_CASE("a rate of zero stands still and keeps the place") {
    Player p;
    p.start();
    p.play(5000);
    p.movie->setRate(0);
    p.play(1000);
    const std::int64_t still = p.now();
    CHECK(heard(p.play(2000)).empty());
    CHECK(p.now() == still);
    p.movie->setRate(1);
    p.settle();
    CHECK(frameOf(p.play(500)[200].left) == still + 200);
}

TEST_CASE("the loop repeats its range with exactly its period while nobody attends to it") {
    Player p;
    const std::int64_t a = 88200, b = 101430;
    p.movie->setCurrentTime(at(a));
    p.movie->setSelectionAttribute({at(a), at(b - a)});
    p.movie->setLoopsAttribute(true);
    p.movie->setPlaysSelectionOnlyAttribute(true);
    p.start();
    const auto sound = p.play(128 + 20 * std::size_t(b - a));
    int wrongOutsideFade = 0;
    for (std::size_t i = 128; i < sound.size(); ++i) {
        const std::int64_t phase = std::int64_t(i - 128) % (b - a);
        if (phase < (b - a) - 221) wrongOutsideFade += frameOf(sound[i].left) != a + phase;
    }
    CHECK(wrongOutsideFade == 0);
    CHECK_FALSE(p.movie->isDone());
}

TEST_CASE("B set behind the playhead sends it to A at once") {
    Player p;
    p.start();
    p.play(128 + 30000);
    p.movie->setSelectionAttribute({at(10000), at(20000)});
    p.movie->setLoopsAttribute(true);
    p.movie->setPlaysSelectionOnlyAttribute(true);
    p.settle();
    const auto sound = p.play(1000);
    CHECK(frameOf(sound[400].left) > 10000);
    CHECK(frameOf(sound[400].left) < 10500);
}

TEST_CASE("a loop switched on around the playhead does not disturb it") {
    Player p;
    p.start();
    p.play(30000);
    p.movie->setSelectionAttribute({at(10000), at(200000)});
    p.movie->setLoopsAttribute(true);
    p.movie->setPlaysSelectionOnlyAttribute(true);
    p.settle();
    CHECK(breaks(heard(p.play(20000))) == 0);
}

TEST_CASE("a loop set elsewhere while paused is entered when play begins, not before") {
    Player p;
    p.movie->setCurrentTime(at(5000));
    p.movie->setSelectionAttribute({at(100000), at(50000)});
    p.movie->setLoopsAttribute(true);
    p.movie->setPlaysSelectionOnlyAttribute(true);
    p.settle();
    CHECK(p.now() == 5000);
    p.start();
    CHECK(settled(p.play(500)).front() == 100000);
}

TEST_CASE("an empty selection loops the whole track") {
    Player p(3000);
    p.movie->setSelectionAttribute({at(1000), at(0)});
    p.movie->setLoopsAttribute(true);
    p.movie->setPlaysSelectionOnlyAttribute(true);
    p.start();
    const auto frames = settled(p.play(9000));
    CHECK(frames.front() == 0);
    CHECK(*std::max_element(frames.begin(), frames.end()) > 2700);
    CHECK_FALSE(p.movie->isDone());
}

TEST_CASE("a selection that ends before it begins loops the passage between the two") {
    Player p(9000);
    loop(p, 5000, 2000);
    p.start();
    const auto sound = p.play(128 + 9000);
    for (const int pass : {0, 1, 2}) CHECK(frameOf(sound[128 + std::size_t(pass) * 3000].left) == 2000);
    CHECK(frameOf(sound[128 + 2700].left) == 4700);
    p.movie->setCurrentTime(at(8000));
    CHECK(p.now() == 2000);
}

TEST_CASE("in a loop both edges can be gone to, whichever way was played last") {
    constexpr std::int64_t a = 88200, b = 220500;
    for (const float rate : {1.0f, -1.0f}) {
        CAPTURE(rate);
        Player p;
        loop(p, a, b);
        p.start(rate);
        p.play(5000);
        p.pause();
        for (const std::int64_t edge : {a, b}) {
            p.movie->setCurrentTime(at(edge));
            CHECK(p.now() == edge);
            p.settle();
            CHECK(p.now() == edge);
        }
    }
}

TEST_CASE("play from the edge of a loop plays the passage, forward from A and backward from B") {
    constexpr std::int64_t a = 88200, b = 220500;
    for (const std::int64_t edge : {a, b}) {
        for (const float rate : {1.0f, -1.0f}) {
            CAPTURE(edge);
            CAPTURE(rate);
            Player p;
            loop(p, a, b);
            p.movie->setCurrentTime(at(edge));
            p.start(rate);
            const auto frames = settled(p.play(500));
            REQUIRE_FALSE(frames.empty());
            CHECK(frames.front() == (rate > 0 ? a : b - 1));
        }
    }
}

TEST_CASE("while the whole track repeats backward, going to its start stands at the start") {
    Player p;
    p.movie->setLoopsAttribute(true);
    p.start(-1);
    p.play(5000);
    p.pause();
    p.movie->setCurrentTime(at(0));
    p.settle();
    CHECK(p.now() == 0);
}

TEST_CASE("a selection longer than any time loops to the end of the track") {
    Player p(3000);
    p.movie->setSelectionAttribute({{0, 1, 0}, {std::numeric_limits<std::int64_t>::max(), 1, 0}});
    p.movie->setLoopsAttribute(true);
    p.movie->setPlaysSelectionOnlyAttribute(true);
    p.start();
    const auto frames = settled(p.play(9000));
    CHECK(*std::max_element(frames.begin(), frames.end()) > 2700);
    p.movie->setCurrentTime({std::numeric_limits<std::int64_t>::min(), 1, 0});
    CHECK(p.now() == 0);
}

TEST_CASE("loop without a selection repeats the whole track from its end") {
    Player p(3000);
    p.movie->setLoopsAttribute(true);
    p.start();
    const auto sound = p.play(128 + 9000);
    CHECK(frameOf(sound[128 + 3000].left) == 0);
    CHECK(frameOf(sound[128 + 6500].left) == 500);
}

TEST_CASE("switching the loop off plays on past B") {
    Player p;
    p.movie->setSelectionAttribute({at(0), at(30000)});
    p.movie->setLoopsAttribute(true);
    p.movie->setPlaysSelectionOnlyAttribute(true);
    p.start();
    p.play(20000);
    p.movie->setLoopsAttribute(false);
    p.movie->setPlaysSelectionOnlyAttribute(false);
    p.settle();
    const auto frames = heard(p.play(20000));
    CHECK(breaks(frames) == 0);
    CHECK(frames.back() > 35000);
}

TEST_CASE("a skip out of the looped range goes to its edge") {
    Player p;
    p.movie->setSelectionAttribute({at(100000), at(50000)});
    p.movie->setLoopsAttribute(true);
    p.movie->setPlaysSelectionOnlyAttribute(true);
    p.start();
    p.play(3000);
    p.movie->setCurrentTime(at(400000));
    p.settle();
    p.play(1000);
    CHECK(p.now() >= 100000);
    CHECK(p.now() < 101500);
}

TEST_CASE("the position keeps step with a slowed track") {
    Player p;
    p.start(0.5f);
    p.play(128 + 40000);
    CHECK(std::abs(p.now() - 20000) < 3);
}

TEST_CASE("gain, balance and mute act on the sound that is played") {
    Player p;
    p.movie->setVolume(0.5f);
    p.movie->setBalance(0.5f);
    p.start();
    const StereoFrame f = p.play(1000).back();
    CHECK(f.right == doctest::Approx(-2 * f.left));
    p.movie->setMuted(true);
    CHECK(p.play(1000).back() == StereoFrame{});
    CHECK(p.now() > 1500);
}

TEST_CASE("without any device time goes on silently") {
    OpenedMedia media;
    media.description.hasSound = true;
    media.sound = std::make_unique<ComputedSound>(kRate, codedFrame);
    MovieRegistry registry;
    FileMovie movie(registry, std::make_shared<Reaper>(), std::move(media),
                    [](int, OutputSource&) -> Result<std::unique_ptr<AudioOutput>> {
                        return Error{ErrorCategory::Device, "none"};
                    });
    movie.play();
    movie.setRate(1);
    Player::waitFor([&] { return movie.isDone(); });
    CHECK(movie.isDone());
}

TEST_CASE("a film without sound counts its time in units of 600") {
    OpenedMedia media;
    media.description.hasVideo = true;
    media.description.durationSeconds = 2.5;
    MovieRegistry registry;
    FileMovie movie(registry, std::make_shared<Reaper>(), std::move(media), openNullOutput);
    CHECK(movie.duration() == QTTime{1500, 600, 0});
    movie.setCurrentTime({600, 600, 0});
    CHECK(movie.currentTime() == QTTime{600, 600, 0});
}

TEST_CASE("a movie whose device does not let go is given up at once, and another one plays meanwhile") {
    std::promise<void> answer;
    struct StandingOutput : SteppedOutput {
        StandingOutput(OutputSource& source, std::shared_future<void> waitsFor)
            : SteppedOutput(source), answers(std::move(waitsFor)) {}
        ~StandingOutput() override { answers.wait(); }
        std::shared_future<void> answers;
    };
    const auto media = [] {
        OpenedMedia opened;
        opened.description.hasSound = true;
        opened.sound = std::make_unique<ComputedSound>(kRate, codedFrame);
        return opened;
    };
    MovieRegistry registry;
    const auto reaper = std::make_shared<Reaper>();
    const auto answers = answer.get_future().share();
    for (int i = 0; i < 100; ++i) {
        FileMovie movie(registry, reaper, media(),
                        [&](int, OutputSource& source) -> Result<std::unique_ptr<AudioOutput>> {
                            return std::unique_ptr<AudioOutput>(std::make_unique<StandingOutput>(source, answers));
                        });
        Player::waitFor([&] { return movie.renderThread().isCaughtUp(); });
    }
    CHECK(reaper->ending() == 100);
    Player p;
    p.start();
    CHECK_FALSE(settled(p.play(1000)).empty());
    answer.set_value();
}

TEST_CASE("opening a file that does not answer can be given up") {
    TemporaryFolder folder;
    FileEngine* opening = nullptr;
    MovieRegistry registry;
    FileEngine engine(registry, openNullOutput, [&](const IsDone& isDone) {
        opening->giveUpOpening();
        CHECK(isDone(std::chrono::milliseconds(0)));
    });
    opening = &engine;
    // Whether the thread that opens it was quicker is its own affair.
    const auto movie = engine.movieWithFile(folder.file("nowhere.wav"));
    REQUIRE_FALSE(movie);
    const ErrorCategory category = movie.error().category;
    CHECK((category == ErrorCategory::GivenUp || category == ErrorCategory::NotFound));
}
