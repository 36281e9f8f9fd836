#include "engine/render/stretch/RubberBandStretch.h"

#include <rubberband/RubberBandStretcher.h>

#include <algorithm>
#include <cmath>

namespace qm {

namespace {

using RubberBand::RubberBandStretcher;

// The library's alignment depends on the size of the blocks it is fed, so all are of this one.
constexpr std::size_t kBlock = 512;

// At an effective ratio of exactly one the library resets its phases audibly; this factor is 0.02 cents.
constexpr double kOffUnity = 1.00001;

std::unique_ptr<RubberBandStretcher> makeLibrary(int sampleRate, RubberBandStretcher::Options options) {
    auto library = std::make_unique<RubberBandStretcher>(static_cast<std::size_t>(sampleRate), 2,
                                                         RubberBandStretcher::OptionProcessRealTime |
                                                             RubberBandStretcher::OptionEngineFiner |
                                                             RubberBandStretcher::OptionChannelsTogether | options,
                                                         2.0, 1.0);
    library->setMaxProcessSize(kBlock);
    return library;
}

}  // namespace

RubberBandStretch::RubberBandStretch(int sampleRate) : m_sampleRate(sampleRate), m_source(kBlock) {
    for (auto& plane : m_planes) plane.resize(kBlock);
    makeLibraries();
}

RubberBandStretch::~RubberBandStretch() = default;

void RubberBandStretch::setLight(bool light) {
    if (light == m_light) return;
    m_light = light;
    makeLibraries();
}

void RubberBandStretch::makeLibraries() {
    const auto window = m_light ? RubberBandStretcher::OptionWindowShort : RubberBandStretcher::OptionWindowStandard;
    m_plain = makeLibrary(m_sampleRate, window);
    m_pitched = makeLibrary(m_sampleRate, RubberBandStretcher::OptionPitchHighConsistency | window);
    m_library = m_plain.get();
}

bool RubberBandStretch::restart(Timeline& timeline, std::int64_t step, double speed, double pitchFactor) {
    const double timeRatio = 1.0 / speed;
    if (std::abs(timeRatio * pitchFactor - 1.0) < kOffUnity - 1.0) pitchFactor = kOffUnity / timeRatio;
    m_library = pitchFactor == 1.0 ? m_plain.get() : m_pitched.get();
    m_library->reset();
    m_library->setTimeRatio(timeRatio);
    m_library->setPitchScale(pitchFactor);
    std::size_t pad = m_library->getPreferredStartPad();
    m_toDrop = m_library->getStartDelay();
    m_nextStep = step - static_cast<std::int64_t>(pad);
    for (; pad > 0; pad -= std::min(pad, kBlock))
        if (!feed(timeline, std::min(pad, kBlock))) return false;
    return true;
}

bool RubberBandStretch::render(Timeline& timeline, std::span<StereoFrame> out) {
    while (!out.empty()) {
        out = out.subspan(drain(out));
        if (!out.empty() && m_library->available() <= 0 && !feed(timeline, kBlock)) return false;
    }
    return true;
}

bool RubberBandStretch::feed(Timeline& timeline, std::size_t frames) {
    const std::span<StereoFrame> source(m_source.data(), frames);
    if (!timeline.read(m_nextStep, source)) return false;
    m_nextStep += static_cast<std::int64_t>(frames);
    for (std::size_t i = 0; i < frames; ++i) {
        m_planes[0][i] = source[i].left;
        m_planes[1][i] = source[i].right;
    }
    const float* const input[] = {m_planes[0].data(), m_planes[1].data()};
    m_library->process(input, frames, false);
    return true;
}

// Takes what the library has ready, without what belongs before the starting step.
std::size_t RubberBandStretch::drain(std::span<StereoFrame> out) {
    float* const output[] = {m_planes[0].data(), m_planes[1].data()};
    std::size_t taken = 0;
    while (taken < out.size() && m_library->available() > 0) {
        const std::size_t wanted = m_toDrop > 0 ? m_toDrop : out.size() - taken;
        const std::size_t ready = std::min({wanted, kBlock, static_cast<std::size_t>(m_library->available())});
        const std::size_t got = m_library->retrieve(output, ready);
        if (got == 0) break;
        if (m_toDrop > 0) {
            m_toDrop -= std::min(m_toDrop, got);
            continue;
        }
        for (std::size_t i = 0; i < got; ++i) out[taken + i] = {m_planes[0][i], m_planes[1][i]};
        taken += got;
    }
    return taken;
}

}  // namespace qm
