// The comments of FLAC, Vorbis and Opus, which have one form in all of them (RFC 9639, section 8.6).
#pragma once

#include "engine/media/FileBytes.h"
#include "engine/media/tags/TagList.h"

namespace qm {

// `begin` is where the stream's mark stands, behind other tags.
void readFlacTags(const FileBytes& file, std::int64_t begin, TagList& tags);

// Of the first stream that has any.
void readOggTags(const FileBytes& file, TagList& tags);

}  // namespace qm
