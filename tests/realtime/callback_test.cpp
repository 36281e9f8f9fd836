// The device's callback under watch: every allocation, release and lock that its thread makes is counted.
#include <dlfcn.h>
#include <doctest/doctest.h>
#include <pthread.h>

#include <cstdlib>
#include <thread>

#include "engine/capture/CaptureSession.h"
#include "engine/movie/FileMovie.h"
#include "support/HeapWatch.h"
#include "support/NotRun.h"
#include "support/Signals.h"
#include "support/SteppedInput.h"

namespace {

thread_local int t_locks = 0;

}  // namespace

#ifdef QUILLMERE_HEAP_WATCH
extern "C" {
int pthread_mutex_lock(pthread_mutex_t* mutex) {
    using Lock = int (*)(pthread_mutex_t*);
    static const Lock real = reinterpret_cast<Lock>(dlsym(RTLD_NEXT, "pthread_mutex_lock"));
    t_locks += qm::test::t_isWatched;
    return real(mutex);
}
}
#endif

using namespace qm;
using namespace qm::test;

namespace {

struct Watched {
    Watched() {
        OpenedMedia media;
        media.description.hasSound = true;
        media.sound = std::make_unique<ComputedSound>(2000000, [](std::int64_t n) { return toneFrame(n, 330); });
        movie = std::make_unique<FileMovie>(1, std::make_shared<MovieRegistry>(), std::move(media),
                                            [this](int, OutputSource& source) -> Result<std::unique_ptr<AudioOutput>> {
                                                auto stepped = std::make_unique<SteppedOutput>(source);
                                                device = stepped.get();
                                                return std::unique_ptr<AudioOutput>(std::move(stepped));
                                            });
        settle();
    }

    void settle() const {
        for (int i = 0; i < 20000 && !movie->renderThread().isCaughtUp(); ++i)
            std::this_thread::sleep_for(std::chrono::microseconds(500));
    }

    void play(int callbacks) {
        std::vector<StereoFrame> block(441);
        for (int i = 0; i < callbacks; ++i) {
            t_isWatched = true;
            device->step(block);
            t_isWatched = false;
        }
    }

    SteppedOutput* device = nullptr;
    std::unique_ptr<FileMovie> movie;
};

}  // namespace

TEST_CASE("the watch sees allocations and locks") {
    if (!kWatchCounts) NOT_RUN_BECAUSE("a sanitizer stands in front of the same functions");
    t_heapCalls = t_locks = 0;
    t_isWatched = true;
    void* volatile block = std::malloc(10);
    std::free(block);
    pthread_mutex_t mutex = PTHREAD_MUTEX_INITIALIZER;
    pthread_mutex_lock(&mutex);
    t_isWatched = false;
    pthread_mutex_unlock(&mutex);
    CHECK(t_heapCalls == 2);
    CHECK(t_locks == 1);
}

TEST_CASE("the callback neither allocates nor locks, whatever is done to the movie") {
    Watched w;
    t_heapCalls = t_locks = 0;
    w.movie->play();
    w.movie->meter().enableVolume(true);
    w.movie->meter().enableBands(true);
    bool metered = false;
    const auto act = [&](const std::function<void()>& action) {
        action();
        w.play(3);
        w.settle();
        w.play(20);
        metered = metered || w.movie->meter().levels().averagePower[0] > Meter::kFloor;
    };
    for (const float rate : {1.0f, 0.5f, -0.5f, -1.0f, 2.0f, 0.0f, 1.0f}) act([&] { w.movie->setRate(rate); });
    act([&] { w.movie->setPitch(-300); });
    act([&] { w.movie->setVolume(0.3f); });
    act([&] { w.movie->setBalance(-0.7f); });
    act([&] { w.movie->setTone({220, 30}); });
    act([&] { w.movie->setCurrentTime({1000000, 44100, 0}); });
    act([&] {
        w.movie->setSelectionAttribute({{50000, 44100, 0}, {30000, 44100, 0}});
        w.movie->setLoopsAttribute(true);
        w.movie->setPlaysSelectionOnlyAttribute(true);
    });
    act([&] { w.movie->stop(); });
    act([&] { w.movie->play(); });
    CHECK(metered);
    CHECK(t_heapCalls == 0);
    CHECK(t_locks == 0);
}

TEST_CASE("the input's callback neither allocates nor locks, recording or not, also when the ring is full") {
    SteppedInput::Hand hand;
    SystemCapture capture(hand.factory());
    const auto device = capture.defaultInputDeviceWithMediaType(QTMediaType::Sound);
    const auto session = capture.makeSession();
    const auto output = capture.makeMovieFileOutput();
    REQUIRE(device->open());
    REQUIRE(session->addInput(capture.makeDeviceInput(device)));
    session->startRunning();
    REQUIRE(session->addOutput(output));
    const std::vector<StereoFrame> frames(MovieFileOutput::kRingFrames + 1, {0.1f, 0.2f});
    t_heapCalls = t_locks = 0;
    const auto arrive = [&] {
        t_isWatched = true;
        hand.input->step(frames);
        t_isWatched = false;
    };
    arrive();
    output->recordToOutputFileURL("/dev/null");
    arrive();
    output->recordToOutputFileURL(std::nullopt);
    arrive();
    t_isWatched = true;
    hand.input->vanish();
    t_isWatched = false;
    CHECK(t_heapCalls == 0);
    CHECK(t_locks == 0);
}
