#include "engine/media/MovieBoxes.h"

#include <algorithm>
#include <array>

#include "engine/media/MovieBox.h"

namespace qm {

namespace {

constexpr int kMostBoxes = 1000000;
constexpr int kDeepest = 8;
constexpr std::size_t kMostTracks = 256;

constexpr std::array kContainers = {fourCharCode("moov"), fourCharCode("trak"), fourCharCode("mdia"),
                                    fourCharCode("minf"), fourCharCode("stbl")};
constexpr std::array kProtectedEntries = {fourCharCode("drms"), fourCharCode("drmi"), fourCharCode("drmt"),
                                          fourCharCode("enca"), fourCharCode("encv"), fourCharCode("aavd")};

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
        while (++m_boxes <= kMostBoxes) {
            const auto box = readBox(m_bytes, position, end);
            if (!box) {
                return;
            }
            visit(*box, depth);
            position = box->end;
        }
    }

    void visit(const MovieBox& box, int depth) {
        const auto [type, content, end] = box;
        if (type == fourCharCode("moof") || type == fourCharCode("mvex")) {
            m_facts.isFragmented = true;
        } else if (type == fourCharCode("stsd")) {
            readEntries(content + 8, end);
        } else if (type == fourCharCode("mvhd")) {
            m_facts.movieScale = readScale(content).scale;
            readRate(content, end);
        } else if (type == fourCharCode("tkhd") && !m_facts.tracks.empty()) {
            const std::uint8_t* p = m_bytes.at(content, 24);
            m_facts.tracks.back().id = p ? bigEndian32(p + (p[0] == 1 ? 20 : 12)) : 0;
        } else if (type == fourCharCode("mdhd") && !m_facts.tracks.empty()) {
            const ScaledDuration media = readScale(content);
            m_facts.tracks.back().mediaScale = media.scale;
            m_facts.tracks.back().mediaDuration = media.duration;
        } else if (isOneOf(type, kContainers) && depth < kDeepest) {
            if (type == fourCharCode("trak") && m_facts.tracks.size() < kMostTracks) {
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
            readPictureSize(position);
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

    // Where the entry of a track of pictures has them; the first entry counts.
    void readPictureSize(std::int64_t entry) {
        const std::uint8_t* p = m_bytes.at(entry, 36);
        if (p && !m_facts.tracks.empty() && m_facts.tracks.back().width == 0) {
            m_facts.tracks.back().width = bigEndian16(p + 32);
            m_facts.tracks.back().height = bigEndian16(p + 34);
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
