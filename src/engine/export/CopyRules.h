// Which tracks may go into a movie as they are, packet by packet, so that any player decodes from the copy what it
// decodes from the source. All others are decoded and coded anew. Pure.
#pragma once

#include "engine/api/MediaKinds.h"
#include "engine/media/SoundTrack.h"

namespace qm {

// The codecs that the movie container defines. The muxer takes some others, too, under tags that no player knows.
bool movieHoldsSound(const AVCodecParameters& parameters);
bool movieHoldsPictures(const AVCodecParameters& parameters);

// `kind` is the source's; `startFrames` is where in the new movie
// the track's first heard frame stands.
bool canCopySound(const SoundTrack& track, MediaKind kind, std::int64_t startFrames);

// `stream` belongs to an open demuxer of `kind`.
bool canCopyPictures(AVStream& stream, MediaKind kind);

}  // namespace qm
