// What a media file says of itself: artist, album, title, copyright and the rest. For whoever shows it; any thread.
#pragma once

#include <vector>

#include "engine/api/Tag.h"
#include "engine/media/FileBytes.h"

namespace qm {

// The tags in the order of the file: of movies with their own keys, of other files (mp3, wav, avi, aiff, caf, wmv) with
// the key that the same field has in a movie. Values are UTF-8, except where a movie file itself says otherwise of
// bytes that are not. Quick and bounded for any file: what is damaged is left out.
std::vector<Tag> readTags(const FileBytes& file);

// The first tag that states a copyright, as valid UTF-8; null if there is none.
const Tag* findCopyright(const std::vector<Tag>& tags);

}  // namespace qm
