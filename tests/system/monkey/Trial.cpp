#include "Trial.h"

#include <sys/wait.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <regex>
#include <thread>
#include <utility>

#include "Cage.h"

namespace {

constexpr int kActs = 20000;
constexpr int kWarmUp = 2000;      // acts until everything has been built once
constexpr int kQuitOneIn = 5000;   // acts
constexpr int kRemembered = 50;    // acts
constexpr int kSecondsToEnd = 20;  // on a machine that does other things too
constexpr int kSecondsUntilAsked = 3;
constexpr int kSecondsToStart = 60;  // likewise

// What a program may have more of after many acts than after some: what is loaded differs, and memory is in pieces.
constexpr long kMoreMemory = 150 * 1024;  // KiB
constexpr int kMoreThreads = 12;
constexpr int kMoreDescriptors = 24;

// What the toolkit and the language say when something is wrong; the program's own lines begin otherwise.
const std::regex& warning() {
    static const std::regex pattern(
        "^(Q[A-Z]\\w*( ?::|:| \\()|qt\\.|QT_|libpng|ASSERT|terminate called|pure virtual|double "
        "free|free\\(\\)|malloc)|"
        "Assertion|assertion|runtime error:|Sanitizer|recursive");
    return pattern;
}

}  // namespace

Trial::Trial(const std::string& program, const std::string& folder, std::uint64_t seed, std::vector<std::string> files)
    : m_random(seed),
      m_program(program, folder, folder + "/player.log"),
      m_monkey(m_desktop, m_random, std::move(files), canKeepToAFolder()),
      m_seed(seed) {}

bool Trial::run(std::chrono::steady_clock::time_point end) {
    const auto begin = std::chrono::steady_clock::now();
    if (!start()) return false;
    for (m_acts = 1; m_acts <= kActs && std::chrono::steady_clock::now() < end; ++m_acts) {
        ++m_actsOfProgram;
        if (!actOnce()) return false;
        if (m_actsOfProgram == kWarmUp && !rest(m_warm.emplace())) return false;
        if (m_random.oneIn(kQuitOneIn) && !quitAndComeBack()) return false;
    }
    if (hasGrown()) return false;
    if (!endBy("SIGTERM")) return false;
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - begin;
    std::printf("%d acts in %.0f s, %d quits: nothing found\n", m_acts - 1, took.count(), m_quits);
    std::fflush(stdout);
    return true;
}

bool Trial::start() {
    m_program.start();
    m_warm.reset();
    m_actsOfProgram = 0;
    m_mainWindow = 0;
    for (int look = 0; look < kSecondsToStart * 20 && !m_mainWindow; ++look) {
        if (m_program.status()) return finding("the program ends before its window is shown");
        for (const ProgramWindow& window : m_desktop.windowsOf(m_program.pid()))
            if (window.name == "Quillmere") m_mainWindow = window.id;
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    if (!m_mainWindow) return finding("no window is shown");
    m_monkey.setProgram(m_program.pid(), m_mainWindow);
    return true;
}

bool Trial::actOnce() {
    bool answered = true;
    m_last.push_back(std::to_string(m_acts) + " " + m_monkey.act(answered));
    if (m_last.size() > kRemembered) m_last.pop_front();
    if (!answered && !m_program.status()) return finding("a drop is not answered within two seconds");
    if (m_random.oneIn(3)) return true;  // a hand that does not wait
    return looksWell();
}

// Still there, awake, and not complaining. An end with status 0 is a Quit that was chosen in a menu.
bool Trial::looksWell() {
    const bool answers = m_desktop.answers(m_mainWindow);
    if (hasWarned()) return false;
    if (const auto status = m_program.status()) {
        if (WIFEXITED(*status) && WEXITSTATUS(*status) == 0) {
            ++m_quits;
            return start();
        }
        const bool killed = WIFSIGNALED(*status);
        return finding(killed ? "the program is killed by signal " + std::to_string(WTERMSIG(*status))
                              : "the program ends with status " + std::to_string(WEXITSTATUS(*status)));
    }
    // It may be at its end, where there is no window any more and a recording is being finished.
    return answers || m_program.endsWithin(kSecondsToEnd) ? true
                                                          : finding("the window does not answer for two seconds");
}

bool Trial::hasWarned() {
    for (const std::string& line : m_program.newLogLines())
        if (std::regex_search(line, warning())) return !finding("the program warns: " + line);
    return false;
}

bool Trial::rest(Counts& counts) {
    m_last.push_back("(rest)");
    if (!m_monkey.comeToRest() && !m_program.status()) {
        std::string names;
        for (const ProgramWindow& window : m_desktop.windowsOf(m_program.pid())) names += " \"" + window.name + "\"";
        return finding("windows stay open after Escape and close:" + names);
    }
    std::this_thread::sleep_for(std::chrono::seconds(1));
    if (!looksWell()) return false;
    counts = m_program.counts();
    return true;
}

bool Trial::hasGrown() {
    Counts now;
    if (!m_warm) return false;
    const Counts warm = *m_warm;
    if (!rest(now)) return true;
    if (!m_warm) return false;  // it was started anew meanwhile
    std::printf(
        "after %d acts %ld KiB, %d threads, %d descriptors; after %d acts %ld KiB, %d threads, %d descriptors\n",
        kWarmUp, warm.memory, warm.threads, warm.descriptors, m_actsOfProgram, now.memory, now.threads,
        now.descriptors);
    if (now.memory > warm.memory + kMoreMemory) return !finding("memory grows");
    if (now.threads > warm.threads + kMoreThreads) return !finding("threads grow");
    if (now.descriptors > warm.descriptors + kMoreDescriptors) return !finding("descriptors grow");
    return false;
}

// Quits as a user does, and looks whether the next two starts have the same list.
bool Trial::quitAndComeBack() {
    Counts ignored;
    if (hasGrown() || !rest(ignored) || !endBy("Control+q")) return false;
    ++m_quits;
    const auto tracks = storedTracks();
    if (!start() || !endBy("SIGTERM")) return false;
    if (storedTracks() != tracks) return finding("the list has changed from one start to the next");
    return start();
}

bool Trial::endBy(const std::string& how) {
    m_last.push_back("(end by " + how + ")");
    if (how == "SIGTERM") {
        m_program.terminate();
    } else {
        m_monkey.chord({"Control"}, "q");
        // While a movie is being written the program asks first.
        if (!m_program.endsWithin(kSecondsUntilAsked)) m_monkey.chord({}, "Return");
    }
    if (!m_program.endsWithin(kSecondsToEnd))
        return finding("the program does not end by " + how + "; the keyboard is with " + m_desktop.windowWithKeys());
    const int status = *m_program.status();
    if (hasWarned()) return false;
    return WIFEXITED(status) && WEXITSTATUS(status) == 0 ? true : finding("the program fails to end by " + how);
}

std::vector<std::string> Trial::storedTracks() const {
    std::ifstream file(std::string(std::getenv("HOME")) + "/Library/Application Support/Quillmere/Quillmere.xml");
    std::vector<std::string> tracks;
    bool isNext = false;
    for (std::string line; std::getline(file, line);) {
        if (isNext) tracks.push_back(line);
        isNext = line.find("<key>track</key>") != std::string::npos;
    }
    return tracks;
}

bool Trial::finding(const std::string& what) {
    std::printf("FOUND at act %d of seed %llu: %s\nThe last acts:\n", m_acts, static_cast<unsigned long long>(m_seed),
                what.c_str());
    for (const std::string& act : m_last) std::printf("  %s\n", act.c_str());
    std::fflush(stdout);
    m_desktop.picture("finding-" + std::to_string(m_seed) + ".png");
    m_program.printWhereItStands();
    return false;
}
