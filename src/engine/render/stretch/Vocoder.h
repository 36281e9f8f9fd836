// Stretches one run of consecutive source frames, forward, band by band. What it gives is a function of the source and
// of where it began alone.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "engine/render/stretch/AttackMap.h"
#include "engine/render/stretch/Grains.h"
#include "engine/render/stretch/SourceWindow.h"

namespace qm {

class Vocoder {
public:
    Vocoder(int sampleRate, AttackMap& attacks);

    // The source lies in [begin, course.end) of the timeline's track.
    void begin(Timeline& timeline, const Course& course, std::int64_t sourceBegin, bool light);

    // Begins to find the attacks around a frame of the source, as far as they will be wanted when a run begins there.
    void lookAround(Timeline& timeline, std::int64_t frame);

    // The next places. False when the timeline was interrupted: begin again.
    bool render(std::span<StereoFrame> out);

private:
    void lookAhead(Timeline& timeline, std::int64_t begin, std::int64_t end);

    AttackMap& m_attacks;
    Transforms m_transforms;
    SourceWindow m_source;
    std::array<GrainBand, AttackMap::kBands> m_bands;
    Timeline* m_timeline = nullptr;
    Course m_course;
    std::int64_t m_place = 0;
    std::vector<float> m_left, m_right;
};

}  // namespace qm
