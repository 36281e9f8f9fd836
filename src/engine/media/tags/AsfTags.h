// Tags in the header of wmv (ASF) files.
#pragma once

#include "engine/media/FileBytes.h"
#include "engine/media/tags/TagList.h"

namespace qm {

// `begin` is where the header object lies.
void readAsfTags(const FileBytes& file, std::int64_t begin, TagList& tags);

}  // namespace qm
