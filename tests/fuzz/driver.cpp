// A fuzzing program without coverage, for compilers that bring none: it spoils the seeds in the ways that find most,
// always in the same order for the same seed of its random numbers.
//
//   fuzz_... [--runs N] [--random N] [--write-seeds FOLDER] [FILE or FOLDER ...]
//
// Files named on the command line, and those in folders, are seeds too. The last input stays in the temporary file
// that is named when the program begins, if the program dies of it.
#include <cstdio>
#include <fstream>
#include <string>

#include "fuzz/FuzzTarget.h"
#include "fuzz/Mutator.h"

namespace {

using qm::test::Input;

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
            qm::test::addFile(seeds, argument);
        }
    }
    std::printf("%zu seeds, the last input is in %s\n", seeds.size(), qm::test::inputPath().c_str());
    std::fflush(stdout);
    for (const Input& seed : seeds) {
        LLVMFuzzerTestOneInput(seed.data(), seed.size());
    }
    qm::test::Mutator mutator(std::move(seeds), random);
    for (long run = 0; run < runs; ++run) {
        const Input input = mutator.next();
        LLVMFuzzerTestOneInput(input.data(), input.size());
    }
    std::printf("%ld inputs\n", runs);
    return 0;
}
