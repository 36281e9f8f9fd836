#include "engine/export/CopyRules.h"

#include <algorithm>
#include <array>

namespace qm {

namespace {

constexpr std::array kHeldSound = {
    AV_CODEC_ID_AAC,       AV_CODEC_ID_ALAC,      AV_CODEC_ID_MP3,       AV_CODEC_ID_AC3,       AV_CODEC_ID_PCM_S8,
    AV_CODEC_ID_PCM_U8,    AV_CODEC_ID_PCM_S16LE, AV_CODEC_ID_PCM_S16BE, AV_CODEC_ID_PCM_S24LE, AV_CODEC_ID_PCM_S24BE,
    AV_CODEC_ID_PCM_S32LE, AV_CODEC_ID_PCM_S32BE, AV_CODEC_ID_PCM_F32LE, AV_CODEC_ID_PCM_F32BE, AV_CODEC_ID_PCM_F64LE,
    AV_CODEC_ID_PCM_F64BE, AV_CODEC_ID_PCM_MULAW, AV_CODEC_ID_PCM_ALAW};

constexpr std::array kHeldPictures = {AV_CODEC_ID_H264,   AV_CODEC_ID_HEVC,    AV_CODEC_ID_MPEG4, AV_CODEC_ID_MJPEG,
                                      AV_CODEC_ID_PRORES, AV_CODEC_ID_DVVIDEO, AV_CODEC_ID_SVQ1,  AV_CODEC_ID_QTRLE};

template <std::size_t N>
bool contains(const std::array<AVCodecID, N>& list, AVCodecID codec) {
    return std::find(list.begin(), list.end(), codec) != list.end();
}

// A movie's edits leave out whole packets at the end, but not a part of the last one; MPEG audio without a container
// says its end to the frame.
bool losesItsEnd(const SoundTrack& track, MediaKind kind) {
    return rowOf(kind).copy.soundEndsInPacket && track.kept.only()->last < track.index.frames() + track.drainedFrames;
}

// A copy can leave out frames at the beginning and at the end, but not in between.
bool leavesOutInside(AVStream& stream) {
    const int entries = avformat_index_get_entries_count(&stream);
    const auto isShown = [&](int i) {
        return (avformat_index_get_entry(&stream, i)->flags & AVINDEX_DISCARD_FRAME) == 0;
    };
    int changes = 0;
    for (int i = 0; i < entries; ++i) {
        const bool before = i > 0 && isShown(i - 1);
        changes += isShown(i) && !before ? 1 : 0;
    }
    return changes > 1;
}

}  // namespace

bool movieHoldsSound(const AVCodecParameters& parameters) {
    return contains(kHeldSound, parameters.codec_id) &&
           (parameters.codec_id != AV_CODEC_ID_AAC || parameters.extradata_size > 0);
}

bool movieHoldsPictures(const AVCodecParameters& parameters) {
    return contains(kHeldPictures, parameters.codec_id);
}

bool canCopySound(const SoundTrack& track, MediaKind kind, std::int64_t startFrames) {
    const auto kept = track.kept.only();
    if (!movieHoldsSound(*track.parameters) || !kept) {
        return false;
    }
    if (isPcm(track.parameters->codec_id)) {
        return true;
    }
    const bool bothEdits = kept->first > 0 && startFrames > 0;  // an empty one and one into the track
    const bool hidesDelay = track.index.packet(0).frames == 0 || track.drainedFrames > 0;
    return !bothEdits && !hidesDelay && !losesItsEnd(track, kind);
}

bool canCopyPictures(AVStream& stream, MediaKind kind) {
    const AVCodecParameters& parameters = *stream.codecpar;
    if (!movieHoldsPictures(parameters) || leavesOutInside(stream)) {
        return false;
    }
    return rowOf(kind).copy.picturesSayWhenShown || parameters.video_delay == 0;
}

}  // namespace qm
