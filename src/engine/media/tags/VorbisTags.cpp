#include "engine/media/tags/VorbisTags.h"

#include <algorithm>
#include <cstring>
#include <span>
#include <vector>

#include "engine/media/OggPages.h"
#include "engine/media/TextEncoding.h"

namespace qm {

namespace {

constexpr std::size_t kMostBytes = 4 << 20;  // covers stand among the comments
constexpr std::int64_t kItemWork = 64;       // of passing over a comment, in bytes looked at
constexpr int kCommentBlock = 4;

// Each comment is "NAME=value" behind its length.
void addComments(std::span<const std::uint8_t> bytes, TagList& tags) {
    const auto number = [&]() -> std::int64_t {
        if (bytes.size() < 4) return -1;
        const std::uint32_t value = littleEndian32(bytes.data());
        bytes = bytes.subspan(4);
        return value <= bytes.size() ? std::int64_t{value} : -1;
    };
    const std::int64_t vendor = number();
    if (vendor < 0) return;
    bytes = bytes.subspan(static_cast<std::size_t>(vendor));
    if (bytes.size() < 4) return;
    std::uint32_t count = littleEndian32(bytes.data());
    bytes = bytes.subspan(4);
    for (; count > 0 && !tags.isFull(); --count) {
        const std::int64_t length = number();
        if (length < 0) return;
        tags.spend(kItemWork);
        const std::string_view comment(reinterpret_cast<const char*>(bytes.data()), static_cast<std::size_t>(length));
        const std::size_t equals = comment.find('=');
        if (equals != comment.npos && equals <= TagList::kLongestKey) {
            const std::string_view value = comment.substr(equals + 1, TagList::kLongestText);
            tags.addForeign(comment.substr(0, equals), utf8FromUnknown(untilZero(value)));
        }
        bytes = bytes.subspan(static_cast<std::size_t>(length));
    }
}

// A stream's second packet holds its comments, behind a mark of its codec.
std::span<const std::uint8_t> withoutMark(std::span<const std::uint8_t> packet) {
    const auto begins = [&](const char* mark, std::size_t bytes) {
        return packet.size() >= bytes && std::memcmp(packet.data(), mark, bytes) == 0;
    };
    if (begins("OpusTags", 8)) return packet.subspan(8);
    if (begins("\x03vorbis", 7)) return packet.subspan(7);
    if (packet.size() >= 4 && (packet[0] & 0x7f) == kCommentBlock) return packet.subspan(4);  // FLAC
    return {};
}

}  // namespace

void readFlacTags(const FileBytes& file, std::int64_t begin, TagList& tags) {
    ByteWindow bytes(file);
    std::int64_t position = begin + 4;
    for (bool isLast = false; !isLast && !tags.isFull();) {
        const std::uint8_t* head = bytes.at(position, 4);
        if (!head) return;
        isLast = (head[0] & 0x80) != 0;
        const int kind = head[0] & 0x7f;
        const std::size_t length = bigEndian32(head) & 0xffffff;
        position += 4;
        tags.spend(kItemWork);
        if (kind == kCommentBlock) {
            std::vector<std::uint8_t> block(std::min(length, kMostBytes));
            block.resize(file.readAt(position, block.data(), block.size()));
            addComments(block, tags);
        }
        position += static_cast<std::int64_t>(length);
    }
}

void readOggTags(const FileBytes& file, TagList& tags) {
    constexpr int kMostPages = 4096;
    ByteWindow bytes(file);
    std::vector<std::uint8_t> packet;
    std::optional<std::uint32_t> stream;
    auto page = OggPage::read(bytes, 0, file.size());
    for (int i = 0; page && i < kMostPages; ++i) {
        if (!page->isFirst && !stream) stream = page->stream;
        if (!page->isFirst && page->stream == *stream) {
            std::int64_t position = page->content;
            for (const std::uint8_t length : page->lacing) {
                const std::size_t before = packet.size();
                packet.resize(before + length);
                packet.resize(before + file.readAt(position, packet.data() + before, length));
                position += length;
                if (length < 255 || packet.size() >= kMostBytes) return addComments(withoutMark(packet), tags);
            }
        }
        page = OggPage::read(bytes, page->position + page->bytes, file.size());
    }
}

}  // namespace qm
