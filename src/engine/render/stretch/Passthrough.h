// Speed 1 and pitch unchanged: bit for bit the source.
#pragma once

#include "engine/render/stretch/TimeStretch.h"

namespace qm {

class Passthrough : public TimeStretch {
public:
    void setLight(bool) override {}

    bool restart(Timeline&, std::int64_t step, double, double) override {
        m_step = step;
        return true;
    }

    bool render(Timeline& timeline, std::span<StereoFrame> out) override {
        if (!timeline.read(m_step, out)) return false;
        m_step += static_cast<std::int64_t>(out.size());
        return true;
    }

    std::int64_t nextStep() const { return m_step; }

private:
    std::int64_t m_step = 0;
};

}  // namespace qm
