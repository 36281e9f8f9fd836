#include "engine/sound/PcmCache.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <chrono>
#include <map>
#include <mutex>
#include <semaphore>
#include <string>
#include <thread>
#include <vector>

#include "support/Signals.h"

using namespace qm;
using namespace qm::test;

namespace {

constexpr std::int64_t kChunk = PcmCache::kChunkFrames;

// A sound that writes down which chunks were decoded, in their order, and can be made to wait for leave before each.
class WatchedSound : public ComputedSound {
public:
    explicit WatchedSound(std::int64_t chunks, bool waits = false)
        : ComputedSound(chunks * kChunk, codedFrame), m_waits(waits) {}

    bool read(std::int64_t first, float* stereo, std::size_t count) override {
        {
            const std::lock_guard lock(m_mutex);
            m_decoded.push_back(first / kChunk);
        }
        if (m_waits) m_leave.acquire();
        return ComputedSound::read(first, stereo, count);
    }

    std::vector<std::int64_t> decoded() const {
        const std::lock_guard lock(m_mutex);
        return m_decoded;
    }
    void giveLeave(std::ptrdiff_t chunks) { m_leave.release(chunks); }
    void awaitDecoded(std::size_t chunks) const {
        while (decoded().size() < chunks) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }

private:
    const bool m_waits;
    mutable std::mutex m_mutex;
    std::vector<std::int64_t> m_decoded;
    std::counting_semaphore<> m_leave{0};
};

struct WatchedCache {
    explicit WatchedCache(std::int64_t chunks, std::size_t budgetChunks = 2048, bool waits = false)
        : WatchedCache(std::make_unique<WatchedSound>(chunks, waits), budgetChunks) {}
    WatchedCache(std::unique_ptr<WatchedSound> watched, std::size_t budgetChunks)
        : sound(*watched), cache(std::move(watched), budgetChunks * kChunk * sizeof(StereoFrame)) {}

    bool readChunk(std::int64_t number) {
        std::vector<StereoFrame> out(kChunk);
        return cache.read(number * kChunk, out) && frameOf(out[0].left) == number * kChunk % kCodeWrap;
    }

    std::string order() const {
        std::string text;
        for (const std::int64_t number : sound.decoded()) text += std::to_string(number) + ' ';
        return text;
    }

    // How often the chunk that was decoded most often was decoded.
    int mostDecodings() const {
        std::map<std::int64_t, int> times;
        int most = 0;
        for (const std::int64_t number : sound.decoded()) most = std::max(most, ++times[number]);
        return most;
    }

    WatchedSound& sound;
    PcmCache cache;
};

}  // namespace

TEST_CASE("playing backward decodes every frame once") {
    WatchedCache w(100);
    w.cache.setOutlook({true, 0, 0});
    for (std::int64_t number = 99; number >= 0; --number) REQUIRE(w.readChunk(number));
    CHECK(w.mostDecodings() == 1);
}

TEST_CASE("playing backward decodes ahead in sweeps that grow to eight chunks") {
    WatchedCache w(100, 2048, true);
    w.sound.awaitDecoded(1);
    w.cache.setOutlook({true, 0, 0});
    w.cache.interrupt();
    CHECK_FALSE(w.readChunk(90));
    w.sound.giveLeave(1000);
    w.sound.awaitDecoded(18);
    CHECK(w.order() == "0 90 88 89 82 83 84 85 86 87 74 75 76 77 78 79 80 81 ");
    CHECK(w.readChunk(85));
    w.sound.awaitDecoded(26);
    CHECK(w.order().ends_with("81 66 67 68 69 70 71 72 73 "));
}

TEST_CASE("played backward from the end, the end is decoded before anything else") {
    WatchedCache w(10000);
    w.cache.setOutlook({true, 0, 0});
    REQUIRE(w.readChunk(9999));
    const auto decoded = w.sound.decoded();
    CHECK(std::find(decoded.begin(), decoded.end(), 9999) - decoded.begin() <= 1);  // the beginning was wanted first
}

TEST_CASE("a jump does not wait for the rest of a backward sweep") {
    WatchedCache w(100, 2048, true);
    w.sound.awaitDecoded(1);
    w.cache.setOutlook({true, 0, 0});
    w.cache.interrupt();  // so that a read only says what is wanted
    CHECK_FALSE(w.readChunk(90));
    w.sound.giveLeave(4);
    w.sound.awaitDecoded(5);
    CHECK(w.order() == "0 90 88 89 82 ");
    CHECK_FALSE(w.readChunk(10));
    w.sound.giveLeave(1000);
    w.sound.awaitDecoded(6);
    CHECK(w.sound.decoded()[5] == 10);
}

TEST_CASE("the passes of a loop after the first one cost no decoding, forward and backward") {
    for (const bool backward : {false, true}) {
        WatchedCache w(200);
        w.cache.setOutlook({backward, 50 * kChunk, 80 * kChunk});
        for (int pass = 0; pass < 5; ++pass)
            for (std::int64_t n = 0; n < 30; ++n) REQUIRE(w.readChunk(backward ? 79 - n : 50 + n));
        CHECK(w.mostDecodings() == 1);
    }
}

TEST_CASE("turning round costs no decoding of what was just heard") {
    WatchedCache w(200);
    for (std::int64_t n = 0; n < 40; ++n) REQUIRE(w.readChunk(n));
    w.cache.setOutlook({true, 0, 0});
    for (std::int64_t n = 39; n >= 0; --n) REQUIRE(w.readChunk(n));
    w.cache.setOutlook({false, 0, 0});
    for (std::int64_t n = 0; n < 60; ++n) REQUIRE(w.readChunk(n));
    CHECK(w.mostDecodings() == 1);
}

TEST_CASE("memory stays within the budget however much is read") {
    const std::int64_t length = 400 * PcmCache::kChunkFrames;
    const std::size_t budget = 40 * PcmCache::kChunkFrames * sizeof(StereoFrame);
    PcmCache cache(std::make_unique<ComputedSound>(length, codedFrame), budget);
    std::vector<StereoFrame> out(PcmCache::kChunkFrames);
    for (std::int64_t n = 0; n < length; n += PcmCache::kChunkFrames) {
        REQUIRE(cache.read(n, out));
        REQUIRE(cache.residentBytes() <= budget);
    }
    CHECK(frameOf(out[0].left) == (length - PcmCache::kChunkFrames) % kCodeWrap);
}

TEST_CASE("an interrupted read gives up instead of waiting for a decoder that hangs") {
    struct Hanging : ComputedSound {
        Hanging() : ComputedSound(100000, codedFrame) {}
        bool read(std::int64_t first, float* stereo, std::size_t count) override {
            while (!released) std::this_thread::yield();
            return ComputedSound::read(first, stereo, count);
        }
        std::atomic<bool> released{false};
    };
    auto sound = std::make_unique<Hanging>();
    Hanging& hanging = *sound;
    PcmCache cache(std::move(sound));
    std::vector<StereoFrame> out(10);
    std::thread user([&] { cache.interrupt(); });
    CHECK_FALSE(cache.read(0, out));
    user.join();
    hanging.released = true;
    cache.resume();
    CHECK(cache.read(0, out));
}
