// Spoilt media files through the program that renders them, each in a process of its own that may neither die nor take
// more than ten seconds of the processor or 500 MB; their pictures likewise, in a process of this program.
//
//   hostile_media RENDER [--each N] [--random N] [--keep FOLDER] [FILE or FOLDER ...]
//   hostile_media --pictures FILE
//
// Small files named on the command line, and those in folders, are spoilt too. Every finding names the file's seed and
// the number of the run, which make it again; the file itself is kept in the folder.
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <thread>

#include "engine/media/SoundReader.h"
#include "fuzz/HostileSeeds.h"

namespace {

using namespace qm;
using namespace qm::test;

constexpr double kMostSeconds = 10;  // of the processor
constexpr long kMostMegabytes = 500;
constexpr std::chrono::seconds kLongestWait(120);  // on the wall, for a process that waits for nothing
constexpr std::size_t kLargestSeed = 200 << 10;    // bytes
constexpr int kMostPictures = 40;
constexpr std::int64_t kFewPixels = 160 * 90;
constexpr int kSanitizerStatus = 99;

struct Options {
    std::string render;
    int each = 50;
    unsigned random = 1;
    std::filesystem::path kept = std::filesystem::temp_directory_path();
    std::vector<NamedInput> seeds = hostileSeeds();
};

// What a file does to a process; empty where nothing is wrong with that.
struct Outcome {
    std::string finding;
    double seconds = 0;
    long megabytes = 0;
    bool opened = false;
};

double secondsOf(const rusage& usage) {
    const auto seconds = [](const timeval& t) { return double(t.tv_sec) + double(t.tv_usec) * 1e-6; };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

[[noreturn]] void become(const std::vector<std::string>& command, const std::string& log) {
    const int descriptor = ::open(log.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    ::dup2(descriptor, STDOUT_FILENO);
    ::dup2(descriptor, STDERR_FILENO);
    const rlimit processor{static_cast<rlim_t>(kMostSeconds) + 1, static_cast<rlim_t>(kMostSeconds) + 2};
    ::setrlimit(RLIMIT_CPU, &processor);
    const rlimit none{0, 0};
    ::setrlimit(RLIMIT_CORE, &none);
    std::vector<char*> arguments;
    for (const std::string& argument : command) arguments.push_back(const_cast<char*>(argument.c_str()));
    arguments.push_back(nullptr);
    ::execv(arguments[0], arguments.data());
    std::_Exit(127);
}

Outcome run(const std::vector<std::string>& command, const std::string& log) {
    const pid_t child = ::fork();
    if (child == 0) become(command, log);
    const auto begin = std::chrono::steady_clock::now();
    int status = 0;
    rusage usage{};
    while (::wait4(child, &status, WNOHANG, &usage) == 0) {
        if (std::chrono::steady_clock::now() - begin > kLongestWait) {
            ::kill(child, SIGKILL);
            ::wait4(child, &status, 0, &usage);
            return {"hangs"};
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    Outcome outcome{"", secondsOf(usage), usage.ru_maxrss / 1024};
    if (outcome.seconds > kMostSeconds) outcome.finding = "takes " + std::to_string(outcome.seconds) + " s";
    if (outcome.megabytes > kMostMegabytes) outcome.finding = "takes " + std::to_string(outcome.megabytes) + " MB";
    if (WIFSIGNALED(status)) outcome.finding = "ends by signal " + std::to_string(WTERMSIG(status));
    if (WIFEXITED(status) && WEXITSTATUS(status) > 1)
        outcome.finding = "ends with status " + std::to_string(WEXITSTATUS(status));
    outcome.opened = WIFEXITED(status) && WEXITSTATUS(status) == 0;
    return outcome;
}

// Reads the pictures as they are read while a film plays: from the start, after a seek, reduced for playing backward.
int readPictures(const std::string& path) {
    const auto media = openMedia(path);
    if (!media) return 1;
    const auto reader = media.value().openVideo ? media.value().openVideo() : nullptr;
    if (!reader) return 0;
    const double middle = media.value().description.durationSeconds / 2;
    for (const bool reduced : {false, true}) {
        if (reduced && !reader->seek(middle)) return 0;
        RawPicture picture;
        VideoReader::Outcome outcome = VideoReader::Outcome::Working;
        for (int pictures = 0, steps = 0; pictures < kMostPictures && steps < 100 * kMostPictures; ++steps) {
            outcome = reader->next(picture, reduced ? middle : 0, reduced ? kFewPixels : VideoReader::kAllPixels);
            if (outcome == VideoReader::Outcome::End) break;
            if (outcome != VideoReader::Outcome::Picture) continue;
            reader->convert(picture, {640, 360});
            ++pictures;
        }
    }
    return 0;
}

// What every sanitizer finds becomes a status of its own.
void tellSanitizers() {
    const std::string status = "exitcode=" + std::to_string(kSanitizerStatus);
    const auto add = [](const char* name, const std::string& options) {
        const char* former = std::getenv(name);
        ::setenv(name, (former ? std::string(former) + ":" + options : options).c_str(), 1);
    };
    add("ASAN_OPTIONS", status + ":quarantine_size_mb=16:allocator_may_return_null=1");
    add("UBSAN_OPTIONS", status + ":halt_on_error=1");
}

std::optional<Options> parse(int argc, char** argv) {
    if (argc < 2) return std::nullopt;
    Options options;
    options.render = argv[1];
    for (int i = 2; i < argc; ++i) {
        const std::string argument = argv[i];
        const bool hasValue = i + 1 < argc;
        if (argument == "--each" && hasValue) {
            options.each = std::stoi(argv[++i]);
        } else if (argument == "--random" && hasValue) {
            options.random = static_cast<unsigned>(std::stoul(argv[++i]));
        } else if (argument == "--keep" && hasValue) {
            options.kept = argv[++i];
        } else if (!argument.empty()) {
            std::vector<Input> read;
            addFile(read, argument);
            for (std::size_t n = 0; n < read.size(); ++n)
                if (read[n].size() < kLargestSeed)
                    options.seeds.push_back({argument + " " + std::to_string(n), std::move(read[n])});
        }
    }
    return options;
}

class Campaign {
public:
    explicit Campaign(const Options& options)
        : m_options(options), m_file(scratch("file")), m_log(scratch("log")), m_self("/proc/self/exe") {
        std::error_code ignored;
        m_self = std::filesystem::read_symlink(m_self, ignored);
    }
    ~Campaign() {
        std::remove(m_file.c_str());
        std::remove(m_log.c_str());
    }

    // The number of findings.
    int run() {
        std::vector<Input> all;
        for (const NamedInput& seed : m_options.seeds) all.push_back(seed.bytes);
        for (std::size_t n = 0; n < m_options.seeds.size(); ++n) {
            Mutator mutator(all, m_options.random + static_cast<unsigned>(n));
            for (int i = 0; i <= m_options.each; ++i)  // the first one as it is
                take(m_options.seeds[n].name, i, i == 0 ? all[n] : mutator.spoilt(all[n]));
        }
        std::printf(
            "%zu files, %d of each, random %u: %d runs, %d of which opened the file, %d findings; "
            "at most %.1f s, %ld MB\n",
            m_options.seeds.size(), m_options.each, m_options.random, m_runs, m_opened, m_findings, m_mostSeconds,
            m_mostMegabytes);
        if (m_opened < m_runs / 4) return std::puts("too few were opened: nothing is shown by that"), 1;
        return m_findings;
    }

private:
    static std::string scratch(const char* name) {
        return (std::filesystem::temp_directory_path() /
                ("quillmere-hostile-" + std::to_string(::getpid()) + "-" + name))
            .string();
    }

    void take(const std::string& name, int number, const Input& input) {
        std::ofstream(m_file, std::ios::binary)
            .write(reinterpret_cast<const char*>(input.data()), static_cast<std::streamsize>(input.size()));
        judge(name, number, "sound", {m_options.render, "--null", "--rate", "0.7", "--to", "20", m_file});
        judge(name, number, "sound backward",
              {m_options.render, "--null", "--rate", "-1", "--from", "20", "--to", "0", m_file});
        judge(name, number, "pictures", {m_self, "--pictures", m_file});
    }

    void judge(const std::string& name, int number, const char* what, const std::vector<std::string>& command) {
        const Outcome outcome = ::run(command, m_log);
        ++m_runs;
        m_opened += outcome.opened ? 1 : 0;
        m_mostSeconds = std::max(m_mostSeconds, outcome.seconds);
        m_mostMegabytes = std::max(m_mostMegabytes, outcome.megabytes);
        if (outcome.finding.empty()) return;
        const auto kept =
            m_options.kept / ("hostile-" + std::to_string(m_options.random) + "-" +
                              std::filesystem::path(name).filename().string() + "-" + std::to_string(number));
        std::filesystem::copy_file(m_file, kept, std::filesystem::copy_options::overwrite_existing);
        std::printf("%s, run %d, %s: %s; kept as %s\n", name.c_str(), number, what, outcome.finding.c_str(),
                    kept.c_str());
        std::ifstream log(m_log);
        std::string line;
        for (int lines = 0; lines < 30 && std::getline(log, line); ++lines) std::printf("    %s\n", line.c_str());
        std::fflush(stdout);
        ++m_findings;
    }

    const Options& m_options;
    const std::string m_file;
    const std::string m_log;
    std::string m_self;
    int m_runs = 0;
    int m_opened = 0;
    int m_findings = 0;
    double m_mostSeconds = 0;
    long m_mostMegabytes = 0;
};

}  // namespace

int main(int argc, char** argv) {
    if (argc == 3 && std::string(argv[1]) == "--pictures") return readPictures(argv[2]);
    const auto options = parse(argc, argv);
    if (!options) return std::fputs("usage: hostile_media RENDER [--each N] [--random N] [FILE ...]\n", stderr), 2;
    tellSanitizers();
    return Campaign(*options).run() == 0 ? 0 : 1;
}
