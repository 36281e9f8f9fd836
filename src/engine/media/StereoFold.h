// Decoded sound of any layout and sample format as interleaved stereo floats: mono stands in both channels, stereo is
// untouched, more channels are folded by the standard downmix, scaled so that it cannot clip. Samples that are no
// sound, not finite or far beyond full scale, become 0. One thread at a time.
#pragma once

#include <vector>

#include "engine/media/Libav.h"

namespace qm {

class StereoFold {
public:
    StereoFold() = default;
    ~StereoFold() { av_channel_layout_uninit(&m_layout); }
    StereoFold(const StereoFold&) = delete;
    StereoFold& operator=(const StereoFold&) = delete;

    // Appends the frame to `stereo`. False for a sample format that is not sound as we know it.
    bool append(const AVFrame& frame, std::vector<float>& stereo);

private:
    void prepareMatrix(const AVChannelLayout& layout);

    AVChannelLayout m_layout{};
    std::vector<double> m_left;  // one gain a channel; empty until more than two channels were met
    std::vector<double> m_right;
    std::vector<float> m_plane;  // one channel as floats
};

}  // namespace qm
