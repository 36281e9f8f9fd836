#include "engine/media/AudioDecoder.h"

#include "engine/media/FileBytes.h"

namespace qm {

std::unique_ptr<AudioDecoder> AudioDecoder::create(const AVCodecParameters& parameters, AVRational timeBase) {
    const AVCodec* codec = avcodec_find_decoder(parameters.codec_id);
    if (!codec) {
        return nullptr;
    }
    std::unique_ptr<AudioDecoder> decoder(new AudioDecoder(codec, copyParameters(parameters), timeBase));
    if (!decoder->restart()) {
        return nullptr;
    }
    return decoder;
}

AudioDecoder::AudioDecoder(const AVCodec* codec, ParametersPtr parameters, AVRational timeBase)
    : m_codec(codec), m_parameters(std::move(parameters)), m_timeBase(timeBase), m_frame(av_frame_alloc()) {}

bool AudioDecoder::restart() {
    // A new context instead of a flush: several decoders carry state over a flush, and then what a frame holds would
    // depend on where reading had been before.
    m_context.reset(avcodec_alloc_context3(m_codec));
    if (!m_context || avcodec_parameters_to_context(m_context.get(), m_parameters.get()) < 0) {
        return false;
    }
    m_hasYielded = false;
    m_ownDelay = 0;
    m_context->pkt_timebase = m_timeBase;
    m_context->thread_count = 1;
    m_context->flags2 |= AV_CODEC_FLAG2_SKIP_MANUAL;
    return avcodec_open2(m_context.get(), m_codec, nullptr) >= 0;
}

int AudioDecoder::decode(const AVPacket& packet, std::vector<float>& stereo) {
    return send(&packet, stereo);
}

int AudioDecoder::drain(std::vector<float>& stereo) {
    return send(nullptr, stereo);
}

void AudioDecoder::noteDelay() {
    const AVFrameSideData* skip = av_frame_get_side_data(m_frame.get(), AV_FRAME_DATA_SKIP_SAMPLES);
    if (!m_hasYielded && skip && skip->size >= 4) {
        m_ownDelay = static_cast<int>(littleEndian32(skip->data) & 0xffff);
    }
    m_hasYielded = true;
}

int AudioDecoder::send(const AVPacket* packet, std::vector<float>& stereo) {
    if (avcodec_send_packet(m_context.get(), packet) < 0) {
        return 0;
    }
    int frames = 0;
    while (avcodec_receive_frame(m_context.get(), m_frame.get()) >= 0) {
        noteDelay();
        m_sampleRate = m_frame->sample_rate;
        m_channels = m_frame->ch_layout.nb_channels;
        if (m_fold.append(*m_frame, stereo)) {
            frames += m_frame->nb_samples;
        }
        av_frame_unref(m_frame.get());
    }
    return frames;
}

}  // namespace qm
