#include "engine/media/tags/Id3Tags.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "engine/media/Id3Header.h"
#include "engine/media/TextEncoding.h"

namespace qm {

namespace {

constexpr int kMostTagsInARow = 16;
constexpr std::int64_t kFrameWork = 64;  // of reading a frame that is left out, in bytes looked at
// A text as it is stored: two bytes for each of its characters, and those that unsynchronisation puts in.
constexpr std::size_t kMostStored = 4 * TagList::kLongestText;

// The bytes of a tag as its writer meant them, from front to back.
class TagCursor {
public:
    TagCursor(const FileBytes& file, std::int64_t position, std::int64_t end, bool unsynchronised, TagList& tags)
        : m_bytes(file), m_position(position), m_end(end), m_unsynchronised(unsynchronised), m_tags(tags) {}

    bool isAtEnd() const { return m_position >= m_end; }
    std::int64_t position() const { return m_position; }

    // The next bytes, fewer at the end of the tag.
    std::string take(std::size_t count) {
        if (!m_unsynchronised) {
            std::string bytes = m_bytes.text(m_position, m_end, count);
            m_position += static_cast<std::int64_t>(bytes.size());
            m_position = bytes.size() < count ? m_end : m_position;
            return bytes;
        }
        std::string bytes;
        while (bytes.size() < count) {
            const int byte = nextMeant();
            if (byte < 0) {
                break;
            }
            bytes += static_cast<char>(byte);
        }
        return bytes;
    }

    void skip(std::int64_t count) {
        if (!m_unsynchronised) {
            m_position = count <= m_end - m_position ? m_position + count : m_end;
            return;
        }
        while (count-- > 0 && nextMeant() >= 0) {
        }
    }

private:
    // Behind 0xff a zero byte was put in; -1 at the end.
    int nextMeant() {
        m_tags.spend(1);
        const std::uint8_t* p = m_position < m_end && !m_tags.isFull() ? m_bytes.at(m_position, 1) : nullptr;
        if (p && m_afterFull && *p == 0) {
            p = ++m_position < m_end ? m_bytes.at(m_position, 1) : nullptr;
        }
        if (!p) {
            m_position = m_end;
            return -1;
        }
        ++m_position;
        m_afterFull = *p == 0xff;
        return *p;
    }

    ByteWindow m_bytes;
    std::int64_t m_position;
    std::int64_t m_end;
    bool m_unsynchronised;
    bool m_afterFull = false;
    TagList& m_tags;
};

const std::uint8_t* bytesOf(const std::string& text) {
    return reinterpret_cast<const std::uint8_t*>(text.data());
}

std::string synchronised(const std::string& stored) {
    std::string meant;
    for (std::size_t i = 0; i < stored.size(); ++i) {
        if (i == 0 || stored[i] != '\0' || stored[i - 1] != '\xff') {
            meant += stored[i];
        }
    }
    return meant;
}

// The first byte of a text frame says how the others are encoded. Of several values the first counts.
std::string decodedText(std::string_view body) {
    if (body.empty()) {
        return {};
    }
    const char encoding = body[0];
    body.remove_prefix(1);
    if (encoding == 1 || encoding == 2) {
        return std::string(untilZero(utf8FromUtf16(body, encoding == 2 ? Utf16Order::Big : Utf16Order::Unknown)));
    }
    return utf8FromUnknown(untilZero(body));
}

bool isFrameName(std::string_view name) {
    const auto fits = [](char c) { return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9'); };
    const std::size_t letters = name.size() == 4 && name[3] == '\0' ? 3 : name.size();  // an older name in a newer tag
    return name.size() >= 3 && std::all_of(name.begin(), name.begin() + static_cast<std::ptrdiff_t>(letters), fits);
}

struct Frame {
    std::string_view name;
    std::int64_t bytes = 0;  // stored
    bool readable = true;
    bool unsynchronised = false;
    int extraBytes = 0;  // in front of the body
};

Frame parseFrame(const std::string& header, const Id3Header& tag) {
    const std::uint8_t* p = bytesOf(header);
    if (tag.version == 2) {
        return {std::string_view(header).substr(0, 3), p[3] << 16 | p[4] << 8 | p[5]};
    }
    Frame frame{std::string_view(header).substr(0, 4), tag.version == 4 ? synchSafe32(p + 4) : bigEndian32(p + 4)};
    const std::uint8_t flags = p[9];
    if (tag.version == 4) {
        frame.readable = (flags & 0x0c) == 0;  // neither compressed nor encrypted
        frame.unsynchronised = tag.unsynchronised || (flags & 0x02) != 0;
        frame.extraBytes = ((flags & 0x40) != 0 ? 1 : 0) + ((flags & 0x01) != 0 ? 4 : 0);
    } else {
        frame.readable = (flags & 0xc0) == 0;
        frame.extraBytes = (flags & 0x20) != 0 ? 1 : 0;
    }
    return frame;
}

class Id3Reader {
public:
    Id3Reader(const FileBytes& file, std::int64_t position, std::int64_t end, const Id3Header& header, TagList& tags)
        : m_peek(file),
          m_header(header),
          m_end(std::min(end, position + Id3Header::kBytes + header.frameBytes)),
          m_cursor(file, position + Id3Header::kBytes, m_end, header.unsynchronised && header.version < 4, tags),
          m_tags(tags) {}

    void run() {
        skipExtendedHeader();
        while (!m_cursor.isAtEnd() && !m_tags.isFull() && readFrame()) {
            m_tags.spend(kFrameWork);
        }
    }

private:
    void skipExtendedHeader() {
        if (!m_header.hasExtendedHeader || m_header.version < 3) {
            return;
        }
        const std::string size = m_cursor.take(4);
        if (size.size() == 4) {  // counts itself in the newer version only
            const std::int64_t stated = m_header.version == 4 ? synchSafe32(bytesOf(size)) : bigEndian32(bytesOf(size));
            m_cursor.skip(m_header.version == 4 ? std::max<std::int64_t>(stated - 4, 0) : stated);
        }
    }

    // False where the frames end.
    bool readFrame() {
        const std::size_t headerBytes = m_header.version == 2 ? 6 : 10;
        const std::int64_t position = m_cursor.position();
        const std::string header = m_cursor.take(headerBytes);
        if (header.size() < headerBytes || !isFrameName(header.substr(0, m_header.version == 2 ? 3 : 4))) {
            return false;
        }
        Frame frame = parseFrame(header, m_header);
        if (m_header.version == 4) {
            frame.bytes = trueBytes(position + Id3Header::kBytes, bytesOf(header) + 4);
        }
        const std::string name(frame.name.substr(0, frame.name.find('\0')));
        const bool isText = name[0] == 'T' && name != "TXXX" && name != "TXX";
        if (!isText || !frame.readable) {
            m_cursor.skip(frame.bytes);
            return true;
        }
        const auto stored = static_cast<std::size_t>(std::min(frame.bytes, static_cast<std::int64_t>(kMostStored)));
        std::string body = m_cursor.take(stored);
        m_cursor.skip(frame.bytes - static_cast<std::int64_t>(stored));
        body.erase(0, static_cast<std::size_t>(frame.extraBytes));
        m_tags.addForeign(name, decodedText(frame.unsynchronised ? synchronised(body) : body));
        return true;
    }

    // Some writers of the newer version put plain sizes: the one is believed that leads to another frame or to the
    // end of the tag.
    std::int64_t trueBytes(std::int64_t body, const std::uint8_t* size) {
        const std::int64_t safe = synchSafe32(size);
        const std::int64_t plain = bigEndian32(size);
        return safe == plain || leadsOn(body + safe) || !leadsOn(body + plain) ? safe : plain;
    }

    bool leadsOn(std::int64_t position) {
        if (position >= m_end) {
            return position == m_end;
        }
        const std::string next = m_peek.text(position, m_end, 4);
        return next[0] == '\0' || isFrameName(next);
    }

    ByteWindow m_peek;
    const Id3Header m_header;
    const std::int64_t m_end;
    TagCursor m_cursor;
    TagList& m_tags;
};

}  // namespace

std::int64_t readId3v2(const FileBytes& file, std::int64_t position, std::int64_t end, TagList& tags) {
    for (int i = 0; i < kMostTagsInARow; ++i) {
        std::array<std::uint8_t, Id3Header::kBytes> head{};
        if (position > end - Id3Header::kBytes || file.readAt(position, head.data(), head.size()) < head.size()) {
            return position;
        }
        const auto header = readId3Header(head.data());
        if (!header) {
            return position;
        }
        if (header->version >= 2 && header->version <= 4) {
            Id3Reader(file, position, end, *header, tags).run();
        }
        position += header->tagBytes;
    }
    return position;
}

void readId3v1(const FileBytes& file, TagList& tags) {
    constexpr int kBytes = 128;
    struct Field {
        const char* name;
        std::size_t offset;
        std::size_t bytes;
    };
    constexpr std::array kFields = {Field{"title", 3, 30}, Field{"artist", 33, 30}, Field{"album", 63, 30}};
    std::array<char, kBytes> tag{};
    if (file.size() < kBytes || file.readAt(file.size() - kBytes, tag.data(), tag.size()) < tag.size() ||
        std::memcmp(tag.data(), "TAG", 3) != 0) {
        return;
    }
    for (const Field& field : kFields) {
        std::string_view text = untilZero({tag.data() + field.offset, field.bytes});
        text = text.substr(0, text.find_last_not_of(' ') + 1);
        if (!text.empty()) {  // the tag has no other way to leave a field out
            tags.addForeign(field.name, utf8FromUnknown(text));
        }
    }
}

}  // namespace qm
