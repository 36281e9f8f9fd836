// From the timeline to finished sound: the bit-exact way at speed 1 and pitch 0, the time stretch otherwise. The same
// object serves the real-time render thread and the offline tool. Render thread only.
#pragma once

#include <memory>
#include <span>

#include "engine/render/stretch/Passthrough.h"
#include "engine/render/stretch/TimeStretch.h"
#include "engine/sound/Timeline.h"

namespace qm {

struct RenderSettings {
    double speed = 1.0;  // source frames per output frame, above zero; the direction is the playhead's
    double cents = 0.0;
    ToneSettings tone;
    bool light = false;  // a stretch that costs less

    bool stretches() const { return speed != 1.0 || cents != 0.0; }
    friend bool operator==(const RenderSettings&, const RenderSettings&) = default;
};

// Who changes speed and pitch: the library, or the stretcher that looks ahead for attacks.
enum class Stretcher { Library, Own };

// What the program plays with: the library, unless the environment says QUILLMERE_STRETCHER=own.
Stretcher chosenStretcher();

class Renderer {
public:
    explicit Renderer(PcmCache& cache, Stretcher stretcher = Stretcher::Library);
    ~Renderer();

    // Starts at `step` of the playhead; a negative step plays what leads up to it. False when interrupted.
    bool begin(const Playhead& playhead, const RenderSettings& settings, bool seamFade, std::int64_t step);

    // The next frames of output. False when interrupted: begin again.
    bool render(std::span<StereoFrame> out);

private:
    Timeline m_timeline;
    Passthrough m_passthrough;
    std::unique_ptr<TimeStretch> m_stretch;
    TimeStretch* m_active;
};

}  // namespace qm
