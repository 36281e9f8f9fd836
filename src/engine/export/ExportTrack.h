// One track of a movie that is being written: says what it is and hands out its packets in the order of decoding.
// Times count from the beginning of the new movie; negative ones are decoded but not shown. One thread at a time.
#pragma once

#include "engine/media/Libav.h"

namespace qm {

class ExportTrack {
public:
    virtual ~ExportTrack() = default;

    virtual void describe(AVStream& stream) const = 0;  // codec, its parameters, time base

    enum class Outcome {
        Packet,
        Working,  // nothing yet; ask again
        End,
        Failed,  // the source has become unreadable
    };

    // Time stamps and duration are in the time base that describe() gave.
    virtual Outcome next(AVPacket& packet) = 0;
};

}  // namespace qm
