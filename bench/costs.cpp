// What a loop's wrap, a reversal and a whole file cost, in counts instead of seconds: bench_costs FILE...
// A wrap and a reversal are to cost nothing: no frame decoded, nothing allocated on the thread that renders. Memory is
// the program's own, after opening the file and after playing through all of it.
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <new>
#include <string>
#include <thread>
#include <vector>

#include "Memory.h"
#include "engine/media/SoundReader.h"
#include "engine/render/Renderer.h"
#include "engine/sound/PcmCache.h"

namespace {

thread_local long allocationsHere = 0;
std::atomic<long> framesDecoded{0};

class CountedReader : public qm::SoundReader {
public:
    explicit CountedReader(std::unique_ptr<qm::SoundReader> reader) : m_reader(std::move(reader)) {}
    int sampleRate() const override { return m_reader->sampleRate(); }
    std::int64_t length() const override { return m_reader->length(); }
    int channels() const override { return m_reader->channels(); }
    bool read(std::int64_t first, float* stereo, std::size_t count) override {
        framesDecoded += static_cast<long>(count);
        return m_reader->read(first, stereo, count);
    }

private:
    std::unique_ptr<qm::SoundReader> m_reader;
};

class Playing {
public:
    explicit Playing(qm::PcmCache& cache) : m_cache(cache) {}

    void begin(std::int64_t position, bool backward, bool loops, double speed) {
        m_playhead = qm::makePlayhead(position, backward, loops, m_loopBegin, m_loopEnd, m_cache.length());
        m_renderer.begin(m_playhead, {speed}, true, 0);
    }
    void play(double outputSeconds) {
        for (double left = outputSeconds * m_cache.sampleRate(); left > 0; left -= double(m_block.size()))
            m_renderer.render(m_block);
    }
    void setLoop(std::int64_t begin, std::int64_t end) {
        m_loopBegin = begin;
        m_loopEnd = end;
    }

private:
    qm::PcmCache& m_cache;
    qm::Renderer m_renderer{m_cache};
    qm::Playhead m_playhead;
    std::int64_t m_loopBegin = 0, m_loopEnd = 0;
    std::vector<qm::StereoFrame> m_block = std::vector<qm::StereoFrame>(512);
};

// Until the decoder has nothing left to do.
void awaitDecoder() {
    for (long before = -1; before != framesDecoded;) {
        before = framesDecoded;
        std::this_thread::sleep_for(std::chrono::milliseconds(500));
    }
}

void measureWraps(qm::PcmCache& cache, double speed, bool backward) {
    const std::int64_t a = cache.length() / 2, b = a + 2 * cache.sampleRate();
    constexpr int kPasses = 10;
    const double pass = 2 / speed;
    Playing playing(cache);
    playing.setLoop(a, b);
    playing.begin(backward ? b : a, backward, true, speed);
    playing.play(2 * pass);
    awaitDecoder();
    const long decoded = framesDecoded, allocated = allocationsHere;
    playing.play(kPasses * pass);
    std::printf("  a wrap at %5.2f: frames decoded %ld, allocations %ld\n", backward ? -speed : speed,
                (framesDecoded - decoded) / kPasses, (allocationsHere - allocated) / kPasses);
}

// The frames of the way back that had to be decoded again, of a second that was just heard.
void measureReversal(qm::PcmCache& cache) {
    Playing playing(cache);
    const std::int64_t start = cache.length() / 3;
    playing.begin(start, false, false, 1);
    playing.play(3);
    awaitDecoder();
    const long decoded = framesDecoded, allocated = allocationsHere;
    std::vector<qm::StereoFrame> second(static_cast<std::size_t>(cache.sampleRate()));
    const long own = allocationsHere - allocated;
    cache.read(start + 2 * cache.sampleRate(), second);
    std::printf("  a reversal: of the second just heard, frames decoded again %ld, allocations %ld\n",
                framesDecoded - decoded, allocationsHere - allocated - own);
}

// What was decoded when the first sound of a track played backward from its end was there.
void measureStartFromTheEnd(const std::string& path) {
    auto opened = qm::openMedia(path);
    const long decoded = framesDecoded;
    const auto begin = std::chrono::steady_clock::now();
    qm::PcmCache cache(std::make_unique<CountedReader>(std::move(opened.value().sound)));
    Playing playing(cache);
    playing.begin(cache.length(), true, false, 1);
    playing.play(0.02);
    const std::chrono::duration<double, std::milli> took = std::chrono::steady_clock::now() - begin;
    std::printf("  the first sound from the end backward: frames decoded %ld, after %.1f ms\n", framesDecoded - decoded,
                took.count());
}

int measure(const std::string& path) {
    const double before = qm::bench::residentMiB();
    auto opened = qm::openMedia(path);
    if (!opened || !opened.value().sound) {
        std::fprintf(stderr, "%s: cannot be opened\n", path.c_str());
        return 1;
    }
    qm::PcmCache cache(std::make_unique<CountedReader>(std::move(opened.value().sound)));
    std::printf("%s: %.0f s long\n", path.c_str(), double(cache.length()) / cache.sampleRate());
    awaitDecoder();
    const double open = qm::bench::residentMiB();
    for (const double speed : {1.0, 0.5}) {
        measureWraps(cache, speed, false);
        measureWraps(cache, speed, true);
    }
    measureReversal(cache);
    measureStartFromTheEnd(path);
    Playing playing(cache);
    playing.begin(0, false, false, 1);
    playing.play(double(cache.length()) / cache.sampleRate());
    std::printf("  memory: %.1f MiB more when opened, %.1f MiB more when all of it has been played\n", open - before,
                qm::bench::residentMiB() - before);
    return 0;
}

}  // namespace

void* operator new(std::size_t size) {
    ++allocationsHere;
    if (void* memory = std::malloc(size)) return memory;
    throw std::bad_alloc();
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fputs("usage: bench_costs FILE...\n", stderr);
        return 2;
    }
    int status = 0;
    for (int i = 1; i < argc; ++i) status |= measure(argv[i]);
    return status;
}
