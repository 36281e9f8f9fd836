#include "engine/export/PcmSound.h"

#include <algorithm>
#include <cmath>

namespace qm {

namespace {

constexpr std::int64_t kBlockFrames = 8192;

void writeSample(std::uint8_t*& bytes, float sample) {
    const auto value = static_cast<std::int16_t>(std::lrint(std::clamp(sample * 32768.0f, -32768.0f, 32767.0f)));
    *bytes++ = static_cast<std::uint8_t>(value);
    *bytes++ = static_cast<std::uint8_t>(value >> 8);
}

}  // namespace

PcmSound::PcmSound(std::unique_ptr<TrackReader> reader, std::int64_t startFrames)
    : m_reader(std::move(reader)), m_start(startFrames) {}

void PcmSound::describe(AVStream& stream) const {
    const SoundTrack& track = m_reader->track();
    AVCodecParameters& parameters = *stream.codecpar;
    parameters.codec_type = AVMEDIA_TYPE_AUDIO;
    parameters.codec_id = AV_CODEC_ID_PCM_S16LE;
    parameters.format = AV_SAMPLE_FMT_S16;
    parameters.bits_per_coded_sample = 16;
    parameters.sample_rate = track.sampleRate;
    av_channel_layout_default(&parameters.ch_layout, std::min(track.channels, 2));
    stream.time_base = {1, track.sampleRate};
}

ExportTrack::Outcome PcmSound::next(AVPacket& packet) {
    const std::int64_t frames = std::min(kBlockFrames, m_reader->length() - m_next);
    if (frames <= 0) {
        return Outcome::End;
    }
    const int channels = std::min(m_reader->track().channels, 2);
    m_block.resize(static_cast<std::size_t>(2 * frames));
    av_packet_unref(&packet);
    if (!m_reader->read(m_next, m_block.data(), frames) ||
        av_new_packet(&packet, static_cast<int>(2 * frames * channels)) < 0) {
        return Outcome::Failed;
    }
    std::uint8_t* bytes = packet.data;
    for (std::size_t i = 0; i < m_block.size(); i += 2) {
        writeSample(bytes, m_block[i]);
        if (channels == 2) {
            writeSample(bytes, m_block[i + 1]);
        }
    }
    packet.pts = packet.dts = m_next + m_start;
    packet.duration = frames;
    packet.flags |= AV_PKT_FLAG_KEY;
    m_next += frames;
    return Outcome::Packet;
}

}  // namespace qm
