#include "engine/movie/WaveformScan.h"

#include <algorithm>
#include <cmath>

#include "engine/realtime/ThreadPriority.h"

namespace qm {

namespace {

constexpr std::int64_t kBlock = 8192;  // frames

}  // namespace

WaveformScan::WaveformScan(SoundOpener open)
    : m_block(2 * kBlock), m_thread([this, open = std::move(open)] {
          preferThisThread(Urgency::Idle);
          if (const auto sound = open()) scan(*sound);
          const std::lock_guard lock(m_mutex);
          m_waveform.isComplete = true;
      }) {}

WaveformScan::~WaveformScan() {
    m_closing = true;
    m_thread.join();
}

Waveform WaveformScan::waveform() const {
    const std::lock_guard lock(m_mutex);
    return m_waveform;
}

std::shared_ptr<const SoundLevels> WaveformScan::levels() const {
    const std::lock_guard lock(m_mutex);
    return m_levels;
}

void WaveformScan::scan(SoundReader& sound) {
    const std::int64_t length = sound.length();
    const std::int64_t parts = std::min(kParts, length);
    {
        const std::lock_guard lock(m_mutex);
        m_waveform.peaks.resize(static_cast<std::size_t>(parts));
        m_levels = std::make_shared<SoundLevels>(length);
    }
    for (std::int64_t part = 0; part < parts && !m_closing; ++part) {
        const float peak = peakOf(sound, length * part / parts, length * (part + 1) / parts);
        const std::lock_guard lock(m_mutex);
        m_waveform.peaks[m_waveform.known++] = peak;
    }
}

float WaveformScan::peakOf(SoundReader& sound, std::int64_t first, std::int64_t last) {
    float peak = 0;
    while (first < last && !m_closing) {
        const std::int64_t count = std::min(kBlock, last - first);
        sound.read(first, m_block.data(), static_cast<std::size_t>(count));
        m_levels->add(m_block.data(), count);
        for (std::int64_t i = 0; i < 2 * count; ++i)
            peak = std::max(peak, std::abs(m_block[static_cast<std::size_t>(i)]));
        first += count;
    }
    return std::min(peak, 1.0f);
}

}  // namespace qm
