#include "engine/media/PacketSource.h"

namespace qm {

std::int64_t FilePacketSource::seek(const PacketIndex&, std::int64_t packet) {
    return m_next = packet;
}

PacketSource::Outcome FilePacketSource::next(const PacketIndex& index, AVPacket& packet) {
    if (m_next >= index.packets()) {
        return Outcome::End;
    }
    const PacketIndex::Packet place = index.packet(m_next);
    ++m_next;
    av_packet_unref(&packet);
    if (av_new_packet(&packet, static_cast<int>(place.size)) < 0 ||
        m_file->readAt(place.position, packet.data, place.size) != place.size) {
        return Outcome::Unreadable;
    }
    packet.pos = place.position;
    packet.flags = AV_PKT_FLAG_KEY;
    return Outcome::Packet;
}

}  // namespace qm
