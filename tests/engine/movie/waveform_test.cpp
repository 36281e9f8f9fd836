#include <doctest/doctest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <future>
#include <thread>

#include "engine/media/MediaFiles.h"
#include "engine/movie/FileEngine.h"
#include "engine/movie/WaveformScan.h"
#include "support/Signals.h"

using namespace qm;
using namespace qm::test;

namespace {

Waveform awaited(const WaveformScan& scan) {
    for (;;) {
        Waveform waveform = scan.waveform();
        if (waveform.isComplete) return waveform;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

SoundOpener computed(std::int64_t frames, std::function<StereoFrame(std::int64_t)> frameAt) {
    return [=] { return std::make_unique<ComputedSound>(frames, frameAt); };
}

std::size_t partsOf(std::int64_t frames) {
    return std::size_t(std::min(frames, WaveformScan::kParts));
}

// What the picture of a file should be, from what is heard of it.
std::vector<float> peaksHeard(const std::string& path) {
    const std::vector<float> heard = readLinearly(*openSound(path));
    const std::size_t frames = heard.size() / 2, parts = partsOf(std::int64_t(frames));
    std::vector<float> peaks(parts);
    for (std::size_t part = 0; part < parts; ++part)
        for (std::size_t i = 2 * (frames * part / parts); i < 2 * (frames * (part + 1) / parts); ++i)
            peaks[part] = std::max(peaks[part], std::min(std::abs(heard[i]), 1.0f));
    return peaks;
}

}  // namespace

TEST_CASE("a part of the waveform is the largest sample of either channel in its time") {
    constexpr std::int64_t kPart = 100;
    const WaveformScan scan(computed(WaveformScan::kParts * kPart, [](std::int64_t n) -> StereoFrame {
        const auto size = float(n / kPart) / float(WaveformScan::kParts);
        if (n % kPart == 7) return {-size, 0};
        return n % kPart == 50 ? StereoFrame{0, size / 2} : StereoFrame{};
    }));
    const Waveform waveform = awaited(scan);
    REQUIRE(waveform.peaks.size() == WaveformScan::kParts);
    std::size_t wrong = 0;
    for (std::size_t part = 0; part < waveform.peaks.size(); ++part)
        wrong += waveform.peaks[part] != float(part) / float(WaveformScan::kParts);
    CHECK(wrong == 0);
}

TEST_CASE("a sound of a few frames has a part for each") {
    const WaveformScan scan(computed(3, [](std::int64_t n) -> StereoFrame { return {0.25f * float(n), 0}; }));
    CHECK(awaited(scan).peaks == std::vector<float>{0, 0.25f, 0.5f});
}

TEST_CASE("samples beyond full scale and those that are no numbers do not leave the picture's bounds") {
    const WaveformScan scan(computed(2, [](std::int64_t n) -> StereoFrame {
        return n == 0 ? StereoFrame{-7, 0} : StereoFrame{std::nanf(""), 0.5f};
    }));
    CHECK(awaited(scan).peaks == std::vector<float>{1, 0.5f});
}

TEST_CASE("the parts come in from the beginning") {
    std::promise<void> goOn;
    const std::shared_future<void> held = goOn.get_future();
    const WaveformScan scan(computed(WaveformScan::kParts, [held](std::int64_t n) -> StereoFrame {
        if (n == 500) held.wait();
        return {0.5f, 0.5f};
    }));
    Waveform waveform;
    while ((waveform = scan.waveform()).known < 500) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    CHECK(waveform.known == 500);
    CHECK_FALSE(waveform.isComplete);
    CHECK(waveform.peaks[499] == 0.5f);
    CHECK(waveform.peaks[500] == 0);
    goOn.set_value();
    CHECK(awaited(scan).peaks == std::vector<float>(WaveformScan::kParts, 0.5f));
}

TEST_CASE("a scan that is not wanted any more ends in the middle") {
    std::atomic<std::int64_t> last{0};
    {
        const WaveformScan scan(computed(std::int64_t{1} << 40, [&](std::int64_t n) -> StereoFrame {
            last = n;
            return {};
        }));
        while (last == 0) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    CHECK(last < std::int64_t{1} << 40);
}

TEST_CASE("a sound that cannot be opened again has no waveform") {
    const WaveformScan scan([]() -> std::unique_ptr<SoundReader> { return nullptr; });
    CHECK(awaited(scan).peaks.empty());
}

TEST_CASE("a movie's waveform is that of what is heard of it, in every kind of file") {
    const TemporaryFolder folder;
    std::vector<std::string> paths = {folder.write("mono.wav", waveFile(1, 44100, 90000, SampleFormat::Int16)),
                                      folder.write("short.aiff", aiffFile(2, 48000, 1234))};
    const std::string sound = "-f lavfi -i aevalsrc='sin(2*PI*330*t)*mod(t\\,0.3)|0.2*random(0)':d=3:s=44100 ";
    for (const std::string name : {"a.mp3", "a.m4a", "a.mov", "a.wma"}) {
        REQUIRE(encode(sound, folder.file(name)));
        paths.push_back(folder.file(name));
    }
    MovieRegistry movies;
    FileEngine engine(movies, [](int, OutputSource&) -> Result<std::unique_ptr<AudioOutput>> {
        return Error{ErrorCategory::Device, "none"};
    });
    for (const std::string& path : paths) {
        CAPTURE(path);
        auto movie = engine.movieWithFile(path);
        REQUIRE(movie);
        Waveform waveform;
        while (!(waveform = movie.value()->waveform()).isComplete)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        CHECK(waveform.peaks == peaksHeard(path));
    }
}
