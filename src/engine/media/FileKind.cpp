#include "engine/media/FileKind.h"

extern "C" {
#include <libavcodec/ac3_parser.h>
}

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

// AC-3 has a mark of two bytes only, so the rest of the head has to make sense. It also tells the two versions apart.
bool isDolbyHead(const Head& head, MediaKind kind) {
    constexpr int kHighestOfAc3 = 10;
    std::uint8_t version = 0;
    std::uint16_t frameBytes = 0;
    return av_ac3_parse_header(head.data(), head.size(), &version, &frameBytes) >= 0 &&
           (version <= kHighestOfAc3) == (kind == MediaKind::Ac3);
}

bool isOfKind(const Head& head, const MediaKindRow& row) {
    const auto fitsHead = [&](std::string_view mark) { return fits(mark, head); };
    return std::any_of(row.marks.begin(), row.marks.end(), fitsHead) &&
           (!row.marksAreShort || isDolbyHead(head, row.kind));
}

const MediaKindRow& rowOfHead(const Head& head) {
    for (const MediaKindRow& row : mediaKinds()) {
        if (isOfKind(head, row)) return row;
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
