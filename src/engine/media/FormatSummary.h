// The format of a track in the words of a musician. Pure.
#pragma once

#include <optional>
#include <string>

#include "engine/media/Libav.h"

namespace qm {

// "AAC, Stereo, 44.100 kHz" or "H.264, 640 x 480"; none if the codec is unknown or the track neither sounds nor shows
// pictures.
std::optional<std::string> formatSummary(const AVCodecParameters& track);

}  // namespace qm
