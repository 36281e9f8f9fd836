// Tags of movie files (mov, mp4, m4a, m4p, m4v): the movie's user data and its meta boxes, keys as they are stored.
#pragma once

#include "engine/media/FileBytes.h"
#include "engine/media/tags/TagList.h"

namespace qm {

void readMovieTags(const FileBytes& file, TagList& tags);

}  // namespace qm
