// Which tracks may go into a movie as they are, packet by packet, so that any player decodes from the copy what it
// decodes from the source. All others are decoded and coded anew. Pure.
#pragma once

#include <string>

#include "engine/media/SoundTrack.h"

namespace qm {

// The codecs that the movie container defines. The muxer takes some others, too, under tags that no player knows.
bool movieHoldsSound(const AVCodecParameters& parameters);
bool movieHoldsPictures(const AVCodecParameters& parameters);

// `format` is the source's demuxer, empty for MPEG audio without a container; `startFrames` is where in the new movie
// the track's first heard frame stands.
bool canCopySound(const SoundTrack& track, const std::string& format, std::int64_t startFrames);

// `stream` belongs to an open demuxer of `format`.
bool canCopyPictures(AVStream& stream, const std::string& format);

}  // namespace qm
