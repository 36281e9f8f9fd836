#include <algorithm>
#include <cstring>

#include "engine/media/CutList.h"
#include "engine/media/OggPages.h"
#include "engine/media/PacketFrames.h"
#include "engine/media/TrackPlan.h"

namespace qm {

namespace {

// Goes through a stream's pages once and notes where each packet begins and how many frames it holds.
class OggWalk {
public:
    OggWalk(std::shared_ptr<const FileBytes> file, const AVStream& stream, SoundTrack& track)
        : m_file(std::move(file)),
          m_bytes(*m_file),
          m_number(stream.index),
          m_codec(stream.codecpar->codec_id),
          m_frames(PacketFrames::create(*stream.codecpar)),
          m_track(track) {}

    // False for a file of another shape than this walk knows.
    bool go() {
        if (!m_frames) return false;
        const std::int64_t end = m_file->size();
        auto page = nextOggPage(m_bytes, 0, end);
        for (; page; page = nextOggPage(m_bytes, page->position + page->bytes, end)) {
            if (page->isFirst && !noteStream(*page)) return false;
            if (m_hasStream && page->stream == m_stream && !takePage(*page)) return false;
        }
        return m_hasStream && m_headersLeft == 0 && m_track.index.packets() > 0;
    }

    std::shared_ptr<const OggPlaces> places() const { return m_places; }
    std::int64_t preSkip() const { return m_preSkip; }

    // The decoded frames that are meant to be heard, by the counts that the pages carry.
    KeptRanges kept() const {
        KeptRanges ranges(m_track.index.frames());
        if (m_firstGranule == OggPage::kNoGranule) return ranges;
        const std::int64_t early = m_isOnePage ? 0 : std::max<std::int64_t>(m_firstFrames - m_firstGranule, 0);
        const std::int64_t late = std::max<std::int64_t>(m_firstGranule - m_firstFrames, 0);
        const std::int64_t heardEnd = m_lastGranule + early - (m_isOnePage ? 0 : late);
        ranges.cut(std::clamp(heardEnd, std::int64_t{0}, m_track.index.frames()), m_track.index.frames());
        ranges.cut(0, std::max(m_preSkip, early));
        return ranges;
    }

private:
    // The beginning of a stream; another one after sound has come is a second piece in the same file.
    bool noteStream(const OggPage& page) {
        if (m_track.index.packets() > 0) return false;
        if (m_streams++ != m_number) return true;
        m_stream = page.stream;
        m_hasStream = true;
        const std::uint8_t* head = m_bytes.at(page.content, 16);
        if (!head) return false;
        switch (m_codec) {
            case AV_CODEC_ID_OPUS:
                m_headersLeft = 2;
                m_preSkip = littleEndian16(head + 10);
                return std::memcmp(head, "OpusHead", 8) == 0;
            case AV_CODEC_ID_VORBIS:
                m_headersLeft = 3;
                return std::memcmp(head, "\x01vorbis", 7) == 0;
            case AV_CODEC_ID_FLAC:
                m_headersLeft = bigEndian16(head + 7) + 1;
                return std::memcmp(head,
                                   "\x7f"
                                   "FLAC",
                                   5) == 0 &&
                       m_headersLeft > 1;
            default:
                return false;
        }
    }

    bool takePage(const OggPage& page) {
        const bool isOfHeaders = m_headersLeft > 0;
        const std::int64_t framesBefore = m_track.index.frames();
        if (!page.continues) m_begun = false;
        bool isLost = page.continues && !m_begun;  // the beginning of the packet that goes on here
        if (!isOfHeaders) m_places->pages.push_back({page.position, m_track.index.packets() + (m_begun ? 1 : 0)});
        std::int64_t position = page.content;
        for (const std::uint8_t bytes : page.lacing) {
            if (!isLost) takeSegment(page, position, bytes);
            isLost = isLost && bytes == 255;
            position += bytes;
        }
        if (isOfHeaders && m_track.index.packets() > 0) return false;  // sound begins on a page of its own
        if (!isOfHeaders && page.granule != OggPage::kNoGranule) noteGranule(page, framesBefore);
        return true;
    }

    void takeSegment(const OggPage& page, std::int64_t position, std::uint8_t bytes) {
        if (!m_begun) beginPacket(page, position);
        m_packetBytes += bytes;
        m_begun = bytes == 255;
        if (!m_begun) endPacket();
    }

    void beginPacket(const OggPage& page, std::int64_t position) {
        m_packetBytes = 0;
        m_headBytes = static_cast<std::size_t>(
            std::min<std::int64_t>(PacketFrames::kHeadBytes, page.position + page.bytes - position));
        const std::uint8_t* head = m_bytes.at(position, m_headBytes);
        if (!head) m_headBytes = 0;
        if (head) std::copy_n(head, m_headBytes, m_head);
    }

    void endPacket() {
        if (m_headersLeft > 0) {
            --m_headersLeft;
            return;
        }
        const std::size_t bytes = std::min(m_headBytes, static_cast<std::size_t>(m_packetBytes));
        m_track.index.append(PacketIndex::kNoPosition, static_cast<std::uint32_t>(m_packetBytes),
                             m_frames->next({m_head, bytes}, m_packetBytes));
    }

    void noteGranule(const OggPage& page, std::int64_t framesBefore) {
        if (m_track.index.frames() == framesBefore && m_firstGranule == OggPage::kNoGranule) return;
        if (m_firstGranule == OggPage::kNoGranule) {
            m_firstGranule = page.granule;
            m_firstFrames = m_track.index.frames();
            m_isOnePage = page.isLast;
        }
        m_lastGranule = page.granule;
    }

    const std::shared_ptr<const FileBytes> m_file;
    ByteWindow m_bytes;
    const int m_number;
    const AVCodecID m_codec;
    std::unique_ptr<PacketFrames> m_frames;
    SoundTrack& m_track;
    std::shared_ptr<OggPlaces> m_places = std::make_shared<OggPlaces>();

    int m_streams = 0;
    bool m_hasStream = false;
    std::uint32_t m_stream = 0;
    int m_headersLeft = 0;
    std::int64_t m_preSkip = 0;
    bool m_begun = false;  // the packet that the last segment belongs to goes on
    std::int64_t m_packetBytes = 0;
    std::uint8_t m_head[PacketFrames::kHeadBytes] = {};
    std::size_t m_headBytes = 0;
    std::int64_t m_firstGranule = OggPage::kNoGranule;
    std::int64_t m_firstFrames = 0;  // decoded when it was reached
    std::int64_t m_lastGranule = 0;
    bool m_isOnePage = false;
};

}  // namespace

std::optional<SoundTrack> planOgg(std::shared_ptr<const FileBytes> file, const AVStream& stream,
                                  const StreamStart& start) {
    SoundTrack track = beginTrack(stream, start);
    OggWalk walk(file, stream, track);
    if (!walk.go()) return std::nullopt;
    track.kept = walk.kept();
    track.source = std::make_unique<OggPacketSource>(std::move(file), walk.places());
    return track;
}

}  // namespace qm
