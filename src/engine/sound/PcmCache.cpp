#include "engine/sound/PcmCache.h"

#include <algorithm>
#include <cstdlib>

#include "engine/realtime/ThreadPriority.h"

namespace qm {

namespace {

constexpr std::int64_t kReadAheadChunks = 12;
constexpr std::int64_t kBackwardGroup = 8;  // chunks decoded in one forward sweep when playing backward
constexpr std::int64_t kBeyondSeam = 5;     // chunks of a looped passage that is too long to be kept

}  // namespace

PcmCache::PcmCache(std::unique_ptr<SoundReader> reader, std::size_t budgetBytes)
    : m_reader(std::move(reader)),
      m_sampleRate(m_reader->sampleRate()),
      m_length(m_reader->length()),
      m_hasOtherTracks(m_reader->hasOtherTracks()),
      m_budgetChunks(std::max<std::size_t>(budgetBytes / (kChunkFrames * sizeof(StereoFrame)), 32) /
                     (m_hasOtherTracks ? 2 : 1)),
      m_thread([this] { decode(); }) {}

PcmCache::~PcmCache() {
    close();
    m_thread.join();
}

void PcmCache::close() {
    {
        const std::lock_guard lock(m_mutex);
        m_closing = true;
        m_interrupted = true;
        m_chunks.clear();
    }
    m_wanted.notify_all();
    m_published.notify_all();
}

void PcmCache::setOutlook(const Outlook& outlook) {
    {
        const std::lock_guard lock(m_mutex);
        m_outlook = outlook;
    }
    m_wanted.notify_one();
}

void PcmCache::interrupt() {
    {
        const std::lock_guard lock(m_mutex);
        m_interrupted = true;
    }
    m_published.notify_all();
}

void PcmCache::resume() {
    const std::lock_guard lock(m_mutex);
    m_interrupted = m_closing;
}

std::size_t PcmCache::residentBytes() const {
    const std::lock_guard lock(m_mutex);
    return m_chunks.size() * kChunkFrames * sizeof(StereoFrame);
}

bool PcmCache::read(std::int64_t first, std::span<StereoFrame> out, Part part) {
    while (!out.empty()) {
        std::size_t count = out.size();
        if (first < 0 || first >= m_length) {
            if (first < 0) count = static_cast<std::size_t>(std::min<std::int64_t>(-first, std::int64_t(count)));
            std::fill_n(out.begin(), count, StereoFrame{});
        } else {
            const std::int64_t number = first / kChunkFrames;
            const std::int64_t offset = first - number * kChunkFrames;
            count = static_cast<std::size_t>(
                std::min({kChunkFrames - offset, m_length - first, static_cast<std::int64_t>(count)}));
            const auto chunk = chunkAt(number);
            if (!chunk) return false;
            const auto& frames = part == Part::All ? chunk->all : chunk->otherTracks;
            std::copy_n(frames.begin() + offset, count, out.begin());
        }
        first += static_cast<std::int64_t>(count);
        out = out.subspan(count);
    }
    return true;
}

bool PcmCache::has(std::int64_t first, std::int64_t count) const {
    const std::int64_t last = (std::min(first + count, m_length) - 1) / kChunkFrames;
    const std::lock_guard lock(m_mutex);
    for (std::int64_t number = std::max<std::int64_t>(first, 0) / kChunkFrames; number <= last; ++number)
        if (!m_chunks.contains(number)) return false;
    return true;
}

std::shared_ptr<const PcmCache::Chunk> PcmCache::chunkAt(std::int64_t number) {
    std::unique_lock lock(m_mutex);
    if (m_demand != number) {
        m_demand = number;
        m_wanted.notify_one();
    }
    for (;;) {
        if (const auto found = m_chunks.find(number); found != m_chunks.end()) return found->second;
        if (m_interrupted) return nullptr;
        m_published.wait(lock);
    }
}

// The chunk that lies so far ahead in the direction of play, or -1 past the end of the track.
std::int64_t PcmCache::ahead(std::int64_t chunk, std::int64_t distance) const {
    const std::int64_t number = m_outlook.backward ? chunk - distance : chunk + distance;
    return number < chunkCount() ? number : -1;
}

bool PcmCache::loopFits() const {
    const std::int64_t frames = m_outlook.loopEnd - m_outlook.loopBegin;
    return frames > 0 && static_cast<std::size_t>(frames / kChunkFrames) + 2 < m_budgetChunks / 2;
}

bool PcmCache::inLoop(std::int64_t chunk) const {
    return chunk * kChunkFrames < m_outlook.loopEnd && (chunk + 1) * kChunkFrames > m_outlook.loopBegin;
}

bool PcmCache::isWaitedForElsewhere(const Work& work) const {
    return (m_demand < work.first || m_demand > work.last) && m_demand < chunkCount() && !m_chunks.contains(m_demand);
}

std::optional<PcmCache::Work> PcmCache::firstMissing(std::int64_t from, std::int64_t to) const {
    for (std::int64_t n = std::max<std::int64_t>(from, 0); n <= std::min(to, chunkCount() - 1); ++n)
        if (!m_chunks.contains(n)) return Work{n, n};
    return std::nullopt;
}

// What to decode next: the chunk that is waited for, then those ahead, then the looped passage.
std::optional<PcmCache::Work> PcmCache::nextWork() const {
    if (m_demand < chunkCount() && !m_chunks.contains(m_demand)) return Work{m_demand, m_demand};
    for (std::int64_t d = 1; d <= kReadAheadChunks; ++d) {
        const std::int64_t number = ahead(m_demand, d);
        if (number < 0) break;
        if (m_chunks.contains(number)) continue;
        if (!m_outlook.backward) return Work{number, number};
        const std::int64_t group = std::min(2 * d, kBackwardGroup);  // what is close is not to wait for what is far
        return Work{std::max<std::int64_t>(number - group + 1, 0), number};
    }
    if (m_outlook.loopEnd <= m_outlook.loopBegin) return std::nullopt;
    const std::int64_t begin = m_outlook.loopBegin / kChunkFrames;
    const std::int64_t end = (m_outlook.loopEnd - 1) / kChunkFrames;
    if (loopFits()) return firstMissing(begin, end);
    return m_outlook.backward ? firstMissing(end - kBeyondSeam + 1, end) : firstMissing(begin, begin + kBeyondSeam - 1);
}

void PcmCache::decode() {
    preferThisThread(Urgency::Soon);
    std::unique_lock lock(m_mutex);
    for (;;) {
        std::optional<Work> work;
        m_wanted.wait(lock, [&] { return m_closing || (work = nextWork()); });
        if (m_closing) return;
        for (std::int64_t number = work->first; number <= work->last && !m_closing; ++number) {
            if (m_chunks.contains(number)) continue;
            if (isWaitedForElsewhere(*work)) break;
            lock.unlock();
            auto chunk = decodeChunk(number);
            lock.lock();
            m_chunks.emplace(number, std::move(chunk));
            evict();
            m_published.notify_all();
        }
    }
}

std::shared_ptr<const PcmCache::Chunk> PcmCache::decodeChunk(std::int64_t number) {
    auto chunk = std::make_shared<Chunk>();
    chunk->all.resize(kChunkFrames);
    if (!m_hasOtherTracks) {
        m_reader->read(number * kChunkFrames, &chunk->all[0].left, kChunkFrames);
        return chunk;
    }
    chunk->otherTracks.resize(kChunkFrames);
    m_reader->readParts(number * kChunkFrames, &chunk->all[0].left, &chunk->otherTracks[0].left, kChunkFrames);
    std::transform(chunk->all.begin(), chunk->all.end(), chunk->otherTracks.begin(), chunk->all.begin(),
                   [](StereoFrame a, StereoFrame b) { return a + b; });
    return chunk;
}

// Drops the chunks farthest from the playhead while there are too many; the looped passage stays when it fits.
void PcmCache::evict() {
    const bool keepLoop = loopFits();
    while (m_chunks.size() > m_budgetChunks) {
        auto victim = m_chunks.end();
        std::int64_t farthest = -1;
        for (auto it = m_chunks.begin(); it != m_chunks.end(); ++it) {
            const std::int64_t distance = std::abs(it->first - m_demand);
            if (distance > farthest && !(keepLoop && inLoop(it->first))) {
                farthest = distance;
                victim = it;
            }
        }
        if (victim == m_chunks.end()) return;
        m_chunks.erase(victim);
    }
}

}  // namespace qm
