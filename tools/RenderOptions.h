// The command line of quillmere-render.
#pragma once

#include <cmath>
#include <cstdint>
#include <optional>
#include <string>

#include "engine/render/Renderer.h"

namespace qm {

inline constexpr const char* kUsage =
    "usage: quillmere-render [--rate R] [--cents C] [--gain G] [--balance B] [--bass N] [--treble N] [--from T] [--to "
    "T]\n"
    "                        [--loop A:B] [--passes N] [--seam on|off] [--stretcher own|library] [--stats] IN OUT.wav\n"
    "       quillmere-render --attacks A:B IN\n"
    "       quillmere-render --columns A:B:N IN\n"
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

// What is asked of the track instead of rendering it.
enum class Question { None, Attacks, Columns, Identity };

struct Options {
    double rate = 1, cents = 0, gain = 1, balance = 0;
    ToneSettings tone;
    std::optional<TimeArgument> from, to, loopA, loopB;
    Question question = Question::None;
    TimeArgument askedA, askedB;
    Stretcher stretcher = Stretcher::Library;
    std::int64_t passes = 1, columns = 0;
    bool passesGiven = false, seam = true, stats = false, null = false;
    std::string input, output;  // no output with null and a question
};

struct UsageError {
    std::string message;
};

// Throws UsageError.
Options parseOptions(int argc, char** argv);

}  // namespace qm
