#include "CodedSound.h"

#include <cmath>
#include <optional>

namespace qm::measure {

namespace {

constexpr int kSecond = kSampleRate;
constexpr int kHalfSecond = kSecond / 2;
constexpr int kMiddleStart = kSecond / 4;
constexpr int kMiddleEnd = kSecond * 3 / 4;
constexpr int kOuterCode = 8;        // right channel outside the middle
constexpr int kSecondCodeStep = 16;  // right channel in the middle: (second + 1) times this
constexpr std::size_t kShortestRun = 32;

bool inMiddle(int counter) {
    return counter >= kMiddleStart && counter < kMiddleEnd;
}

struct Code {
    int counter;                // frame of the second
    std::optional<int> second;  // only in the middle of it
};

// The 16-bit value that was played, if the sample is one, with the gain taken off.
std::optional<int> value16(float sample, double gain) {
    const double value = double(sample) * 32768.0 / gain;
    const double nearest = std::nearbyint(value);
    return std::abs(value - nearest) < 0.01 ? std::optional(int(nearest)) : std::nullopt;
}

std::optional<Code> decode(const Sound& recording, std::size_t frame, double gain) {
    const auto left = value16(recording.left[frame], gain);
    const auto right = value16(recording.right[frame], gain);
    if (!left || !right) {
        return std::nullopt;
    }
    if (*left < -kHalfSecond || *left >= kHalfSecond) {
        return std::nullopt;
    }
    const int counter = *left < 0 ? *left + kSecond : *left;
    if (!inMiddle(counter)) {
        return *right == kOuterCode ? std::optional(Code{counter, std::nullopt}) : std::nullopt;
    }
    if (*right < kSecondCodeStep || *right % kSecondCodeStep != 0) {
        return std::nullopt;
    }
    return Code{counter, *right / kSecondCodeStep - 1};
}

// Collects the runs of one recording frame by frame.
class RunFinder {
public:
    void add(std::size_t frame, const std::optional<Code>& code) {
        if (m_run && !(code && continues(*code))) {
            finish();
        }
        if (!code) {
            return;
        }
        if (!m_run) {
            m_run = Run{frame, -1, 0};
        }
        if (code->second) {
            nameSecond(*code->second, frame, code->counter);
        }
        ++m_run->length;
        m_lastCounter = code->counter;
    }

    std::vector<Run> take() {
        if (m_run) {
            finish();
        }
        return std::move(m_runs);
    }

private:
    bool continues(const Code& code) const { return code.counter == (m_lastCounter + 1) % kSecond; }

    void nameSecond(int second, std::size_t frame, int counter) {
        const std::int64_t source = std::int64_t(second) * kSecond + counter;
        const std::int64_t fromStart = source - std::int64_t(frame - m_run->at);
        if (m_run->source < 0 && fromStart >= 0) {
            m_run->source = fromStart;
        } else if (m_run->source != fromStart) {
            // The second before was not the one before this: the sound went on elsewhere at the whole second, where
            // the two are alike. Anywhere else the break is at this frame.
            const bool atWholeSecond = counter == kMiddleStart && m_run->length > std::size_t(counter);
            split(atWholeSecond ? std::size_t(counter) : 0, source);
        }
    }

    // Ends the run `back` frames ago and begins the next one there, so that the frame now read is `source`.
    void split(std::size_t back, std::int64_t source) {
        m_run->length -= back;
        const Run rest{m_run->end(), source - std::int64_t(back), back};
        finish();
        m_run = rest;
    }

    void finish() {
        if (m_run->length >= kShortestRun) {
            m_runs.push_back(*m_run);
        }
        m_run.reset();
    }

    std::vector<Run> m_runs;
    std::optional<Run> m_run;
    int m_lastCounter = 0;
};

// A run too short to meet a middle goes on from the run before it, or leads up to the run after it, if its counter
// fits.
void placeUnknownRuns(std::vector<Run>& runs, const Sound& recording, double gain) {
    const auto place = [&](Run& run, std::int64_t source) {
        if (run.source < 0 && source >= 0 && source % kSecond == decode(recording, run.at, gain)->counter) {
            run.source = source;
        }
    };
    const auto between = [&](std::size_t i) {
        return std::int64_t(recording.soundingFrames(runs[i].end(), runs[i + 1].at));
    };
    for (std::size_t i = 0; i + 1 < runs.size(); ++i) {
        if (runs[i].source >= 0) {
            place(runs[i + 1], runs[i].sourceEnd() + between(i));
        }
    }
    for (std::size_t i = runs.size(); i-- > 1;) {
        if (runs[i].source >= 0) {
            place(runs[i - 1], runs[i].source - between(i - 1) - std::int64_t(runs[i - 1].length));
        }
    }
}

}  // namespace

Sound makeCodedSound(int seconds) {
    Sound sound;
    for (int second = 0; second < seconds; ++second) {
        for (int counter = 0; counter < kSecond; ++counter) {
            const int right = inMiddle(counter) ? (second + 1) * kSecondCodeStep : kOuterCode;
            const int left = counter < kHalfSecond ? counter : counter - kSecond;
            sound.left.push_back(float(left) / 32768.0f);
            sound.right.push_back(float(right) / 32768.0f);
        }
    }
    return sound;
}

std::vector<Run> findRuns(const Sound& recording, double gain) {
    RunFinder finder;
    for (std::size_t frame = 0; frame < recording.frames(); ++frame) {
        finder.add(frame, decode(recording, frame, gain));
    }
    std::vector<Run> runs = finder.take();
    placeUnknownRuns(runs, recording, gain);
    return runs;
}

}  // namespace qm::measure
