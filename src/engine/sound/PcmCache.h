// Decoded sound around the playhead: chunks of frames, read ahead in the direction of play by a thread of its own, the
// looped passage kept whole while it fits, all within a memory budget. A wrap, a reversal or a short seek therefore
// costs no decoding, and a three-hour file costs no more memory than the budget.
#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <thread>
#include <unordered_map>
#include <vector>

#include "engine/media/SoundReader.h"
#include "engine/sound/StereoFrame.h"

namespace qm {

class PcmCache {
public:
    static constexpr std::int64_t kChunkFrames = 16384;
    static constexpr std::size_t kDefaultBudget = std::size_t{256} << 20;  // bytes

    // What will be played next, so that it is decoded before it is asked for.
    struct Outlook {
        bool backward = false;
        std::int64_t loopBegin = 0;  // frames; an empty range is no loop
        std::int64_t loopEnd = 0;
    };

    // The whole sound, or what of it does not belong to the first sound track.
    enum class Part { All, OtherTracks };

    explicit PcmCache(std::unique_ptr<SoundReader> reader, std::size_t budgetBytes = kDefaultBudget);
    ~PcmCache();

    int sampleRate() const { return m_sampleRate; }
    std::int64_t length() const { return m_length; }

    // Any thread. Takes effect with the next chunk that is chosen for decoding.
    void setOutlook(const Outlook& outlook);

    // Render thread. Copies frames [first, first + out.size()); frames outside the track are silence. Waits for the
    // decoder when they are not there yet. False when interrupted meanwhile: `out` is then undefined.
    bool read(std::int64_t first, std::span<StereoFrame> out, Part part = Part::All);
    bool has(std::int64_t first, std::int64_t count) const;  // all of it is decoded
    bool hasOtherTracks() const { return m_hasOtherTracks; }

    // Any thread. Makes a waiting read() return false, and every later one that would wait, until resume().
    void interrupt();
    void resume();

    void close();  // any thread; for good: gives the memory back, and the end waits for nothing but the reader

    std::size_t residentBytes() const;

private:
    struct Chunk {
        std::vector<StereoFrame> all;
        std::vector<StereoFrame> otherTracks;  // empty where there are none
    };
    struct Work {
        std::int64_t first, last;  // chunk numbers, inclusive
    };

    std::shared_ptr<const Chunk> chunkAt(std::int64_t number);
    std::optional<Work> nextWork() const;
    std::optional<Work> firstMissing(std::int64_t from, std::int64_t to) const;
    bool isWaitedForElsewhere(const Work& work) const;
    std::int64_t ahead(std::int64_t chunk, std::int64_t distance) const;
    bool inLoop(std::int64_t chunk) const;
    bool loopFits() const;
    void decode();
    std::shared_ptr<const Chunk> decodeChunk(std::int64_t number);
    void evict();
    std::int64_t chunkCount() const { return (m_length + kChunkFrames - 1) / kChunkFrames; }

    const std::unique_ptr<SoundReader> m_reader;  // decoder thread only
    const int m_sampleRate;
    const std::int64_t m_length;
    const bool m_hasOtherTracks;
    const std::size_t m_budgetChunks;

    mutable std::mutex m_mutex;
    std::condition_variable m_wanted;
    std::condition_variable m_published;
    std::unordered_map<std::int64_t, std::shared_ptr<const Chunk>> m_chunks;
    Outlook m_outlook;
    std::int64_t m_demand = 0;  // the chunk asked for last
    bool m_interrupted = false;
    bool m_closing = false;
    std::thread m_thread;
};

}  // namespace qm
