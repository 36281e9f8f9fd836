// Tags in the chunks of wav, avi, aiff and caf files.
#pragma once

#include "engine/media/FileBytes.h"
#include "engine/media/tags/TagList.h"

namespace qm {

// `begin` is where the file's own first bytes lie: 0 unless a foreign tag stands in front.
void readRiffTags(const FileBytes& file, std::int64_t begin, TagList& tags);
void readAiffTags(const FileBytes& file, std::int64_t begin, TagList& tags);
void readCafTags(const FileBytes& file, std::int64_t begin, TagList& tags);

}  // namespace qm
