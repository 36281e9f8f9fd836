// A small value that one thread publishes and others copy: wait-free for the writer, readers retry while a write is
// under way. Never allocates, never locks.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <cstring>
#include <optional>
#include <type_traits>

namespace qm {

template <typename T>
class SeqLocked {
    static_assert(std::is_trivially_copyable_v<T>);
    static constexpr std::size_t kWords = (sizeof(T) + 7) / 8;

public:
    // The one writer thread.
    void store(const T& value) {
        std::array<std::uint64_t, kWords> words{};
        std::memcpy(words.data(), &value, sizeof(T));
        const std::uint64_t sequence = m_sequence.load(std::memory_order_relaxed);
        m_sequence.store(sequence + 1, std::memory_order_relaxed);
        for (std::size_t i = 0; i < kWords; ++i) m_words[i].store(words[i], std::memory_order_release);
        m_sequence.store(sequence + 2, std::memory_order_release);
    }

    // Any thread. None when a write was under way: ask again or take another value.
    std::optional<T> tryLoad() const {
        const std::uint64_t before = m_sequence.load(std::memory_order_acquire);
        if ((before & 1) != 0) return std::nullopt;
        std::array<std::uint64_t, kWords> words;
        for (std::size_t i = 0; i < kWords; ++i) words[i] = m_words[i].load(std::memory_order_acquire);
        if (m_sequence.load(std::memory_order_relaxed) != before) return std::nullopt;
        T value;
        std::memcpy(static_cast<void*>(&value), words.data(), sizeof(T));
        return value;
    }

private:
    std::atomic<std::uint64_t> m_sequence{0};
    std::array<std::atomic<std::uint64_t>, kWords> m_words{};
};

}  // namespace qm
