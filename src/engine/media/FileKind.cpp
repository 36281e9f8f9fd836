#include "engine/media/FileKind.h"

#include <algorithm>
#include <array>

#include "engine/media/Id3Header.h"

namespace qm {

namespace {

constexpr std::size_t kHeadBytes = 12;  // the longest mark
constexpr std::size_t kLeastBytes = 8;  // of a file that has a mark
using Head = std::array<std::uint8_t, kHeadBytes>;

bool fits(std::string_view mark, const Head& head) {
    return mark.size() <= head.size() && std::equal(mark.begin(), mark.end(), head.begin(), [](char wanted, auto byte) {
               return wanted == '*' || static_cast<std::uint8_t>(wanted) == byte;
           });
}

const MediaKindRow& rowOfHead(const Head& head) {
    for (const MediaKindRow& row : mediaKinds()) {
        if (std::any_of(row.marks.begin(), row.marks.end(), [&](std::string_view mark) { return fits(mark, head); })) {
            return row;
        }
    }
    return rowOf(MediaKind::MpegAudio);
}

}  // namespace

MediaKind fileKind(const FileBytes& file) {
    Head head{};
    if (file.readAt(0, head.data(), head.size()) < kLeastBytes) {
        return MediaKind::MpegAudio;
    }
    if (const auto tag = readId3Header(head.data())) {  // in front of any kind of file
        if (file.readAt(tag->tagBytes, head.data(), head.size()) < kLeastBytes) {
            return MediaKind::MpegAudio;
        }
        const MediaKindRow& row = rowOfHead(head);
        return row.marksBehindId3 ? row.kind : MediaKind::MpegAudio;
    }
    return rowOfHead(head).kind;
}

}  // namespace qm
