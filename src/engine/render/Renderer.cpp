#include "engine/render/Renderer.h"

#include <cmath>
#include <cstdlib>
#include <string_view>

#include "engine/render/stretch/ForesightStretch.h"
#include "engine/render/stretch/RubberBandStretch.h"

namespace qm {

namespace {

std::unique_ptr<TimeStretch> makeStretch(Stretcher stretcher, int sampleRate) {
    if (stretcher == Stretcher::Own) return std::make_unique<ForesightStretch>(sampleRate);
    return std::make_unique<RubberBandStretch>(sampleRate);
}

}  // namespace

Stretcher chosenStretcher() {
    const char* wish = std::getenv("QUILLMERE_STRETCHER");
    return wish != nullptr && std::string_view(wish) == "own" ? Stretcher::Own : Stretcher::Library;
}

Renderer::Renderer(PcmCache& cache, Stretcher stretcher)
    : m_timeline(cache), m_stretch(makeStretch(stretcher, cache.sampleRate())), m_active(&m_passthrough) {}

Renderer::~Renderer() = default;

bool Renderer::begin(const Playhead& playhead, const RenderSettings& settings, bool seamFade, std::int64_t step) {
    m_timeline.begin(playhead, seamFade, settings.tone);
    m_active = settings.stretches() ? m_stretch.get() : static_cast<TimeStretch*>(&m_passthrough);
    m_active->setLight(settings.light);
    return m_active->restart(m_timeline, step, settings.speed, std::exp2(settings.cents / 1200.0));
}

bool Renderer::render(std::span<StereoFrame> out) {
    if (!m_active->render(m_timeline, out)) return false;
    if (m_active == &m_passthrough) m_stretch->lookAhead(m_timeline, m_passthrough.nextStep());
    return true;
}

}  // namespace qm
