// Forty small media files of many kinds, to be spoilt: made byte by byte, or by the ffmpeg program.
#pragma once

#include <string>
#include <vector>

#include "fuzz/Mutator.h"

namespace qm::test {

struct NamedInput {
    std::string name;
    Input bytes;
};

std::vector<NamedInput> hostileSeeds();

}  // namespace qm::test
