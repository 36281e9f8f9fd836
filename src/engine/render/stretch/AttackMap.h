// Where a track's attacks lie, and which length of window suits each moment, found from the decoded sound and kept per
// track. A pure function of the sound: what it says of a frame does not depend on how or when it was asked. For one
// thread; the one that looks ahead is its own.
//
// An attack is sure to be one to a degree: High is broadband and steep, Medium clear, Low soft or tonal. Whoever cuts
// the sound there cuts at High and Medium only; a mark may snap to any.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <unordered_map>
#include <vector>

#include "engine/sound/StereoFrame.h"

namespace qm {

enum class Confidence : std::uint8_t { Low, Medium, High };

struct Attack {
    std::int64_t frame = 0;
    Confidence confidence = Confidence::Low;
    float strength = 0;  // mean rise of the bands, in tens of decibels
    friend bool operator==(const Attack&, const Attack&) = default;
};

class AttackFinder;

class AttackMap {
public:
    static constexpr int kBands = 3;

    // Reads frames of the track; silence outside it. False when that is interrupted.
    using Read = std::function<bool(std::int64_t first, std::span<StereoFrame> out)>;

    explicit AttackMap(int sampleRate);
    ~AttackMap();

    // Finds what is not known yet of the frames [begin, end). False when reading is interrupted.
    bool explore(std::int64_t begin, std::int64_t end, const Read& read);

    // Begins to find, on a thread of its own, the first block of the frames [begin, end) that is not known yet, if
    // `hasSound` says that its sound can be read without waiting. One block at a time; explore() waits for that one if
    // it needs it.
    using HasSound = std::function<bool(std::int64_t first, std::int64_t count)>;
    void lookAhead(std::int64_t begin, std::int64_t end, const HasSound& hasSound, const Read& read);

    // Of explored frames: the first attack at or after `from` and before `before`; none: frame == before.
    Attack next(std::int64_t from, std::int64_t before, Confidence least = Confidence::Low) const;
    // Of an explored frame: how much shorter than the longest the band's window is to be there, in halvings.
    int halvings(int band, std::int64_t frame) const;

    void attacks(std::int64_t begin, std::int64_t end, std::vector<Attack>& into) const;  // of explored frames

    static int windowFactor(int sampleRate);  // how much longer windows are than at 44.1 kHz

    // The bands' limits in hertz, and the longest window of each at a sample rate.
    static double bandEdge(int edge);
    static int longestWindow(int band, int sampleRate);
    static constexpr std::array<int, kBands> kWindows = {3, 3, 2};  // how many lengths, each half of the one before

private:
    friend class AttackFinder;
    struct Block {
        std::vector<Attack> attacks;
        std::array<std::vector<std::uint8_t>, kBands> halvings;
    };
    class Worker;
    const Block* blockAt(std::int64_t frame) const;

    const std::int64_t m_blockFrames;
    const int m_sampleRate;
    std::unordered_map<std::int64_t, Block> m_blocks;
    std::unique_ptr<AttackFinder> m_finder;
    std::vector<StereoFrame> m_sound;
    std::unique_ptr<Worker> m_worker;  // from the first look ahead on
};

}  // namespace qm
