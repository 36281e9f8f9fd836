// ID3 tags, of every version, as they stand in front of or behind MPEG audio and in chunks of wav and aiff files.
#pragma once

#include "engine/media/FileBytes.h"
#include "engine/media/tags/TagList.h"

namespace qm {

// Adds the texts of all the ID3v2 tags that follow one another from `position`; answers where they end, which is
// `position` itself if there are none.
std::int64_t readId3v2(const FileBytes& file, std::int64_t position, std::int64_t end, TagList& tags);

// Adds what the last 128 bytes of the file say, if they are such a tag.
void readId3v1(const FileBytes& file, TagList& tags);

}  // namespace qm
