// monkey PROGRAM FOLDER SEED SECONDS FILE...: starts the program and does 20 000 things at random to it, and again as
// long as there is time, each run by its own seed. What it writes is in FOLDER. Ends with 1 at the first finding: the
// program has ended otherwise than by its own Quit, does not answer for two seconds, warns, does not come to rest, has
// lost its list, or has grown.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>

#include "Cage.h"
#include "Trial.h"

int main(int argc, char** argv) {
    if (argc < 6) {
        std::fputs("monkey PROGRAM FOLDER SEED SECONDS FILE...\n", stderr);
        return 2;
    }
    const std::uint64_t first = std::strtoull(argv[3], nullptr, 10);
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(std::atoi(argv[4]));
    const std::vector<std::string> files(argv + 5, argv + argc);
    if (!canKeepToAFolder()) std::puts("Nothing keeps a program to a folder here: file panels are closed at once");
    try {
        for (std::uint64_t seed = first;; ++seed) {
            std::printf("seed %llu\n", static_cast<unsigned long long>(seed));
            std::fflush(stdout);
            Trial trial(argv[1], argv[2], seed, files);
            if (!trial.run(end)) return 1;
            if (std::chrono::steady_clock::now() >= end) return 0;
        }
    } catch (const std::exception& problem) {
        std::fprintf(stderr, "monkey: %s\n", problem.what());
        return 2;
    }
}
