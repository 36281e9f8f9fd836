// Decodes the packets of one sound track to interleaved stereo floats. Nothing is trimmed here: what belongs to the
// encoder's delay or to an edit is the caller's business. One thread at a time.
#pragma once

#include <memory>
#include <vector>

#include "engine/media/Libav.h"
#include "engine/media/StereoFold.h"

namespace qm {

class AudioDecoder {
public:
    // Null if no decoder takes these parameters.
    static std::unique_ptr<AudioDecoder> create(const AVCodecParameters& parameters, AVRational timeBase);

    // Forgets every packet, as if newly made.
    bool restart();

    // Appends what the packet yields and returns how many frames that are; a damaged packet yields none.
    int decode(const AVPacket& packet, std::vector<float>& stereo);
    int drain(std::vector<float>& stereo);  // what the decoder still holds after the last packet

    // Frames at the beginning of the first yield that the decoder itself declares not to be sound.
    int ownDelay() const { return m_ownDelay; }

    // Of the last frame decoded; 0 before the first.
    int sampleRate() const { return m_sampleRate; }
    int channels() const { return m_channels; }

private:
    AudioDecoder(const AVCodec* codec, ParametersPtr parameters, AVRational timeBase);

    int send(const AVPacket* packet, std::vector<float>& stereo);
    void noteDelay();

    const AVCodec* m_codec;
    ParametersPtr m_parameters;
    AVRational m_timeBase;
    CodecPtr m_context;
    FramePtr m_frame;
    StereoFold m_fold;
    bool m_hasYielded = false;
    int m_ownDelay = 0;
    int m_sampleRate = 0;
    int m_channels = 0;
};

}  // namespace qm
