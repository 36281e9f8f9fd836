// A fuzzing program without coverage, for compilers that bring none: it spoils the seeds in the ways that find most,
// always in the same order for the same seed of its random numbers.
//
//   fuzz_... [--runs N] [--random N] [--write-seeds FOLDER] [FILE or FOLDER ...]
//
// Files named on the command line, and those in folders, are seeds too. The last input stays in the temporary file
// that is named when the program begins, if the program dies of it.
#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

#include "fuzz/FuzzTarget.h"

namespace {

using Input = std::vector<std::uint8_t>;

constexpr std::size_t kLongestInput = std::size_t{1} << 18;
constexpr std::array<std::uint64_t, 14> kTellingNumbers = {
    0, 1, 7, 8, 16, 127, 128, 255, 256, 0x7fff, 0xffff, 0x7fffffff, 0x80000000, 0xffffffff};
constexpr std::array kTellingNames = {"moov", "udta", "meta", "ilst", "data",    "trak", "stsd",
                                      "keys", "LIST", "INFO", "id3 ", "ID3\4",   "TPE1", "ds64",
                                      "SSND", "info", "pakt", "mvhd", "\xff\xfe"};

class Mutator {
public:
    Mutator(std::vector<Input> seeds, unsigned random) : m_seeds(std::move(seeds)), m_random(random) {}

    Input next() {
        Input input = m_seeds[below(m_seeds.size())];
        for (std::size_t i = 0, times = 1 + below(6); i < times; ++i) {
            spoil(input);
        }
        input.resize(std::min(input.size(), kLongestInput));
        return input;
    }

private:
    std::size_t below(std::size_t end) { return end == 0 ? 0 : m_random() % end; }

    // Headers stand in front and behind more often than in the middle.
    std::size_t place(const Input& input) {
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

    void spoil(Input& input) {
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
                input.erase(position,
                            position + static_cast<std::ptrdiff_t>(1 + below(std::min<std::size_t>(rest, 64))));
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

    void writeNumber(Input& input, std::size_t at, std::size_t bytes) {
        const std::uint64_t number = below(3) == 0 ? input.size() - at : kTellingNumbers[below(kTellingNumbers.size())];
        const bool little = below(2) == 0;
        for (std::size_t i = 0; i < bytes && at + i < input.size(); ++i) {
            input[at + i] = static_cast<std::uint8_t>(number >> 8 * (little ? i : bytes - 1 - i));
        }
    }

    std::vector<Input> m_seeds;
    std::mt19937 m_random;
};

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

void writeSeeds(const std::vector<Input>& seeds, const std::filesystem::path& folder) {
    for (std::size_t i = 0; i < seeds.size(); ++i) {
        std::ofstream file(folder / ("seed" + std::to_string(i)), std::ios::binary);
        file.write(reinterpret_cast<const char*>(seeds[i].data()), static_cast<std::streamsize>(seeds[i].size()));
    }
}

}  // namespace

int main(int argc, char** argv) {
    std::vector<Input> seeds = qm::test::fuzzSeeds();
    long runs = 5000;
    unsigned random = 1;
    for (int i = 1; i < argc; ++i) {
        const std::string argument = argv[i];
        const bool hasValue = i + 1 < argc;
        if (argument == "--runs" && hasValue) {
            runs = std::stol(argv[++i]);
        } else if (argument == "--random" && hasValue) {
            random = static_cast<unsigned>(std::stoul(argv[++i]));
        } else if (argument == "--write-seeds" && hasValue) {
            writeSeeds(seeds, argv[++i]);
        } else if (!argument.empty()) {
            addFile(seeds, argument);
        }
    }
    std::printf("%zu seeds, the last input is in %s\n", seeds.size(), qm::test::inputPath().c_str());
    std::fflush(stdout);
    for (const Input& seed : seeds) {
        LLVMFuzzerTestOneInput(seed.data(), seed.size());
    }
    Mutator mutator(std::move(seeds), random);
    for (long run = 0; run < runs; ++run) {
        const Input input = mutator.next();
        LLVMFuzzerTestOneInput(input.data(), input.size());
    }
    std::printf("%ld inputs\n", runs);
    return 0;
}
