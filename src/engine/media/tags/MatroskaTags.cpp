#include "engine/media/tags/MatroskaTags.h"

#include <algorithm>

#include "engine/media/EbmlWalk.h"
#include "engine/media/TextEncoding.h"

namespace qm {

namespace {

// Element identifiers (RFC 9559).
constexpr std::uint32_t kSegment = 0x18538067;
constexpr std::uint32_t kInfo = 0x1549a966;
constexpr std::uint32_t kInfoTitle = 0x7ba9;
constexpr std::uint32_t kTags = 0x1254c367;
constexpr std::uint32_t kTag = 0x7373;
constexpr std::uint32_t kTargets = 0x63c0;
constexpr std::uint32_t kTargetTypeValue = 0x68ca;
constexpr std::uint32_t kSimpleTag = 0x67c8;
constexpr std::uint32_t kTagName = 0x45a3;
constexpr std::uint32_t kTagString = 0x4487;

constexpr std::uint64_t kAlbumLevel = 50;
constexpr std::int64_t kElementWork = 64;  // of passing over an element, in bytes looked at

class Reader {
public:
    Reader(const FileBytes& file, TagList& tags) : m_bytes(file), m_tags(tags) {}

    void readFile(std::int64_t end) {
        forEach({.content = 0, .end = end}, [&](const EbmlElement& top) {
            if (top.id == kSegment) forEach(top, [&](const EbmlElement& part) { readPart(part); });
        });
    }

private:
    template <typename Fn>
    void forEach(const EbmlElement& parent, Fn&& fn) {
        forEachEbmlElement(m_bytes, parent.content, parent.end, [&](const EbmlElement& element) {
            m_tags.spend(kElementWork);
            fn(element);
            return !m_tags.isFull();
        });
    }

    void readPart(const EbmlElement& part) {
        if (part.id == kInfo) {
            forEach(part, [&](const EbmlElement& field) {
                if (field.id == kInfoTitle) m_tags.addForeign("TITLE", text(field));
            });
        }
        if (part.id == kTags) {
            forEach(part, [&](const EbmlElement& tag) {
                if (tag.id == kTag) readTag(tag);
            });
        }
    }

    void readTag(const EbmlElement& tag) {
        std::uint64_t level = 0;
        forEach(tag, [&](const EbmlElement& field) {
            if (field.id != kTargets) return;
            forEach(field, [&](const EbmlElement& target) {
                if (target.id == kTargetTypeValue) level = ebmlUnsigned(m_bytes, target);
            });
        });
        forEach(tag, [&](const EbmlElement& field) {
            if (field.id == kSimpleTag) readSimpleTag(field, level);
        });
    }

    void readSimpleTag(const EbmlElement& tag, std::uint64_t level) {
        std::string name, value;
        forEach(tag, [&](const EbmlElement& field) {
            if (field.id == kTagName) name = text(field);
            if (field.id == kTagString) value = text(field);
        });
        if (name.empty()) return;
        m_tags.addForeign(name == "TITLE" && level == kAlbumLevel ? "ALBUM" : name, value);
    }

    std::string text(const EbmlElement& element) {
        return utf8FromUnknown(untilZero(m_bytes.text(element.content, element.end, TagList::kLongestText)));
    }

    ByteWindow m_bytes;
    TagList& m_tags;
};

}  // namespace

void readMatroskaTags(const FileBytes& file, TagList& tags) {
    Reader(file, tags).readFile(file.size());
}

}  // namespace qm
