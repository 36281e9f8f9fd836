#include "engine/analysis/Columns.h"

#include <algorithm>

#include "engine/realtime/ThreadPriority.h"

namespace qm {

namespace {

constexpr std::int64_t kBlock = 8192;  // frames

}  // namespace

std::vector<Column> exactColumns(SoundReader& sound, std::int64_t begin, std::int64_t end, std::int64_t count) {
    std::vector<Column> columns;
    std::vector<float> block(2 * kBlock);
    for (std::int64_t i = 0; i < count; ++i) {
        ColumnSum sum;
        const std::int64_t last = columnPlace(begin, end, i + 1, count);
        for (std::int64_t at = columnPlace(begin, end, i, count); at < last;) {
            const std::int64_t frames = std::min(kBlock, last - at);
            sound.read(at, block.data(), static_cast<std::size_t>(frames));
            sum.add(block.data(), frames);
            at += frames;
        }
        columns.push_back(sum.column());
    }
    return columns;
}

Columns::Columns(std::shared_ptr<const SoundLevels> levels, SoundOpener open, std::int64_t length)
    : m_levels(std::move(levels)), m_length(length), m_thread([this, open = std::move(open)] {
          preferThisThread(Urgency::Idle);
          std::unique_ptr<SoundReader> sound;
          std::vector<float> block(2 * kBlock);
          std::unique_lock lock(m_mutex);
          while (true) {
              m_changed.wait(lock, [this] { return m_closing || m_held.end < m_wanted.end; });
              if (m_closing) return;
              const std::int64_t first = m_held.end, count = std::min(kBlock, m_wanted.end - first);
              lock.unlock();
              if (!sound) sound = open();
              if (!sound) return;
              sound->read(first, block.data(), static_cast<std::size_t>(count));
              lock.lock();
              if (m_held.end != first || m_wanted.end - first < count) continue;  // another view is wanted by now
              std::copy_n(block.begin(), 2 * count, m_sound.begin() + 2 * (first - m_wanted.begin));
              m_held.end += count;
          }
      }) {}

Columns::~Columns() {
    {
        const std::lock_guard lock(m_mutex);
        m_closing = true;
    }
    m_changed.notify_all();
    m_thread.join();
}

Columns::Stretch Columns::around(Stretch view) const {
    const std::int64_t room = std::min(kMostFrames - (view.end - view.begin), view.end - view.begin);
    return {std::max<std::int64_t>(view.begin - room / 2, 0), std::min(view.end + room / 2, m_length)};
}

std::vector<Column> Columns::columns(std::int64_t begin, std::int64_t end, std::int64_t count) {
    const Stretch view{std::max<std::int64_t>(begin, 0), std::min(end, m_length)};
    if (count <= 0 || view.begin >= view.end || end - begin > kMostFrames ||
        (end - begin) / count >= m_levels->partFrames())
        return m_levels->columns(begin, end, count);
    std::vector<Column> columns = m_levels->columns(begin, end, count);
    const std::lock_guard lock(m_mutex);
    if (!m_wanted.holds(view)) {
        m_wanted = around(view);
        m_held = {m_wanted.begin, m_wanted.begin};
        m_sound.resize(static_cast<std::size_t>(2 * (m_wanted.end - m_wanted.begin)));
        m_changed.notify_all();
    }
    for (std::int64_t i = 0; i < count; ++i) {
        const Stretch frames{columnPlace(begin, end, i, count), columnPlace(begin, end, i + 1, count)};
        if (!m_held.holds(frames) || frames.begin >= frames.end) continue;
        ColumnSum sum;
        sum.add(m_sound.data() + 2 * (frames.begin - m_wanted.begin), frames.end - frames.begin);
        columns[static_cast<std::size_t>(i)] = sum.column();
    }
    return columns;
}

}  // namespace qm
