#include "engine/render/stretch/AttackMap.h"

#include <algorithm>

#include "engine/render/stretch/AttackFinder.h"

namespace qm {

namespace {

constexpr std::int64_t kBlockFrames = 32768;  // at 44.1 kHz
constexpr double kEdges[] = {0, 700, 4000, 16000};
constexpr int kLongest[] = {8192, 4096, 2048};  // at 44.1 kHz

std::int64_t floorDivide(std::int64_t a, std::int64_t b) {
    return a / b - (a % b < 0 ? 1 : 0);
}

}  // namespace

int AttackMap::windowFactor(int sampleRate) {
    return sampleRate > 128000 ? 4 : sampleRate > 64000 ? 2 : 1;
}

double AttackMap::bandEdge(int edge) {
    return kEdges[edge];
}

int AttackMap::longestWindow(int band, int sampleRate) {
    return kLongest[band] * windowFactor(sampleRate);
}

AttackMap::AttackMap(int sampleRate)
    : m_blockFrames(kBlockFrames * windowFactor(sampleRate)),
      m_finder(std::make_unique<AttackFinder>(sampleRate, m_blockFrames)) {}

AttackMap::~AttackMap() = default;

bool AttackMap::explore(std::int64_t begin, std::int64_t end, const Read& read) {
    const std::int64_t last = floorDivide(end - 1, m_blockFrames);
    for (std::int64_t number = floorDivide(begin, m_blockFrames); number <= last; ++number) {
        if (m_blocks.contains(number)) continue;
        m_sound.resize(static_cast<std::size_t>(m_blockFrames + 2 * m_finder->margin()));
        const std::int64_t first = number * m_blockFrames;
        if (!read(first - m_finder->margin(), m_sound)) return false;
        m_finder->find(m_sound, first, m_blocks[number]);
    }
    return true;
}

const AttackMap::Block* AttackMap::blockAt(std::int64_t frame) const {
    const auto found = m_blocks.find(floorDivide(frame, m_blockFrames));
    return found == m_blocks.end() ? nullptr : &found->second;
}

Attack AttackMap::next(std::int64_t from, std::int64_t before, Confidence least) const {
    for (std::int64_t at = from; at < before; at = (floorDivide(at, m_blockFrames) + 1) * m_blockFrames) {
        const Block* block = blockAt(at);
        if (block == nullptr) continue;
        for (const Attack& attack : block->attacks) {
            if (attack.frame >= before) break;
            if (attack.frame >= at && attack.confidence >= least) return attack;
        }
    }
    return {before, Confidence::Low, 0};
}

void AttackMap::attacks(std::int64_t begin, std::int64_t end, std::vector<Attack>& into) const {
    for (Attack attack = next(begin, end); attack.frame < end; attack = next(attack.frame + 1, end))
        into.push_back(attack);
}

int AttackMap::halvings(int band, std::int64_t frame) const {
    const Block* block = blockAt(frame);
    if (block == nullptr) return 0;
    const std::int64_t into = frame - floorDivide(frame, m_blockFrames) * m_blockFrames;
    return block->halvings[static_cast<std::size_t>(band)][static_cast<std::size_t>(into / m_finder->grid())];
}

}  // namespace qm
