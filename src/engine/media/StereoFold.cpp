#include "engine/media/StereoFold.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numbers>

extern "C" {
#include <libswresample/swresample.h>
}

namespace qm {

namespace {

// A sample this loud, 24 dB above full scale, is damage. So is one that is not a number: a filter that is fed one never
// gets rid of it.
constexpr float kLoudestBelieved = 16;

float toFloat(std::uint8_t v) {
    return static_cast<float>(v - 128) / 128.0f;
}
float toFloat(std::int16_t v) {
    return static_cast<float>(v) / 32768.0f;
}
float toFloat(std::int32_t v) {
    return static_cast<float>(v) / 2147483648.0f;
}
float toFloat(std::int64_t v) {
    return static_cast<float>(v) / 9223372036854775808.0f;
}
float toFloat(float v) {
    return std::abs(v) <= kLoudestBelieved ? v : 0.0f;
}
float toFloat(double v) {
    return toFloat(static_cast<float>(v));
}

template <typename Sample>
void spread(const AVFrame& frame, int channel, float* target, int stride) {
    const bool planar = av_sample_fmt_is_planar(static_cast<AVSampleFormat>(frame.format)) != 0;
    const int step = planar ? 1 : frame.ch_layout.nb_channels;
    const auto* source =
        reinterpret_cast<const Sample*>(frame.extended_data[planar ? channel : 0]) + (planar ? 0 : channel);
    for (int i = 0; i < frame.nb_samples; ++i) {
        target[i * stride] = toFloat(source[i * step]);
    }
}

bool channelToFloats(const AVFrame& frame, int channel, float* target, int stride) {
    switch (av_get_packed_sample_fmt(static_cast<AVSampleFormat>(frame.format))) {
        case AV_SAMPLE_FMT_U8:
            spread<std::uint8_t>(frame, channel, target, stride);
            return true;
        case AV_SAMPLE_FMT_S16:
            spread<std::int16_t>(frame, channel, target, stride);
            return true;
        case AV_SAMPLE_FMT_S32:
            spread<std::int32_t>(frame, channel, target, stride);
            return true;
        case AV_SAMPLE_FMT_S64:
            spread<std::int64_t>(frame, channel, target, stride);
            return true;
        case AV_SAMPLE_FMT_FLT:
            spread<float>(frame, channel, target, stride);
            return true;
        case AV_SAMPLE_FMT_DBL:
            spread<double>(frame, channel, target, stride);
            return true;
        default:
            return false;
    }
}

bool standardDownmix(const AVChannelLayout& layout, std::vector<double>& left, std::vector<double>& right) {
    constexpr std::ptrdiff_t kStride = 64;  // the library scales a matrix of this size whatever the layouts are
    std::vector<double> matrix(kStride * kStride, 0.0);
    const AVChannelLayout stereo = AV_CHANNEL_LAYOUT_STEREO;
    constexpr double kMix = std::numbers::sqrt2 / 2;
    if (layout.order != AV_CHANNEL_ORDER_NATIVE || layout.nb_channels > kStride ||
        swr_build_matrix2(&layout, &stereo, kMix, kMix, 0.0, 1.0, 1.0, matrix.data(), kStride, AV_MATRIX_ENCODING_NONE,
                          nullptr) < 0) {
        return false;
    }
    left.assign(matrix.begin(), matrix.begin() + layout.nb_channels);
    right.assign(matrix.begin() + kStride, matrix.begin() + kStride + layout.nb_channels);
    return true;
}

}  // namespace

void StereoFold::prepareMatrix(const AVChannelLayout& layout) {
    if (!m_left.empty() && av_channel_layout_compare(&layout, &m_layout) == 0) {
        return;
    }
    av_channel_layout_copy(&m_layout, &layout);
    AVChannelLayout usual{};
    av_channel_layout_default(&usual, layout.nb_channels);
    if (!standardDownmix(layout, m_left, m_right) && !standardDownmix(usual, m_left, m_right)) {
        // No speaker positions: odd channels left, even channels right.
        const int channels = layout.nb_channels;
        m_left.assign(static_cast<std::size_t>(channels), 0.0);
        m_right = m_left;
        for (int c = 0; c < channels; ++c) {
            (c % 2 == 0 ? m_left : m_right)[static_cast<std::size_t>(c)] = 1.0 / ((channels + 1 - c % 2) / 2);
        }
    }
    av_channel_layout_uninit(&usual);
}

bool StereoFold::append(const AVFrame& frame, std::vector<float>& stereo) {
    const int channels = frame.ch_layout.nb_channels;
    const auto frames = static_cast<std::size_t>(std::max(frame.nb_samples, 0));
    if (channels < 1 || frames == 0) {
        return false;
    }
    const std::size_t base = stereo.size();
    stereo.resize(base + 2 * frames, 0.0f);
    float* target = stereo.data() + base;
    if (channels <= 2) {
        const bool known = channelToFloats(frame, 0, target, 2) && channelToFloats(frame, channels - 1, target + 1, 2);
        if (!known) {
            stereo.resize(base);
        }
        return known;
    }
    prepareMatrix(frame.ch_layout);
    m_plane.resize(frames);
    for (int c = 0; c < channels; ++c) {
        if (!channelToFloats(frame, c, m_plane.data(), 1)) {
            stereo.resize(base);
            return false;
        }
        const auto left = static_cast<float>(m_left[static_cast<std::size_t>(c)]);
        const auto right = static_cast<float>(m_right[static_cast<std::size_t>(c)]);
        for (std::size_t i = 0; i < frames; ++i) {
            target[2 * i] += left * m_plane[i];
            target[2 * i + 1] += right * m_plane[i];
        }
    }
    return true;
}

}  // namespace qm
