// What is peculiar to a sound codec when it is to be read from the middle. Values, pure.
#pragma once

#include "engine/media/Libav.h"

namespace qm {

struct CodecTraits {
    // How the frames that a packet yields are known without decoding all of them.
    enum class Counting {
        BySize,      // they follow from the packet's size
        Constant,    // every packet but perhaps the last holds as many as the first
        ByDecoding,  // only decoding tells
    };

    Counting counting = Counting::Constant;
    // After a start in the middle some decoders swallow the beginning of their first packets: what they do yield then
    // belongs to the end of the packet.
    bool yieldBelongsToEnd = false;
    bool lastMayBeShort = false;  // the last packet may hold fewer frames than the others
    int prerollFrames = 0;        // to decode before the first frame that is wanted
    int reservoirBytes = 0;       // of earlier packets that a packet may still refer to
    // Packets after which the decoder is started anew, for codecs whose state never fades (made-up noise, running
    // sums): so what a frame holds does not depend on where reading began. 0: no need.
    int restartPackets = 0;
};

// `framesPerPacket` is what the first packets were seen to yield.
CodecTraits codecTraits(const AVCodecParameters& parameters, int sampleRate, int framesPerPacket);

bool isPcm(AVCodecID codec);     // one sample after the other, without state
bool isBlocks(AVCodecID codec);  // blocks of one size, each with its own beginning

}  // namespace qm
