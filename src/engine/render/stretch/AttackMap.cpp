#include "engine/render/stretch/AttackMap.h"

#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <thread>

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

// Finds one block at a time on its own thread.
class AttackMap::Worker {
public:
    Worker(int sampleRate, std::int64_t blockFrames) : m_finder(sampleRate, blockFrames), m_thread([this] { run(); }) {}

    ~Worker() {
        {
            const std::lock_guard lock(m_mutex);
            m_ending = true;
        }
        m_changed.notify_all();
        m_thread.join();
    }

    bool isFree() const { return !m_number; }
    bool worksOn(std::int64_t number) const { return m_number == number; }
    std::vector<StereoFrame>& sound() { return m_sound; }  // to be filled while it is free

    void begin(std::int64_t number, std::int64_t firstFrame) {
        m_number = number;
        {
            const std::lock_guard lock(m_mutex);
            m_firstFrame = firstFrame;
            m_state = State::Working;
        }
        m_changed.notify_all();
    }

    // Moves a finished block to the others. Waits for it only if told to.
    void collect(std::unordered_map<std::int64_t, Block>& blocks, bool wait) {
        if (isFree()) return;
        std::unique_lock lock(m_mutex);
        if (wait) m_changed.wait(lock, [this] { return m_state == State::Done; });
        if (m_state != State::Done) return;
        blocks[*m_number] = std::move(m_block);
        m_block = {};
        m_state = State::Idle;
        m_number.reset();
    }

private:
    enum class State { Idle, Working, Done };

    void run() {
        std::unique_lock lock(m_mutex);
        while (true) {
            m_changed.wait(lock, [this] { return m_ending || m_state == State::Working; });
            if (m_ending) return;
            lock.unlock();
            m_finder.find(m_sound, m_firstFrame, m_block);
            lock.lock();
            m_state = State::Done;
            m_changed.notify_all();
        }
    }

    AttackFinder m_finder;
    std::vector<StereoFrame> m_sound;
    std::optional<std::int64_t> m_number;  // of the block being worked on; the map's thread only
    std::int64_t m_firstFrame = 0;
    Block m_block;
    State m_state = State::Idle;
    bool m_ending = false;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::thread m_thread;
};

AttackMap::AttackMap(int sampleRate)
    : m_blockFrames(kBlockFrames * windowFactor(sampleRate)),
      m_sampleRate(sampleRate),
      m_finder(std::make_unique<AttackFinder>(sampleRate, m_blockFrames)) {}

AttackMap::~AttackMap() = default;

bool AttackMap::explore(std::int64_t begin, std::int64_t end, const Read& read) {
    const std::int64_t last = floorDivide(end - 1, m_blockFrames);
    for (std::int64_t number = floorDivide(begin, m_blockFrames); number <= last; ++number) {
        if (m_worker) m_worker->collect(m_blocks, m_worker->worksOn(number));
        if (m_blocks.contains(number)) continue;
        m_sound.resize(static_cast<std::size_t>(m_blockFrames + 2 * m_finder->margin()));
        const std::int64_t first = number * m_blockFrames;
        if (!read(first - m_finder->margin(), m_sound)) return false;
        m_finder->find(m_sound, first, m_blocks[number]);
    }
    return true;
}

void AttackMap::lookAhead(std::int64_t begin, std::int64_t end, const HasSound& hasSound, const Read& read) {
    if (m_worker) m_worker->collect(m_blocks, false);
    if (m_worker && !m_worker->isFree()) return;
    std::int64_t number = floorDivide(begin, m_blockFrames);
    while (m_blocks.contains(number)) ++number;
    if (number * m_blockFrames >= end) return;
    const std::int64_t first = number * m_blockFrames - m_finder->margin();
    const std::int64_t count = m_blockFrames + 2 * m_finder->margin();
    if (!hasSound(first, count)) return;
    if (!m_worker) m_worker = std::make_unique<Worker>(m_sampleRate, m_blockFrames);
    m_worker->sound().resize(static_cast<std::size_t>(count));
    if (read(first, m_worker->sound())) m_worker->begin(number, number * m_blockFrames);
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
