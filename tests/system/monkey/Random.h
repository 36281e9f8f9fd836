// Numbers that follow from the seed alone, the same on every machine.
#pragma once

#include <cstddef>
#include <cstdint>
#include <random>

class Random {
public:
    explicit Random(std::uint64_t seed) : m_numbers(seed) {}

    int below(int count) { return static_cast<int>(m_numbers() % static_cast<std::uint64_t>(count)); }
    int between(int least, int most) { return least + below(most - least + 1); }
    bool oneIn(int count) { return below(count) == 0; }

    template <typename List>
    const auto& oneOf(const List& list) {
        return list[static_cast<std::size_t>(below(static_cast<int>(std::size(list))))];
    }

private:
    std::mt19937_64 m_numbers;  // its numbers are laid down by the language, those of its distributions are not
};
