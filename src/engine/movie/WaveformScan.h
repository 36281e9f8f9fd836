// Looks once through a whole sound for its waveform and for the levels of which views are drawn, on a thread of its own
// and after everything else: with a reader of its own, so that playing never waits for it.
#pragma once

#include <atomic>
#include <memory>
#include <mutex>
#include <thread>

#include "engine/analysis/SoundLevels.h"
#include "engine/api/Waveform.h"
#include "engine/media/SoundReader.h"

namespace qm {

class WaveformScan {
public:
    static constexpr std::int64_t kParts = 2000;  // a sound of fewer frames has a part for each

    explicit WaveformScan(SoundOpener open);
    ~WaveformScan();  // ends the scan within a block

    Waveform waveform() const;                          // any thread
    std::shared_ptr<const SoundLevels> levels() const;  // any thread; null until the sound is open

private:
    void scan(SoundReader& sound);
    float peakOf(SoundReader& sound, std::int64_t first, std::int64_t last);

    std::atomic<bool> m_closing{false};
    mutable std::mutex m_mutex;
    Waveform m_waveform;
    std::shared_ptr<SoundLevels> m_levels;
    std::vector<float> m_block;  // the scan's own
    std::thread m_thread;
};

}  // namespace qm
