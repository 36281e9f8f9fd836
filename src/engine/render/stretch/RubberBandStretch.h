// Time stretch on the Rubber Band library, R3 engine in its real-time mode, both channels together.
#pragma once

#include <array>
#include <memory>
#include <vector>

#include "engine/render/stretch/TimeStretch.h"

namespace RubberBand {
class RubberBandStretcher;
}

namespace qm {

class RubberBandStretch : public TimeStretch {
public:
    explicit RubberBandStretch(int sampleRate);
    ~RubberBandStretch() override;

    void setLight(bool light) override;
    bool restart(Timeline& timeline, std::int64_t step, double speed, double pitchFactor) override;
    bool render(Timeline& timeline, std::span<StereoFrame> out) override;

private:
    void makeLibraries();
    bool feed(Timeline& timeline, std::size_t frames);
    std::size_t drain(std::span<StereoFrame> out);

    using Library = RubberBand::RubberBandStretcher;

    // Moving the pitch costs the library a resampler in every block, a third more work: without it there is another
    // one.
    const int m_sampleRate;
    bool m_light = false;  // short windows
    std::unique_ptr<Library> m_plain;
    std::unique_ptr<Library> m_pitched;
    Library* m_library = nullptr;  // the one in use
    std::int64_t m_nextStep = 0;   // the next step to feed
    std::size_t m_toDrop = 0;      // output frames that belong before the starting step
    std::vector<StereoFrame> m_source;
    std::array<std::vector<float>, 2> m_planes;
};

}  // namespace qm
