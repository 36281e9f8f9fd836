// The columns of any view of a track. Far ones come from what the scan of the whole track knows, close ones from the
// sound itself, which a reader of its own decodes after everything else: at most 3 MB, which hold the view and as much
// beside it as there is room for.
#pragma once

#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include "engine/analysis/SoundLevels.h"
#include "engine/media/SoundReader.h"

namespace qm {

// Over exactly the frames of each column; waits until they are decoded. Any thread but the window's.
std::vector<Column> exactColumns(SoundReader& sound, std::int64_t begin, std::int64_t end, std::int64_t count);

class Columns {
public:
    static constexpr std::int64_t kMostFrames = 3000000 / (2 * sizeof(float));  // that are kept decoded

    Columns(std::shared_ptr<const SoundLevels> levels, SoundOpener open, std::int64_t length);
    ~Columns();  // within a block of decoding

    // What is known of [begin, end) now; never waits. A close view that is not known yet is decoded from then on, in
    // the place of one that was asked for before. Main thread only.
    std::vector<Column> columns(std::int64_t begin, std::int64_t end, std::int64_t count);

private:
    struct Stretch {
        std::int64_t begin = 0, end = 0;
        bool holds(const Stretch& other) const { return begin <= other.begin && end >= other.end; }
    };

    Stretch around(Stretch view) const;

    const std::shared_ptr<const SoundLevels> m_levels;
    const std::int64_t m_length;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_closing = false;      // guarded, as all below
    Stretch m_wanted;            // to be decoded
    Stretch m_held;              // what has been decoded of it
    std::vector<float> m_sound;  // of m_wanted, from its begin
    std::thread m_thread;
};

}  // namespace qm
