#include "engine/media/OggPages.h"

#include <algorithm>
#include <cstring>

namespace qm {

namespace {

constexpr std::size_t kHeaderBytes = 27;
constexpr std::size_t kLongestPacket = 16 << 20;

}  // namespace

std::optional<OggPage> OggPage::read(ByteWindow& bytes, std::int64_t position, std::int64_t end) {
    const std::uint8_t* head = bytes.at(position, kHeaderBytes);
    if (!head || std::memcmp(head, "OggS", 4) != 0 || head[4] != 0) return std::nullopt;
    OggPage page;
    page.position = position;
    page.continues = (head[5] & 1) != 0;
    page.isFirst = (head[5] & 2) != 0;
    page.isLast = (head[5] & 4) != 0;
    page.granule = static_cast<std::int64_t>(littleEndian64(head + 6));
    page.stream = littleEndian32(head + 14);
    const std::size_t segments = head[26];
    page.content = position + static_cast<std::int64_t>(kHeaderBytes + segments);
    const std::uint8_t* lacing = bytes.at(position + static_cast<std::int64_t>(kHeaderBytes), segments);
    if (segments > 0 && !lacing) return std::nullopt;
    std::int64_t contentBytes = 0;
    for (std::size_t i = 0; i < segments; ++i) contentBytes += lacing[i];
    page.lacing.assign(lacing, lacing + segments);
    page.bytes = page.content - position + contentBytes;
    return page.position + page.bytes <= end ? std::optional(std::move(page)) : std::nullopt;
}

std::optional<OggPage> nextOggPage(ByteWindow& bytes, std::int64_t position, std::int64_t end) {
    if (auto page = OggPage::read(bytes, position, end)) return page;
    for (; position + static_cast<std::int64_t>(kHeaderBytes) <= end; ++position) {
        const std::uint8_t* mark = bytes.at(position, 4);
        if (!mark) return std::nullopt;
        if (mark[0] != 'O' || std::memcmp(mark, "OggS", 4) != 0) continue;
        if (auto page = OggPage::read(bytes, position, end)) return page;
    }
    return std::nullopt;
}

bool OggPacketSource::enterPage(std::size_t number) {
    m_page = number;
    m_segment = 0;
    m_open.reset();
    if (number >= m_places->pages.size()) return false;
    m_open = OggPage::read(m_bytes, m_places->pages[number].position, m_file->size());
    if (m_open) m_position = m_open->content;
    return m_open.has_value();
}

// Over the rest of a packet whose beginning is not wanted, or was lost.
void OggPacketSource::skipContinuation() {
    while (m_segment < m_open->lacing.size()) {
        const std::uint8_t bytes = m_open->lacing[m_segment++];
        m_position += bytes;
        if (bytes < 255) return;
    }
}

// The packet that begins here, over as many pages as it takes.
bool OggPacketSource::takePacket(std::vector<std::uint8_t>& packet) {
    packet.clear();
    while (m_open) {
        if (m_segment == m_open->lacing.size()) {
            if (!enterPage(m_page + 1)) return false;
            if (!m_open->continues) packet.clear();  // its end was lost
            if (m_open->continues && packet.empty()) skipContinuation();
            continue;
        }
        const std::size_t bytes = m_open->lacing[m_segment++];
        const std::size_t before = packet.size();
        packet.resize(before + bytes);
        if (before + bytes > kLongestPacket || m_file->readAt(m_position, packet.data() + before, bytes) != bytes) {
            return false;
        }
        m_position += static_cast<std::int64_t>(bytes);
        if (bytes < 255) return true;
    }
    return false;
}

std::int64_t OggPacketSource::seek(const PacketIndex&, std::int64_t packet) {
    const auto& pages = m_places->pages;
    const auto after =
        std::upper_bound(pages.begin(), pages.end(), packet,
                         [](std::int64_t n, const OggPlaces::Place& page) { return n < page.firstPacket; });
    if (after == pages.begin() || !enterPage(static_cast<std::size_t>(after - pages.begin()) - 1)) return -1;
    if (m_open->continues) skipContinuation();
    for (std::int64_t n = pages[m_page].firstPacket; n < packet; ++n) {
        if (!takePacket(m_packet)) return -1;
    }
    return m_next = packet;
}

PacketSource::Outcome OggPacketSource::next(const PacketIndex& index, AVPacket& packet) {
    if (m_next >= index.packets()) return Outcome::End;
    if (!m_open && seek(index, m_next) < 0) return Outcome::Unreadable;
    ++m_next;
    av_packet_unref(&packet);
    if (!takePacket(m_packet) || av_new_packet(&packet, std::max(static_cast<int>(m_packet.size()), 1)) < 0) {
        return Outcome::Unreadable;
    }
    packet.data[0] = 0;
    std::copy(m_packet.begin(), m_packet.end(), packet.data);
    packet.flags = AV_PKT_FLAG_KEY;
    return Outcome::Packet;
}

}  // namespace qm
