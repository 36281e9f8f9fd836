#include "engine/media/tags/ChunkTags.h"

#include <algorithm>

#include "engine/api/FourCharCode.h"
#include "engine/media/ChunkWalk.h"
#include "engine/media/TextEncoding.h"
#include "engine/media/tags/Id3Tags.h"

namespace qm {

namespace {

constexpr int kFormBytes = 12;  // "RIFF", a size, "WAVE"
constexpr int kCafHeadBytes = 8;
constexpr std::int64_t kMostInfo = std::int64_t{4} << 20;

std::int64_t endOf(const Chunk& chunk, const FileBytes& file) {
    const std::int64_t rest = file.size() - chunk.content;
    return chunk.content + (chunk.bytes < 0 ? rest : std::min(chunk.bytes, rest));
}

void addText(const FileBytes& file, ByteWindow& bytes, const Chunk& chunk, TagList& tags) {
    const std::string stored = bytes.text(chunk.content, endOf(chunk, file), TagList::kLongestText);
    tags.addForeign(fourLetters(chunk.name), utf8FromUnknown(untilZero(stored)));
}

void readInfoList(const FileBytes& file, const Chunk& list, TagList& tags) {
    ByteWindow bytes(file);
    ChunkWalk walk(bytes, ChunkWalk::Kind::Riff, list.content + 4, endOf(list, file));
    for (auto entry = walk.next(); entry && !tags.isFull(); entry = walk.next()) {
        addText(file, bytes, *entry, tags);
    }
}

bool holdsId3(const Chunk& chunk) {
    return chunk.isNamed("id3 ") || chunk.isNamed("ID3 ");
}

}  // namespace

void readRiffTags(const FileBytes& file, std::int64_t begin, TagList& tags) {
    constexpr std::uint32_t kSizeUnknown = 0xffffffff;
    ByteWindow bytes(file);
    ChunkWalk walk(bytes, ChunkWalk::Kind::Riff, begin + kFormBytes, file.size());
    std::int64_t longSize = -1;
    for (auto chunk = walk.next(); chunk && !tags.isFull(); chunk = walk.next()) {
        if (chunk->isNamed("LIST")) {
            if (bytes.text(chunk->content, endOf(*chunk, file), 4) == "INFO") {
                readInfoList(file, *chunk, tags);
            }
        } else if (holdsId3(*chunk)) {
            readId3v2(file, chunk->content, endOf(*chunk, file), tags);
        } else if (chunk->isNamed("ds64")) {
            const std::uint8_t* p = bytes.at(chunk->content, 16);
            longSize = p ? static_cast<std::int64_t>(littleEndian64(p + 8)) : -1;
        } else if (chunk->isNamed("data") && chunk->bytes == kSizeUnknown) {
            walk.continueAfter(*chunk, longSize);
        }
    }
}

void readAiffTags(const FileBytes& file, std::int64_t begin, TagList& tags) {
    ByteWindow bytes(file);
    ChunkWalk walk(bytes, ChunkWalk::Kind::Iff, begin + kFormBytes, file.size());
    for (auto chunk = walk.next(); chunk && !tags.isFull(); chunk = walk.next()) {
        if (holdsId3(*chunk)) {
            readId3v2(file, chunk->content, endOf(*chunk, file), tags);
        } else if (chunk->isNamed("NAME") || chunk->isNamed("AUTH") || chunk->isNamed("(c) ") ||
                   chunk->isNamed("ANNO")) {
            addText(file, bytes, *chunk, tags);
        }
    }
}

void readCafTags(const FileBytes& file, std::int64_t begin, TagList& tags) {
    ByteWindow bytes(file);
    ChunkWalk walk(bytes, ChunkWalk::Kind::Caf, begin + kCafHeadBytes, file.size());
    for (auto chunk = walk.next(); chunk && !tags.isFull(); chunk = walk.next()) {
        if (!chunk->isNamed("info")) {
            continue;
        }
        const std::int64_t end = std::min(endOf(*chunk, file), chunk->content + kMostInfo);
        std::int64_t position = chunk->content + 4;  // behind the count, which the chunk's size makes superfluous
        const auto nextText = [&] {
            std::string text(untilZero(bytes.text(position, end, TagList::kLongestText)));
            position += static_cast<std::int64_t>(text.size()) + 1;
            return text;
        };
        while (position < end && !tags.isFull()) {
            const std::string name = nextText();
            const std::string value = nextText();
            tags.addForeign(name, utf8FromUnknown(value));
        }
    }
}

}  // namespace qm
