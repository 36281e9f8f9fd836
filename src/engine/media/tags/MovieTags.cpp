#include "engine/media/tags/MovieTags.h"

#include <algorithm>
#include <array>
#include <vector>

#include "engine/media/MovieBox.h"
#include "engine/media/TextEncoding.h"

namespace qm {

namespace {

constexpr int kMostBoxes = 100000;
constexpr std::size_t kMostStored = 2 * TagList::kLongestText;
constexpr std::size_t kMostNames = 1000;
constexpr std::uint32_t kHighestMacLanguage = 0x3ff;

// How a data box says that its bytes are encoded.
constexpr std::uint32_t kBigUtf16 = 2;
constexpr std::uint32_t kBigUtf16ForSorting = 5;

// Boxes of user data that hold one text behind a version and a language.
constexpr std::array kSingleTexts = {fourCharCode("titl"), fourCharCode("dscp"), fourCharCode("cprt"),
                                     fourCharCode("perf"), fourCharCode("auth"), fourCharCode("gnre"),
                                     fourCharCode("albm")};

bool startsWithSmall(std::string_view name, std::string_view smallLetters) {
    return name.size() >= smallLetters.size() &&
           std::equal(smallLetters.begin(), smallLetters.end(), name.begin(),
                      [](char a, char b) { return a == b || (b >= 'A' && b <= 'Z' && a == b + ('a' - 'A')); });
}

class MovieTagReader {
public:
    MovieTagReader(const FileBytes& file, TagList& tags) : m_bytes(file), m_end(file.size()), m_tags(tags) {}

    void readFile() {
        forEachBox(0, m_end, [this](const MovieBox& box) {
            if (box.type == fourCharCode("moov")) {
                readMovie(box);
            } else if (box.type == fourCharCode("meta")) {
                readMeta(box);
            }
        });
    }

private:
    template <typename Visit>
    void forEachBox(std::int64_t position, std::int64_t end, Visit visit) {
        while (++m_boxes <= kMostBoxes && !m_tags.isFull()) {
            const auto box = readBox(m_bytes, position, end);
            if (!box) {
                return;
            }
            visit(*box);
            position = box->end;
        }
    }

    void readMovie(const MovieBox& movie) {
        forEachBox(movie.content, movie.end, [this](const MovieBox& box) {
            if (box.type == fourCharCode("meta")) {
                readMeta(box);
            } else if (box.type == fourCharCode("udta")) {
                forEachBox(box.content, box.end, [this](const MovieBox& entry) { readUserData(entry); });
            }
        });
    }

    void readUserData(const MovieBox& entry) {
        if (entry.type == fourCharCode("meta")) {
            readMeta(entry);
            return;
        }
        const std::string key = fourLetters(entry.type);
        const auto inner = readBox(m_bytes, entry.content, entry.end);
        if (inner && inner->type == fourCharCode("data")) {
            m_tags.add(key, dataText(*inner));
        } else if (key[0] == '\xa9') {
            readTexts(key, entry);
        } else if (std::find(kSingleTexts.begin(), kSingleTexts.end(), entry.type) != kSingleTexts.end()) {
            const std::string stored = m_bytes.text(entry.content + 6, entry.end, kMostStored);
            m_tags.add(key, stored.starts_with("\xfe\xff") || stored.starts_with("\xff\xfe")
                                ? untilZero(utf8FromUtf16(stored))
                                : untilZero(stored));
        } else {
            m_tags.add(key, m_bytes.text(entry.content, entry.end, kMostStored));
        }
    }

    // The same text in one or more languages, each behind its length and its language.
    void readTexts(const std::string& key, const MovieBox& entry) {
        std::int64_t position = entry.content;
        while (position + 4 <= entry.end && ++m_boxes <= kMostBoxes && !m_tags.isFull()) {
            const std::uint8_t* p = m_bytes.at(position, 4);
            if (!p) {
                return;
            }
            const std::int64_t bytes = bigEndian16(p);
            const std::uint32_t language = bigEndian16(p + 2);
            const std::int64_t end = std::min(entry.end, position + 4 + bytes);
            const std::string stored = m_bytes.text(position + 4, end, kMostStored);
            if (stored.starts_with("\xfe\xff") || stored.starts_with("\xff\xfe")) {
                m_tags.add(key, utf8FromUtf16(stored));
            } else {
                m_tags.add(key, language <= kHighestMacLanguage ? utf8FromUnknownMac(stored) : stored);
            }
            position += 4 + bytes;
        }
    }

    // With a version in front or, in older files, without.
    void readMeta(const MovieBox& meta) {
        const auto first = readBox(m_bytes, meta.content, meta.end);
        const bool isOlder = first && first->type == fourCharCode("hdlr");
        std::vector<std::string> names;
        forEachBox(meta.content + (isOlder ? 0 : 4), meta.end, [&](const MovieBox& box) {
            if (box.type == fourCharCode("keys")) {
                names = readNames(box);
            } else if (box.type == fourCharCode("ilst")) {
                forEachBox(box.content, box.end, [&](const MovieBox& item) { readItem(item, names); });
            }
        });
    }

    // Names that the items refer to by their numbers, counted from 1.
    std::vector<std::string> readNames(const MovieBox& keys) {
        std::vector<std::string> names;
        forEachBox(keys.content + 8, keys.end, [&](const MovieBox& name) {
            if (names.size() < kMostNames) {
                names.push_back(m_bytes.text(name.content, name.end, TagList::kLongestKey));
            }
        });
        return names;
    }

    void readItem(const MovieBox& item, const std::vector<std::string>& names) {
        if (item.type >= 1 && item.type <= names.size()) {
            readNamedItem(item, names[item.type - 1]);
            return;
        }
        std::string key = fourLetters(item.type);
        forEachBox(item.content, item.end, [&](const MovieBox& box) {
            if (box.type == fourCharCode("data")) {
                m_tags.add(key, dataText(box));
            } else if (item.type == fourCharCode("----") &&
                       (box.type == fourCharCode("mean") || box.type == fourCharCode("name"))) {
                const std::string part = m_bytes.text(box.content + 4, box.end, TagList::kLongestKey);
                // A free item's own name belongs to its key; but TRACK would make an artist's key of a number's.
                key += startsWithSmall(part, "track") ? "" : ':' + part;
            }
        });
    }

    // Names are turned round like that of a host; only the last part counts.
    void readNamedItem(const MovieBox& item, std::string_view name) {
        name.remove_prefix(name.rfind('.') + 1);
        forEachBox(item.content, item.end, [&](const MovieBox& box) {
            if (box.type == fourCharCode("data")) {
                m_tags.addForeign(name, dataText(box));
            }
        });
    }

    std::string dataText(const MovieBox& data) {
        const std::uint8_t* p = m_bytes.at(data.content, 8);
        const std::uint32_t type = p ? bigEndian32(p) : 0;
        std::string stored = m_bytes.text(data.content + 8, data.end, kMostStored);
        return type == kBigUtf16 || type == kBigUtf16ForSorting ? utf8FromUtf16(stored, Utf16Order::Big) : stored;
    }

    ByteWindow m_bytes;
    const std::int64_t m_end;
    TagList& m_tags;
    int m_boxes = 0;
};

}  // namespace

void readMovieTags(const FileBytes& file, TagList& tags) {
    MovieTagReader(file, tags).readFile();
}

}  // namespace qm
