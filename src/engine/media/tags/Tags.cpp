#include "engine/media/tags/Tags.h"

#include <algorithm>

#include "engine/api/TagKeys.h"
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
    switch (rowOf(fileKind(file)).tags) {
        case TagFormat::MovieFile:
            readMovieTags(file, tags);
            break;
        case TagFormat::Riff:
            readRiffTags(file, begin, tags);
            break;
        case TagFormat::Aiff:
            readAiffTags(file, begin, tags);
            break;
        case TagFormat::Caf:
            readCafTags(file, begin, tags);
            break;
        case TagFormat::Asf:
            readAsfTags(file, begin, tags);
            break;
        case TagFormat::Flac:
            readFlacTags(file, begin, tags);
            break;
        case TagFormat::Ogg:
            readOggTags(file, tags);
            break;
        case TagFormat::Matroska:
            readMatroskaTags(file, tags);
            break;
        case TagFormat::MpegAudio:
            readApe(file, tags);
            readId3v1(file, tags);
            break;
        case TagFormat::None:
            break;
    }
    return tags.take();
}

const Tag* findCopyright(const std::vector<Tag>& tags) {
    const auto found = std::find_if(tags.begin(), tags.end(), [](const Tag& tag) {
        return (tag.key == kCopyrightKey || tag.key == kCopyrightNoticeKey) && isUtf8(tag.value);
    });
    return found == tags.end() ? nullptr : &*found;
}

}  // namespace qm
