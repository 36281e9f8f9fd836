// Renders a track, or a passage of it in a loop, to a 32-bit float stereo wave file with the player's own engine:
// slower or faster, higher or lower, backwards.
#include <sys/resource.h>

#include <algorithm>
#include <cmath>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "RenderOptions.h"
#include "WaveFile.h"
#include "engine/api/StandardStreams.h"
#include "engine/media/SoundReader.h"
#include "engine/render/Renderer.h"
#include "engine/sound/PcmCache.h"
#include "printed-answers.h"

namespace {

using namespace qm;

// What to play and for how many output frames.
struct Job {
    Playhead playhead;
    std::int64_t outputFrames = 0;
};

Job plan(const Options& o, int sampleRate, std::int64_t length) {
    const bool backward = o.rate < 0;
    const double speed = std::abs(o.rate);
    const auto position = [&](const TimeArgument& t) { return std::min(t.frames(sampleRate), length); };
    if (o.loopA) {
        const std::int64_t a = position(*o.loopA), b = position(*o.loopB);
        if (b <= a) throw UsageError{"the loop holds no frames"};
        const Playhead head = makePlayhead(backward ? b : a, backward, true, a, b, length);
        return {head, std::llround(static_cast<double>(head.period() * o.passes) / speed)};
    }
    const std::int64_t from = o.from ? position(*o.from) : (backward ? length : 0);
    const std::int64_t to = o.to ? position(*o.to) : (backward ? 0 : length);
    const std::int64_t begin = std::min(from, to), end = std::max(from, to);
    if (backward ? to > from : from > to) throw UsageError{"--to lies before --from in the direction of play"};
    return {Playhead{from, begin, end, backward, false}, std::llround(static_cast<double>(end - begin) / speed)};
}

volatile std::sig_atomic_t g_endingSignal = 0;

// The first of these signals ends the program once its unfinished file is gone, the second one at once. One that is
// ignored, as under nohup, stays so.
void endTidily() {
    struct sigaction action {};
    action.sa_handler = [](int number) { g_endingSignal = number; };
    action.sa_flags = SA_RESETHAND;
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction former {};
        ::sigaction(number, nullptr, &former);
        if (former.sa_handler != SIG_IGN) ::sigaction(number, &action, nullptr);
    }
}

double cpuSeconds() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval& t) {
        return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_usec) * 1e-6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

int fail(int status, const std::string& message) {
    std::fprintf(stderr, "quillmere-render: %s\n", message.c_str());
    return status;
}

struct Gains {
    float left, right;
};

Gains gainsOf(const Options& o) {
    return {static_cast<float>(o.gain * std::min(1.0, 1.0 - o.balance)),
            static_cast<float>(o.gain * std::min(1.0, 1.0 + o.balance))};
}

// Renders into the file, if there is one. Why that ended early; none if it did not.
std::optional<std::string> renderInto(WaveFile* file, Renderer& renderer, Gains gains, std::int64_t frames) {
    std::vector<StereoFrame> block(4096);
    for (std::int64_t done = 0; done < frames;) {
        if (g_endingSignal != 0) return "not finished";
        const auto count = static_cast<std::size_t>(std::min<std::int64_t>(4096, frames - done));
        const std::span<StereoFrame> out(block.data(), count);
        renderer.render(out);
        for (StereoFrame& f : out) f = {f.left * gains.left, f.right * gains.right};
        if (file && !file->write(out)) return "cannot be written";
        done += static_cast<std::int64_t>(count);
    }
    if (file && !file->close()) return "cannot be written";
    return std::nullopt;
}

void printStats(const Options& o, const PcmCache& cache, std::int64_t outputFrames) {
    std::printf(
        "{\"frames_in\": %lld, \"frames_out\": %lld, \"cpu_seconds\": %.3f, \"length\": %lld, \"sample_rate\": "
        "%d}\n",
        std::llround(static_cast<double>(outputFrames) * std::abs(o.rate)), static_cast<long long>(outputFrames),
        cpuSeconds(), static_cast<long long>(cache.length()), cache.sampleRate());
}

int render(const Options& o) {
    const auto objection = o.null ? std::nullopt : objectionTo(o.output, o.input);
    if (objection) return fail(2, *objection);
    auto opened = openMedia(o.input);
    if (!opened) return fail(1, opened.error().message);
    if (!opened.value().sound) return fail(1, o.input + ": has no sound");
    PcmCache cache(std::move(opened.value().sound));
    const Job job = plan(o, cache.sampleRate(), cache.length());

    std::optional<WaveFile> file;
    if (!o.null) {
        endTidily();
        file.emplace(o.output, cache.sampleRate(), job.outputFrames);
        if (!file->isOpen()) return fail(1, o.output + ": cannot be written");
    }
    Renderer renderer(cache, o.stretcher);
    renderer.begin(job.playhead, {std::abs(o.rate), o.cents, o.tone}, o.seam, 0);
    const auto failure = renderInto(file ? &*file : nullptr, renderer, gainsOf(o), job.outputFrames);
    if (failure) return fail(1, o.output + ": " + *failure);
    if (o.stats) printStats(o, cache, job.outputFrames);
    return 0;
}

int answer(const Options& o) {
    auto opened = openMedia(o.input);
    if (!opened) return fail(1, opened.error().message);
    if (!opened.value().sound) return fail(1, o.input + ": has no sound");
    if (o.question == Question::Identity) return std::puts(opened.value().identity.c_str()) < 0 ? 1 : 0;
    SoundReader& sound = *opened.value().sound;
    const std::int64_t begin = std::min(o.askedA.frames(sound.sampleRate()), sound.length());
    const std::int64_t end = std::min(o.askedB.frames(sound.sampleRate()), sound.length());
    if (o.question == Question::Attacks) return printAttacks(sound, begin, end);
    if (end <= begin) throw UsageError{"the columns hold no frames"};
    return printColumns(sound, begin, end, o.columns);
}

}  // namespace

int main(int argc, char** argv) {
    qm::openStandardStreams();
    if (argc == 2 && std::strcmp(argv[1], "--help") == 0) return std::fputs(kUsage, stdout) < 0 ? 1 : 0;
    try {
        const Options options = parseOptions(argc, argv);
        const int status = options.question == Question::None ? render(options) : answer(options);
        if (g_endingSignal != 0) ::raise(g_endingSignal);  // so that whoever waits knows why
        return status;
    } catch (const UsageError& error) {
        return fail(2, error.message + " (--help tells more)");
    }
}
