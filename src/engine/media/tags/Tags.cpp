#include "engine/media/tags/Tags.h"

#include <algorithm>

#include "engine/media/FileKind.h"
#include "engine/media/TextEncoding.h"
#include "engine/media/tags/ApeTags.h"
#include "engine/media/tags/AsfTags.h"
#include "engine/media/tags/ChunkTags.h"
#include "engine/media/tags/Id3Tags.h"
#include "engine/media/tags/MatroskaTags.h"
#include "engine/media/tags/MovieTags.h"
#include "engine/media/tags/TagList.h"
#include "engine/media/tags/VorbisTags.h"

namespace qm {

std::vector<Tag> readTags(const FileBytes& file) {
    TagList tags;
    const std::int64_t begin = readId3v2(file, 0, file.size(), tags);
    const std::string kind = fileKind(file);
    if (kind == "mov") {
        readMovieTags(file, tags);
    } else if (kind == "wav" || kind == "avi") {
        readRiffTags(file, begin, tags);
    } else if (kind == "aiff") {
        readAiffTags(file, begin, tags);
    } else if (kind == "caf") {
        readCafTags(file, begin, tags);
    } else if (kind == "asf") {
        readAsfTags(file, begin, tags);
    } else if (kind == "flac") {
        readFlacTags(file, begin, tags);
    } else if (kind == "ogg") {
        readOggTags(file, tags);
    } else if (kind == "matroska") {
        readMatroskaTags(file, tags);
    } else if (kind.empty() || kind == "wv" || kind == "ac3" ||
               kind == "eac3") {  // without a place for tags of its own
        readApe(file, tags);
        readId3v1(file, tags);
    }
    return tags.take();
}

const Tag* findCopyright(const std::vector<Tag>& tags) {
    const auto found = std::find_if(tags.begin(), tags.end(), [](const Tag& tag) {
        return (tag.key ==
                    "\xa9"
                    "cpy" ||
                tag.key == "cprt") &&
               isUtf8(tag.value);
    });
    return found == tags.end() ? nullptr : &*found;
}

}  // namespace qm
