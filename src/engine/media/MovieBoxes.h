// What the boxes of a movie file (mov, mp4, m4a, m4p, m4v) say that the demuxer keeps to itself. Bounded in depth and
// in the number of boxes; a damaged box ends the walk.
#pragma once

#include <vector>

#include "engine/media/FileBytes.h"

namespace qm {

struct MovieTrackFacts {
    std::uint32_t id = 0;
    std::uint32_t mediaScale = 0;     // units a second, of the duration
    std::int64_t mediaDuration = -1;  // of all its samples, before any edit
    int width = 0;                    // of its pictures, if it is a track of pictures
    int height = 0;
};

struct MovieFacts {
    bool isProtected = false;        // some track's samples are encrypted
    bool isFragmented = false;       // the sample tables are spread over the file
    std::uint32_t movieScale = 0;    // units a second, of the durations in edit lists
    double preferredRate = 1;        // signed, as the header states it
    std::int64_t ratePosition = -1;  // bytes from the start of the file, of that statement: signed 16.16, big-endian
    std::vector<MovieTrackFacts> tracks;
};

MovieFacts readMovieFacts(const FileBytes& file);

}  // namespace qm
