// A bounded first-in first-out buffer between exactly one producer thread and exactly one consumer thread.
// Wait-free on both sides, never allocates after construction. Positions are absolute counts since construction, so
// that either side can name an element; the capacity is rounded up to a power of two. Each side belongs to the thread
// that uses it first, which is asserted, until it is handed over.
#pragma once

#include <algorithm>
#include <atomic>
#include <bit>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "engine/realtime/ThreadRole.h"

namespace qm {

template <typename T>
class SpscRing {
public:
    explicit SpscRing(std::size_t capacity) : m_items(std::bit_ceil(capacity)), m_mask(m_items.size() - 1) {}

    std::size_t capacity() const { return m_items.size(); }
    std::uint64_t writePosition() const { return m_write.load(std::memory_order_acquire); }
    std::uint64_t readPosition() const { return m_read.load(std::memory_order_acquire); }
    std::size_t available() const { return static_cast<std::size_t>(writePosition() - readPosition()); }
    std::size_t space() const { return capacity() - available(); }

    // Producer only. Writes as many as fit and returns how many.
    std::size_t write(std::span<const T> items) {
        assert(m_producer.isHere());
        const std::uint64_t write = m_write.load(std::memory_order_relaxed);
        const std::size_t count = std::min(items.size(), space());
        for (std::size_t i = 0; i < count; ++i) m_items[(write + i) & m_mask] = items[i];
        m_write.store(write + count, std::memory_order_release);
        return count;
    }

    // Consumer only. Reads as many as there are and returns how many.
    std::size_t read(std::span<T> items) {
        assert(m_consumer.isHere());
        const std::uint64_t read = m_read.load(std::memory_order_relaxed);
        const std::size_t count = std::min(items.size(), available());
        for (std::size_t i = 0; i < count; ++i) items[i] = m_items[(read + i) & m_mask];
        m_read.store(read + count, std::memory_order_release);
        return count;
    }

    // Consumer only. Forgets the next `count`, which must be available.
    void skip(std::size_t count) {
        assert(m_consumer.isHere());
        m_read.fetch_add(count, std::memory_order_release);
    }

    // Consumer only. Forgets everything written so far.
    void discard() {
        assert(m_consumer.isHere());
        m_read.store(writePosition(), std::memory_order_release);
    }

    // Producer only: an element that was written and not yet overwritten.
    const T& peek(std::uint64_t position) const {
        assert(m_producer.isHere());
        return m_items[position & m_mask];
    }

    // When the thread that has used a side is known to have done with it: the next one that uses it takes it.
    void handOverProducer() { m_producer.handOver(); }
    void handOverConsumer() { m_consumer.handOver(); }

private:
    std::vector<T> m_items;
    std::size_t m_mask;
    alignas(64) std::atomic<std::uint64_t> m_write{0};
    ThreadRole m_producer;
    alignas(64) std::atomic<std::uint64_t> m_read{0};
    ThreadRole m_consumer;
};

}  // namespace qm
