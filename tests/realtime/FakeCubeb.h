// Stands in for the sound library: one stream, whose callbacks a test makes.
#pragma once

#include <cubeb/cubeb.h>

#include <cstdint>
#include <span>

#include "engine/render/StereoFrame.h"

namespace qm::test {

struct FakeCubeb {
    cubeb_data_callback dataCallback = nullptr;
    cubeb_state_callback stateCallback = nullptr;
    void* user = nullptr;
    std::uint64_t position = 0;

    // As the library's thread would; how many frames it was given.
    long ask(std::span<StereoFrame> out) const {
        return dataCallback(nullptr, user, nullptr, out.data(), static_cast<long>(out.size()));
    }
    void say(cubeb_state state) const { stateCallback(nullptr, user, state); }
};

extern FakeCubeb fakeCubeb;

}  // namespace qm::test
