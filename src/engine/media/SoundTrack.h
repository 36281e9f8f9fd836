// Everything that is known about one sound track once its file is open: enough to read any frame of it. Plain data,
// made by the planners (WaveTrack, MovieTrack, MpegAudioTrack, PassedTrack), owned by its reader.
#pragma once

#include <cstdint>
#include <memory>

#include "engine/media/CodecTraits.h"
#include "engine/media/KeptRanges.h"
#include "engine/media/PacketIndex.h"
#include "engine/media/PacketSource.h"

namespace qm {

struct SoundTrack {
    ParametersPtr parameters;
    AVRational timeBase{1, 1};
    int sampleRate = 0;
    int channels = 0;
    double startSeconds = 0;  // where the container places the track's first frame
    CodecTraits traits;
    PacketIndex index;
    std::uint64_t contentHash = 0;   // over all packets but the last one, where only the demuxer knows them
    std::int64_t drainedFrames = 0;  // what the decoder still yields after the last packet
    KeptRanges kept;
    std::unique_ptr<PacketSource> source;

    // The same track with a source of its own, also while this one is being read.
    SoundTrack forAnotherReader() const;
};

// Bounds beyond which a header is taken for damaged.
constexpr int kMostChannels = 64;
constexpr int kLowestRate = 1000;
constexpr int kHighestRate = 768000;

inline bool isPlausible(int sampleRate, int channels) {
    return sampleRate >= kLowestRate && sampleRate <= kHighestRate && channels >= 1 && channels <= kMostChannels;
}

}  // namespace qm
