// quillmere-measure: makes the test sounds and measures recordings of them. Prints lines of "name value" pairs.
// Exit status 0 when the measurement could be made, 1 when not, 2 for a wrong command line.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <map>
#include <string>
#include <vector>

#include "Beacon.h"
#include "CodedSound.h"
#include "Passes.h"
#include "Tune.h"

using namespace qm::measure;

namespace {

using Arguments = std::vector<std::string>;

constexpr const char* kUsage =
    "quillmere-measure make-coded OUT.wav SECONDS   the sound whose samples say where they come from\n"
    "quillmere-measure make-tune OUT.wav SECONDS    a melody and a steady tone\n"
    "quillmere-measure make-beacon OUT.wav SECONDS  a sound in which every change of the playing shows\n"
    "quillmere-measure change RECORDING KIND FROM   when the beacon's playing changed after that frame, and the "
    "silence in it;\n"
    "                                               KIND: quieter, louder, jump, turn or speed\n"
    "quillmere-measure to-wav RECORDING OUT.wav\n"
    "quillmere-measure tail RECORDING FRAMES        are the last frames silent or sounding?\n"
    "quillmere-measure runs RECORDING GAIN          where each stretch of a recorded coded sound comes from\n"
    "quillmere-measure passes RECORDING FROM SHORTEST LONGEST\n"
    "                                               period, pitch and silences of a recorded loop of the tune\n"
    "quillmere-measure silences RECORDING FROM      the silences between its first and its last sound\n"
    "Recordings are raw 32-bit float stereo, 44100 frames a second. FROM, SHORTEST and LONGEST are frames.\n";

int makeCoded(const Arguments& a) {
    writeWav(a[0], makeCodedSound(std::stoi(a[1])));
    return 0;
}

int makeTuneFile(const Arguments& a) {
    writeWav(a[0], makeTune(std::stoi(a[1])));
    return 0;
}

int makeBeaconFile(const Arguments& a) {
    writeWav(a[0], makeBeacon(std::stoi(a[1])));
    return 0;
}

int change(const Arguments& a) {
    const Sound recording = readRecording(a[0]);
    const auto from = std::size_t(std::stoul(a[2]));
    const auto heard = findChange(recording, changeNamed(a[1]), from);
    if (!heard) {
        std::fprintf(stderr, "quillmere-measure: no change %s is heard\n", a[1].c_str());
        return 1;
    }
    const std::size_t silence = longestSilence(recording, from, *heard + kSampleRate / 10);
    std::printf("after_ms %.1f silence_ms %.1f\n", 1e3 * double(*heard - from) / kSampleRate,
                1e3 * double(silence) / kSampleRate);
    return 0;
}

int toWav(const Arguments& a) {
    writeWav(a[1], readRecording(a[0]));
    return 0;
}

int tail(const Arguments& a) {
    const Sound recording = readRecording(a[0]);
    const auto wanted = std::size_t(std::stoul(a[1]));
    std::size_t silent = 0;
    while (silent < recording.frames() && silent < wanted && recording.silentAt(recording.frames() - 1 - silent)) {
        ++silent;
    }
    std::puts(silent < wanted ? "sounding" : "silent");
    return 0;
}

// Between two runs: what was skipped of the source (negative: it went back), how many frames in between had sound and
// how many were silent. Frames with sound count as played, so that a fade skips nothing.
void printJoin(const Sound& recording, const Run& before, const Run& after) {
    const std::size_t faded = recording.soundingFrames(before.end(), after.at);
    const std::size_t silent = after.at - before.end() - faded;
    const std::int64_t skipped = after.source - before.sourceEnd() - std::int64_t(faded);
    const char* known = before.source < 0 || after.source < 0 ? "unknown" : "known";
    std::printf("join skipped %lld faded %zu silent %zu %s\n", static_cast<long long>(skipped), faded, silent, known);
}

int runs(const Arguments& a) {
    const Sound recording = readRecording(a[0]);
    const std::vector<Run> found = findRuns(recording, std::stod(a[1]));
    for (std::size_t i = 0; i < found.size(); ++i) {
        if (i > 0) {
            printJoin(recording, found[i - 1], found[i]);
        }
        std::printf("run at %zu source %lld length %zu\n", found[i].at, static_cast<long long>(found[i].source),
                    found[i].length);
    }
    return found.empty() ? 1 : 0;
}

void printSilences(const Sound& recording) {
    const std::vector<Silence> silences = findSilences(recording);
    std::size_t longest = 0;
    for (const Silence& s : silences) {
        longest = std::max(longest, s.length);
    }
    std::printf("silences %zu\nlongest_silence_frames %zu\n", silences.size(), longest);
}

int silences(const Arguments& a) {
    const Sound recording = readRecording(a[0]).from(std::stoul(a[1]));
    printSilences(recording);
    return recording.withoutSilence().frames() > 0 ? 0 : 1;
}

int passes(const Arguments& a) {
    const Sound recording = readRecording(a[0]).from(std::stoul(a[1]));
    // Where a starved sound card was silent nothing was played: that is told by itself and not part of the period.
    const Sound played = recording.withoutSilence();
    const auto period = findPeriod(played, std::stoul(a[2]), std::stoul(a[3]));
    const auto cents = pitchInCents(played, kSteadyToneHz);
    if (!period || !cents) {
        std::fputs("quillmere-measure: nothing repeats in this recording\n", stderr);
        return 1;
    }
    std::printf("period_frames %.2f\nperiod_seconds %.5f\nworst_pass_frames %.2f\npasses %d\n", period->meanFrames,
                period->meanFrames / kSampleRate, period->worstFrames, period->passes);
    std::printf("pitch_cents %.2f\n", *cents);
    printSilences(recording);
    return 0;
}

struct Command {
    int (*run)(const Arguments&);
    std::size_t arguments;
};

const std::map<std::string, Command> kCommands = {
    {"make-coded", {makeCoded, 2}},
    {"make-tune", {makeTuneFile, 2}},
    {"make-beacon", {makeBeaconFile, 2}},
    {"change", {change, 3}},
    {"to-wav", {toWav, 2}},
    {"tail", {tail, 2}},
    {"runs", {runs, 2}},
    {"passes", {passes, 4}},
    {"silences", {silences, 2}},
};

}  // namespace

int main(int argc, char** argv) {
    Arguments arguments(argv + 1, argv + argc);
    const auto command = arguments.empty() ? kCommands.end() : kCommands.find(arguments.front());
    if (command == kCommands.end() || arguments.size() != command->second.arguments + 1) {
        std::fputs(kUsage, stderr);
        return 2;
    }
    arguments.erase(arguments.begin());
    try {
        return command->second.run(arguments);
    } catch (const std::exception& problem) {
        std::fprintf(stderr, "quillmere-measure: %s\n", problem.what());
        return 1;
    }
}
