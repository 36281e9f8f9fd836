// Renders a track, or a passage of it in a loop, to a 32-bit float stereo wave file with the player's own engine:
// slower or faster, higher or lower, backwards.
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <charconv>
#include <cmath>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "engine/api/Log.h"
#include "engine/api/StandardStreams.h"
#include "engine/export/TargetFile.h"
#include "engine/media/SoundReader.h"
#include "engine/render/PcmCache.h"
#include "engine/render/Renderer.h"
#include "engine/render/stretch/AttackMap.h"

namespace {

using namespace qm;

constexpr const char* kUsage =
    "usage: quillmere-render [--rate R] [--cents C] [--gain G] [--balance B] [--bass N] [--treble N] [--from T] [--to "
    "T]\n"
    "                        [--loop A:B] [--passes N] [--seam on|off] [--stretcher own|library] [--stats] IN OUT.wav\n"
    "       quillmere-render --attacks A:B IN\n"
    "       quillmere-render --identity IN\n"
    "       --null instead of OUT.wav writes nothing; T, A, B are seconds, or frames with the suffix f (88200f)\n";

// A time on the command line: seconds, or frames.
struct TimeArgument {
    double value = 0;
    bool isFrames = false;

    std::int64_t frames(int sampleRate) const {
        return isFrames ? static_cast<std::int64_t>(value) : std::llround(value * sampleRate);
    }
};

struct Options {
    double rate = 1, cents = 0, gain = 1, balance = 0;
    ToneSettings tone;
    std::optional<TimeArgument> from, to, loopA, loopB, attacksA, attacksB;
    Stretcher stretcher = Stretcher::Library;
    std::int64_t passes = 1;
    bool passesGiven = false, seam = true, stats = false, null = false, identity = false;
    std::string input, output;
};

struct UsageError {
    std::string message;
};

double number(std::string_view text, double least, double most) {
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc{} || end != text.data() + text.size() || !(value >= least && value <= most))
        throw UsageError{"not a number from " + std::to_string(least) + " to " + std::to_string(most) + ": " +
                         std::string(text)};
    return value;
}

TimeArgument timeArgument(std::string_view text) {
    const bool isFrames = text.ends_with('f');
    if (isFrames) text.remove_suffix(1);
    const double value = number(text, 0, 1e12);
    if (isFrames && value != std::floor(value)) throw UsageError{"not a whole number of frames: " + std::string(text)};
    return {value, isFrames};
}

void setRate(Options& o, std::string_view text) {
    o.rate = number(text, -2.5, 2.5);
    if (std::abs(o.rate) < 0.35) throw UsageError{"the rate's magnitude is 0.35 to 2.5"};
}

std::pair<TimeArgument, TimeArgument> passage(std::string_view option, std::string_view text) {
    const auto colon = text.find(':');
    if (colon == std::string_view::npos) throw UsageError{std::string(option) + " takes A:B"};
    return {timeArgument(text.substr(0, colon)), timeArgument(text.substr(colon + 1))};
}

void setLoop(Options& o, std::string_view text) {
    std::tie(o.loopA, o.loopB) = passage("--loop", text);
}

void setAttacks(Options& o, std::string_view text) {
    std::tie(o.attacksA, o.attacksB) = passage("--attacks", text);
}

void setStretcher(Options& o, std::string_view text) {
    if (text != "own" && text != "library") throw UsageError{"--stretcher takes own or library"};
    o.stretcher = text == "own" ? Stretcher::Own : Stretcher::Library;
}

std::int16_t toneSetting(std::string_view text) {
    return static_cast<std::int16_t>(number(text, 0, 256));
}

void setSeam(Options& o, std::string_view text) {
    if (text != "on" && text != "off") throw UsageError{"--seam takes on or off"};
    o.seam = text == "on";
}

Options parse(int argc, char** argv) {
    using Setter = std::function<void(Options&, std::string_view)>;
    static const std::map<std::string_view, Setter> kValued = {
        {"--rate", setRate},
        {"--cents", [](Options& o, std::string_view t) { o.cents = number(t, -1200, 1200); }},
        {"--gain", [](Options& o, std::string_view t) { o.gain = number(t, 0, 1); }},
        {"--balance", [](Options& o, std::string_view t) { o.balance = number(t, -1, 1); }},
        {"--bass", [](Options& o, std::string_view t) { o.tone.bass = toneSetting(t); }},
        {"--treble", [](Options& o, std::string_view t) { o.tone.treble = toneSetting(t); }},
        {"--from", [](Options& o, std::string_view t) { o.from = timeArgument(t); }},
        {"--to", [](Options& o, std::string_view t) { o.to = timeArgument(t); }},
        {"--loop", setLoop},
        {"--attacks", setAttacks},
        {"--stretcher", setStretcher},
        {"--passes",
         [](Options& o, std::string_view t) {
             o.passes = static_cast<std::int64_t>(number(t, 1, 1e6));
             o.passesGiven = true;
         }},
        {"--seam", setSeam},
    };
    Options o;
    std::vector<std::string> files;
    for (int i = 1; i < argc; ++i) {
        const std::string_view argument = argv[i];
        if (argument == "--stats") {
            o.stats = true;
        } else if (argument == "--null") {
            o.null = true;
        } else if (argument == "--identity") {
            o.identity = true;
        } else if (const auto found = kValued.find(argument); found != kValued.end()) {
            if (++i == argc) throw UsageError{std::string(argument) + " needs a value"};
            found->second(o, argv[i]);
        } else if (argument.starts_with("--")) {
            throw UsageError{"unknown option " + std::string(argument)};
        } else {
            files.emplace_back(argument);
        }
    }
    const bool inputAlone = o.null || o.attacksA || o.identity;
    if (files.size() != (inputAlone ? 1u : 2u))
        throw UsageError{inputAlone ? "--null, --attacks and --identity take IN alone" : "IN and OUT.wav are needed"};
    if (o.passesGiven && !o.loopA) throw UsageError{"--passes needs --loop"};
    o.input = files[0];
    if (!inputAlone) o.output = files[1];
    return o;
}

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

// Why nothing is to be written under this name; none if something may be.
std::optional<std::string> objectionTo(const std::string& output, const std::string& input) {
    struct stat source {
    }, named{}, meant{};
    if (::lstat(output.c_str(), &named) != 0) return std::nullopt;
    const bool isSource = ::stat(input.c_str(), &source) == 0 && ::stat(output.c_str(), &meant) == 0 &&
                          source.st_dev == meant.st_dev && source.st_ino == meant.st_ino;
    if (isSource) return output + ": is the track itself, which is not replaced";
    if (S_ISLNK(named.st_mode)) return output + ": is a link, which is not replaced";
    if (!S_ISREG(named.st_mode)) return output + ": not a regular file, which is all that is replaced";
    return std::nullopt;
}

// A wave file of 32-bit floats that has its name when it is complete, after close(), and leaves nothing otherwise.
class WaveFile {
public:
    WaveFile(const std::string& path, int sampleRate, std::int64_t frames) {
        auto target = TargetFile::create(path);
        if (!target) return;
        m_target = std::move(target.value());
        m_file = ::fdopen(::dup(m_target->descriptor()), "wb");
        if (m_file != nullptr) writeHeader(sampleRate, frames);
    }
    ~WaveFile() {
        if (m_file != nullptr) std::fclose(m_file);
    }
    WaveFile(const WaveFile&) = delete;
    WaveFile& operator=(const WaveFile&) = delete;

    bool isOpen() const { return m_file != nullptr; }
    bool write(std::span<const StereoFrame> frames) {
        return std::fwrite(frames.data(), sizeof(StereoFrame), frames.size(), m_file) == frames.size();
    }
    bool close() {
        const bool closed = std::fclose(std::exchange(m_file, nullptr)) == 0;
        return closed && !m_target->commit();
    }

private:
    void writeHeader(int sampleRate, std::int64_t frames) {
        const auto dataBytes = static_cast<std::uint32_t>(std::min<std::int64_t>(frames * 8, 0xFFFFFFFFll - 64));
        std::string header;
        const auto put = [&](std::uint64_t value, int bytes) {
            for (int i = 0; i < bytes; ++i) header.push_back(static_cast<char>(value >> (8 * i)));
        };
        header += "RIFF";
        put(dataBytes + 48ull, 4);
        header += "WAVEfmt ";
        put(16, 4);
        put(3, 2);
        put(2, 2);
        put(static_cast<std::uint64_t>(sampleRate), 4);
        put(static_cast<std::uint64_t>(sampleRate) * 8, 4);
        put(8, 2);
        put(32, 2);
        header += "fact";
        put(4, 4);
        put(static_cast<std::uint64_t>(frames), 4);
        header += "data";
        put(dataBytes, 4);
        std::fwrite(header.data(), 1, header.size(), m_file);
    }

    std::unique_ptr<TargetFile> m_target;
    std::FILE* m_file = nullptr;
};

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
    const auto left = static_cast<float>(o.gain * std::min(1.0, 1.0 - o.balance));
    const auto right = static_cast<float>(o.gain * std::min(1.0, 1.0 + o.balance));
    std::vector<StereoFrame> block(4096);
    for (std::int64_t done = 0; done < job.outputFrames;) {
        if (g_endingSignal != 0) return fail(1, o.output + ": not finished");
        const auto count = static_cast<std::size_t>(std::min<std::int64_t>(4096, job.outputFrames - done));
        const std::span<StereoFrame> out(block.data(), count);
        renderer.render(out);
        for (StereoFrame& f : out) f = {f.left * left, f.right * right};
        if (file && !file->write(out)) return fail(1, o.output + ": cannot be written");
        done += static_cast<std::int64_t>(count);
    }
    if (file && !file->close()) return fail(1, o.output + ": cannot be written");
    if (o.stats)
        std::printf(
            "{\"frames_in\": %lld, \"frames_out\": %lld, \"cpu_seconds\": %.3f, \"length\": %lld, \"sample_rate\": "
            "%d}\n",
            std::llround(static_cast<double>(job.outputFrames) * std::abs(o.rate)),
            static_cast<long long>(job.outputFrames), cpuSeconds(), static_cast<long long>(cache.length()),
            cache.sampleRate());
    return 0;
}

// A line for each attack: its time in seconds, how sure it is one, its strength.
int printAttacks(const Options& o) {
    auto opened = openMedia(o.input);
    if (!opened) return fail(1, opened.error().message);
    if (!opened.value().sound) return fail(1, o.input + ": has no sound");
    PcmCache cache(std::move(opened.value().sound));
    const std::int64_t begin = std::min(o.attacksA->frames(cache.sampleRate()), cache.length());
    const std::int64_t end = std::min(o.attacksB->frames(cache.sampleRate()), cache.length());
    AttackMap map(cache.sampleRate());
    map.explore(begin, end, [&](std::int64_t first, std::span<StereoFrame> out) { return cache.read(first, out); });
    std::vector<Attack> attacks;
    map.attacks(begin, end, attacks);
    for (const Attack& attack : attacks) {
        static constexpr const char* kNames[] = {"low", "medium", "high"};
        std::printf("%.5f %s %.3f\n", static_cast<double>(attack.frame) / cache.sampleRate(),
                    kNames[static_cast<int>(attack.confidence)], static_cast<double>(attack.strength));
    }
    return 0;
}

int printIdentity(const Options& o) {
    const auto opened = openMedia(o.input);
    if (!opened) return fail(1, opened.error().message);
    if (opened.value().identity.empty()) return fail(1, o.input + ": has no sound");
    return std::puts(opened.value().identity.c_str()) < 0 ? 1 : 0;
}

}  // namespace

int main(int argc, char** argv) {
    qm::openStandardStreams();
    if (argc == 2 && std::strcmp(argv[1], "--help") == 0) return std::fputs(kUsage, stdout) < 0 ? 1 : 0;
    try {
        const Options options = parse(argc, argv);
        const int status = options.identity   ? printIdentity(options)
                           : options.attacksA ? printAttacks(options)
                                              : render(options);
        if (g_endingSignal != 0) ::raise(g_endingSignal);  // so that whoever waits knows why
        return status;
    } catch (const UsageError& error) {
        return fail(2, error.message + " (--help tells more)");
    }
}
