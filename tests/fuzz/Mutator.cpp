#include "fuzz/Mutator.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <fstream>
#include <iterator>

namespace qm::test {

namespace {

constexpr std::array<std::uint64_t, 14> kTellingNumbers = {
    0, 1, 7, 8, 16, 127, 128, 255, 256, 0x7fff, 0xffff, 0x7fffffff, 0x80000000, 0xffffffff};
constexpr std::array kTellingNames = {"moov", "udta", "meta", "ilst", "data",  "trak", "stsd",
                                      "keys", "LIST", "INFO", "id3 ", "ID3\4", "TPE1", "ds64",
                                      "SSND", "info", "pakt", "mvhd", "elst",  "stts", "ctts",
                                      "stco", "moof", "trun", "strh", "idx1",  "fmt ", "\xff\xfe"};

}  // namespace

Input Mutator::next() {
    return spoilt(m_seeds[below(m_seeds.size())]);
}

Input Mutator::spoilt(const Input& of) {
    Input input = of;
    for (std::size_t i = 0, times = 1 + below(6); i < times; ++i) {
        spoil(input);
    }
    input.resize(std::min(input.size(), kLongestInput));
    return input;
}

// Headers stand in front and behind more often than in the middle.
std::size_t Mutator::place(const Input& input) {
    const std::size_t reach = std::min<std::size_t>(input.size(), 256);
    switch (below(4)) {
        case 0:
            return input.size() - 1 - below(reach);
        case 1:
            return below(input.size());
        default:
            return below(reach);
    }
}

void Mutator::spoil(Input& input) {
    if (input.empty()) {
        input.push_back(0);
    }
    const std::size_t at = place(input);
    const auto position = input.begin() + static_cast<std::ptrdiff_t>(at);
    const std::size_t rest = input.size() - at;
    switch (below(8)) {
        case 0:
            input[at] ^= static_cast<std::uint8_t>(1u << below(8));
            break;
        case 1:
            input[at] = static_cast<std::uint8_t>(m_random());
            break;
        case 2:
            writeNumber(input, at, std::size_t{1} << below(4));
            break;
        case 3:
            input.erase(position, position + static_cast<std::ptrdiff_t>(1 + below(std::min<std::size_t>(rest, 64))));
            break;
        case 4: {  // once more what stands there
            const Input part(position,
                             position + static_cast<std::ptrdiff_t>(1 + below(std::min<std::size_t>(rest, 512))));
            input.insert(position, part.begin(), part.end());
            break;
        }
        case 5:
            input.resize(at);
            break;
        case 6: {
            const Input& other = m_seeds[below(m_seeds.size())];
            const auto from = other.begin() + static_cast<std::ptrdiff_t>(below(other.size()));
            input.erase(position, input.end());
            input.insert(input.end(), from, other.end());
            break;
        }
        default: {
            const char* name = kTellingNames[below(kTellingNames.size())];
            std::copy_n(name, std::min(std::strlen(name), rest), position);
            break;
        }
    }
}

void Mutator::writeNumber(Input& input, std::size_t at, std::size_t bytes) {
    const std::uint64_t number = below(3) == 0 ? input.size() - at : kTellingNumbers[below(kTellingNumbers.size())];
    const bool little = below(2) == 0;
    for (std::size_t i = 0; i < bytes && at + i < input.size(); ++i) {
        input[at + i] = static_cast<std::uint8_t>(number >> 8 * (little ? i : bytes - 1 - i));
    }
}

void addFile(std::vector<Input>& seeds, const std::filesystem::path& path) {
    if (std::filesystem::is_directory(path)) {
        std::vector<std::filesystem::path> inside;
        std::copy(std::filesystem::directory_iterator(path), {}, std::back_inserter(inside));
        std::sort(inside.begin(), inside.end());
        for (const auto& entry : inside) {
            addFile(seeds, entry);
        }
        return;
    }
    std::ifstream file(path, std::ios::binary);
    Input input(kLongestInput);
    file.read(reinterpret_cast<char*>(input.data()), static_cast<std::streamsize>(input.size()));
    input.resize(static_cast<std::size_t>(file.gcount()));
    if (!input.empty()) {
        seeds.push_back(std::move(input));
    }
}

}  // namespace qm::test
