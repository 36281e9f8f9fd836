#include "engine/media/SoundTrack.h"

namespace qm {

SoundTrack SoundTrack::forAnotherReader() const {
    return {.parameters = copyParameters(*parameters),
            .timeBase = timeBase,
            .sampleRate = sampleRate,
            .channels = channels,
            .startSeconds = startSeconds,
            .traits = traits,
            .index = index,
            .contentHash = contentHash,
            .drainedFrames = drainedFrames,
            .kept = kept,
            .source = source->forAnotherReader()};
}

}  // namespace qm
