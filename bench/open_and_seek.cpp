// Open-to-ready and seek-to-first-frame of a sound file, and the memory it takes: bench_open_and_seek FILE...
// The peer is decoding alone: each time is also given as a ratio to the time the same machine needs, in the same run,
// to decode one second of the file's sound.
#include <chrono>
#include <cstdio>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "engine/media/SoundReader.h"
#include "engine/render/Renderer.h"
#include "engine/sound/PcmCache.h"

namespace {

using Clock = std::chrono::steady_clock;

double since(Clock::time_point begin) {
    return std::chrono::duration<double>(Clock::now() - begin).count();
}

double residentMiB() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with("VmRSS:")) return std::stod(line.substr(6)) / 1024;
    return 0;
}

int measure(const std::string& path) {
    const auto opening = Clock::now();
    auto opened = qm::openMedia(path);
    if (!opened || !opened.value().sound) {
        std::fprintf(stderr, "%s: cannot be opened\n", path.c_str());
        return 1;
    }
    qm::PcmCache cache(std::move(opened.value().sound));
    std::vector<qm::StereoFrame> block(512);
    cache.read(0, block);
    const double open = since(opening);

    qm::Renderer renderer(cache);
    std::mt19937_64 random(1);
    const int seeks = 40;
    double total = 0, worst = 0;
    for (int i = 0; i < seeks; ++i) {
        const auto target = static_cast<std::int64_t>(random() % static_cast<std::uint64_t>(cache.length()));
        const auto begin = Clock::now();
        renderer.begin(qm::makePlayhead(target, false, false, 0, 0, cache.length()), {}, true, 0);
        renderer.render(block);
        total += since(begin);
        worst = std::max(worst, since(begin));
    }
    auto peer = qm::openMedia(path);
    std::vector<float> second(2 * static_cast<std::size_t>(cache.sampleRate()));
    const auto decoding = Clock::now();
    for (int i = 0; i < 10; ++i)
        peer.value().sound->read(std::int64_t{i} * cache.sampleRate(), second.data(), second.size() / 2);
    const double decodeSecond = since(decoding) / 10;
    std::printf("%s: %.0f s long\n", path.c_str(), double(cache.length()) / cache.sampleRate());
    std::printf("  decode one second         %8.3f ms  (the unit of the ratios)\n", decodeSecond * 1e3);
    std::printf("  open to first frame       %8.3f ms  %6.2f\n", open * 1e3, open / decodeSecond);
    std::printf("  seek to first frame, mean %8.3f ms  %6.2f\n", total / seeks * 1e3, total / seeks / decodeSecond);
    std::printf("  seek to first frame, most %8.3f ms  %6.2f\n", worst * 1e3, worst / decodeSecond);
    std::printf("  resident                  %8.1f MiB\n", residentMiB());
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fputs("usage: bench_open_and_seek FILE...\n", stderr);
        return 2;
    }
    int status = 0;
    for (int i = 1; i < argc; ++i) status |= measure(argv[i]);
    return status;
}
