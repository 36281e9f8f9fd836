// Spoils whole inputs in the ways that find most, always in the same order for the same seed of its random numbers.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <random>
#include <vector>

namespace qm::test {

using Input = std::vector<std::uint8_t>;

inline constexpr std::size_t kLongestInput = std::size_t{1} << 18;  // bytes

class Mutator {
public:
    Mutator(std::vector<Input> seeds, unsigned random) : m_seeds(std::move(seeds)), m_random(random) {}

    Input next();                   // one of the seeds, spoilt
    Input spoilt(const Input& of);  // this one

private:
    std::size_t below(std::size_t end) { return end == 0 ? 0 : m_random() % end; }
    std::size_t place(const Input& input);
    void spoil(Input& input);
    void writeNumber(Input& input, std::size_t at, std::size_t bytes);

    std::vector<Input> m_seeds;
    std::mt19937 m_random;
};

// The beginning of the file, or of every file in the folder, in the order of their names.
void addFile(std::vector<Input>& seeds, const std::filesystem::path& path);

}  // namespace qm::test
