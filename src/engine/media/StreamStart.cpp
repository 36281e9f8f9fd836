#include <algorithm>
#include <vector>

#include "engine/media/AudioDecoder.h"
#include "engine/media/SkipRequest.h"
#include "engine/media/TrackPlan.h"

namespace qm {

namespace {

constexpr int kPacketsToTry = 64;
constexpr int kYieldsToSee = 2;

}  // namespace

StreamStart examineStart(Demuxer& demuxer, int stream) {
    StreamStart start;
    demuxer.onlyStream(stream);
    const AVStream& av = demuxer.stream(stream);
    const auto decoder = AudioDecoder::create(*av.codecpar, av.time_base);
    const PacketPtr packet(av_packet_alloc());
    std::vector<float> sound;
    int yields = 0;
    for (int i = 0; decoder && i < kPacketsToTry && yields < kYieldsToSee && demuxer.read(stream, *packet) >= 0; ++i) {
        if (i == 0) {
            start.firstPosition = packet->pos;
            start.skippedFrames = SkipRequest::of(*packet).atStart;
        }
        sound.clear();
        const int frames = decoder->decode(*packet, sound);
        if (frames == 0 && yields == 0) {
            ++start.mutePackets;
        }
        if (frames > 0) {
            ++yields;
            start.framesPerPacket = std::max(start.framesPerPacket, frames);
        }
    }
    if (yields > 0 && isPlausible(decoder->sampleRate(), decoder->channels())) {
        start.sampleRate = decoder->sampleRate();
        start.channels = decoder->channels();
        start.skippedFrames = std::max<std::int64_t>(start.skippedFrames, decoder->ownDelay());
    }
    return start;
}

SoundTrack beginTrack(const AVStream& stream, const StreamStart& start) {
    SoundTrack track;
    track.parameters = copyParameters(*stream.codecpar);
    track.timeBase = stream.time_base;
    track.sampleRate = start.sampleRate;
    track.channels = start.channels;
    track.startSeconds = startSeconds(stream);
    track.traits = codecTraits(*track.parameters, start.sampleRate, start.framesPerPacket);
    return track;
}

}  // namespace qm
