// What the boxes of a movie file (mov, mp4, m4a, m4p, m4v) say that the demuxer keeps to itself. Bounded in depth and
// in the number of boxes; a damaged box ends the walk.
#pragma once

#include "engine/media/FileBytes.h"

namespace qm {

struct MovieFacts {
    bool isProtected = false;   // some track's samples are encrypted
    bool isFragmented = false;  // the sample tables are spread over the file
};

MovieFacts readMovieFacts(const FileBytes& file);

}  // namespace qm
