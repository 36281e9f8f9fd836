// Owners of the sound library's objects, so that nothing of it is taken down by hand. Only engine/output and
// engine/capture include this.
#pragma once

#include <cubeb/cubeb.h>

#include <algorithm>
#include <cstdint>
#include <memory>

namespace qm {

struct CubebContextEnd {
    void operator()(cubeb* context) const { cubeb_destroy(context); }
};
using CubebContext = std::unique_ptr<cubeb, CubebContextEnd>;

struct CubebStreamEnd {
    void operator()(cubeb_stream* stream) const {
        cubeb_stream_stop(stream);
        cubeb_stream_destroy(stream);
    }
};
using CubebStream = std::unique_ptr<cubeb_stream, CubebStreamEnd>;

// Null without any sound system.
inline CubebContext openCubeb() {
    cubeb* context = nullptr;
    return CubebContext(cubeb_init(&context, "Quillmere", nullptr) == CUBEB_OK ? context : nullptr);
}

inline cubeb_stream_params stereoFloat(int sampleRate) {
    cubeb_stream_params parameters{};
    parameters.format = CUBEB_SAMPLE_FLOAT32NE;
    parameters.rate = static_cast<std::uint32_t>(sampleRate);
    parameters.channels = 2;
    parameters.layout = CUBEB_LAYOUT_STEREO;
    parameters.prefs = CUBEB_STREAM_PREF_NONE;
    return parameters;
}

// In frames: the wish, or the least that the device can do. 0 if it cannot be asked.
inline std::uint32_t latencyOf(cubeb* context, cubeb_stream_params parameters, double seconds) {
    std::uint32_t least = 0;
    if (cubeb_get_min_latency(context, &parameters, &least) != CUBEB_OK) return 0;
    return std::max(least, static_cast<std::uint32_t>(seconds * parameters.rate));
}

}  // namespace qm
