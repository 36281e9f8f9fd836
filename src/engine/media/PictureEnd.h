// When the pictures of a film are over. One thread at a time.
#pragma once

#include "engine/media/MediaTracks.h"

namespace qm {

// The container's time, in seconds, at which the last picture of any of the film's tracks has been shown as long as it
// is meant to be: as the pictures say that the file holds, for headers are often wrong. 0 without pictures. Reads no
// more than what lies after the last key picture, where the container can tell where that is.
double pictureEnd(const MediaTracks& tracks);

}  // namespace qm
