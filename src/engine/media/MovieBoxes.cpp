#include "engine/media/MovieBoxes.h"

#include <algorithm>
#include <array>

namespace qm {

namespace {

constexpr int kMostBoxes = 1000000;
constexpr int kDeepest = 8;
constexpr std::size_t kMostTracks = 256;
constexpr std::uint32_t tag(const char (&name)[5]) {
    return std::uint32_t(std::uint8_t(name[0])) << 24 | std::uint32_t(std::uint8_t(name[1])) << 16 |
           std::uint32_t(std::uint8_t(name[2])) << 8 | std::uint8_t(name[3]);
}

constexpr std::array kContainers = {tag("moov"), tag("trak"), tag("mdia"), tag("minf"), tag("stbl")};
constexpr std::array kProtectedEntries = {tag("drms"), tag("drmi"), tag("drmt"), tag("enca"), tag("encv"), tag("aavd")};

template <std::size_t N>
bool isOneOf(std::uint32_t type, const std::array<std::uint32_t, N>& types) {
    return std::find(types.begin(), types.end(), type) != types.end();
}

class BoxWalk {
public:
    explicit BoxWalk(const FileBytes& file) : m_bytes(file), m_end(file.size()) {}

    MovieFacts run() {
        walk(0, m_end, 0);
        return m_facts;
    }

private:
    void walk(std::int64_t position, std::int64_t end, int depth) {
        while (position + 8 <= end && ++m_boxes <= kMostBoxes) {
            const std::uint8_t* p = m_bytes.at(position, 16);
            p = p ? p : m_bytes.at(position, 8);
            if (!p) {
                return;
            }
            const std::uint32_t type = bigEndian32(p + 4);
            std::int64_t size = bigEndian32(p);
            std::int64_t header = 8;
            if (size == 1 && position + 16 <= end) {
                size = static_cast<std::int64_t>(bigEndian64(p + 8));
                header = 16;
            } else if (size == 0) {
                size = end - position;
            }
            if (size < header) {
                return;
            }
            const std::int64_t boxEnd = size > end - position ? end : position + size;
            visit(type, position + header, boxEnd, depth);
            position = boxEnd;
        }
    }

    void visit(std::uint32_t type, std::int64_t content, std::int64_t end, int depth) {
        if (type == tag("moof") || type == tag("mvex")) {
            m_facts.isFragmented = true;
        } else if (type == tag("stsd")) {
            readEntries(content + 8, end);
        } else if (type == tag("mvhd")) {
            m_facts.movieScale = readScale(content).scale;
            readRate(content, end);
        } else if (type == tag("tkhd") && !m_facts.tracks.empty()) {
            const std::uint8_t* p = m_bytes.at(content, 24);
            m_facts.tracks.back().id = p ? bigEndian32(p + (p[0] == 1 ? 20 : 12)) : 0;
        } else if (type == tag("mdhd") && !m_facts.tracks.empty()) {
            const ScaledDuration media = readScale(content);
            m_facts.tracks.back().mediaScale = media.scale;
            m_facts.tracks.back().mediaDuration = media.duration;
        } else if (isOneOf(type, kContainers) && depth < kDeepest) {
            if (type == tag("trak") && m_facts.tracks.size() < kMostTracks) {
                m_facts.tracks.emplace_back();
            }
            walk(content, end, depth + 1);
        }
    }

    struct ScaledDuration {
        std::uint32_t scale = 0;
        std::int64_t duration = -1;
    };

    // The movie's and the media's header keep these two in the same place.
    ScaledDuration readScale(std::int64_t content) {
        const std::uint8_t* p = m_bytes.at(content, 32);
        if (!p) {
            return {};
        }
        return p[0] == 1 ? ScaledDuration{bigEndian32(p + 20), static_cast<std::int64_t>(bigEndian64(p + 24))}
                         : ScaledDuration{bigEndian32(p + 12), std::int64_t{bigEndian32(p + 16)}};
    }

    void readRate(std::int64_t content, std::int64_t end) {
        const std::uint8_t* p = m_bytes.at(content, 1);
        const std::int64_t position = content + (p && p[0] == 1 ? 32 : 20);
        p = position + 4 <= end ? m_bytes.at(position, 4) : nullptr;
        if (p) {
            m_facts.ratePosition = position;
            m_facts.preferredRate = static_cast<std::int32_t>(bigEndian32(p)) / 65536.0;
        }
    }

    void readEntries(std::int64_t position, std::int64_t end) {
        while (position + 8 <= end && ++m_boxes <= kMostBoxes) {
            const std::uint8_t* p = m_bytes.at(position, 8);
            if (!p) {
                return;
            }
            m_facts.isProtected = m_facts.isProtected || isOneOf(bigEndian32(p + 4), kProtectedEntries);
            const std::int64_t size = bigEndian32(p);
            if (size < 8) {
                return;
            }
            position += size;
        }
    }

    ByteWindow m_bytes;
    std::int64_t m_end;
    int m_boxes = 0;
    MovieFacts m_facts;
};

}  // namespace

MovieFacts readMovieFacts(const FileBytes& file) {
    return BoxWalk(file).run();
}

}  // namespace qm
