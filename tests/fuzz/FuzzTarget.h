// What a fuzz target is made of: the function that every fuzzing program calls, the inputs to begin with, and a way to
// hand bytes to what reads files.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "engine/media/FileBytes.h"

// Reads the bytes as a file would be read. Aborts when the outcome breaks a promise.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace qm::test {

// Whole inputs that lead far into the code.
std::vector<std::vector<std::uint8_t>> fuzzSeeds();

// The bytes as an open file. Every call writes the same temporary file, so that what crashed is found in it.
std::shared_ptr<const FileBytes> fileOf(const std::uint8_t* data, std::size_t size);
const std::string& inputPath();

inline void promise(bool kept) {
    if (!kept) {
        std::abort();
    }
}

}  // namespace qm::test
