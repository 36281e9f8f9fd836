// The pages of one stream of an Ogg file, and its packets, which may reach over several of them (RFC 3533).
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "engine/media/FileBytes.h"
#include "engine/media/PacketSource.h"

namespace qm {

struct OggPage {
    static constexpr std::int64_t kNoGranule = -1;

    std::int64_t position = 0;  // bytes
    std::int64_t bytes = 0;     // with its header
    std::int64_t content = 0;   // where its header ends
    std::int64_t granule = kNoGranule;
    std::uint32_t stream = 0;
    bool continues = false;  // it begins with the rest of a packet
    bool isFirst = false;    // of its stream
    bool isLast = false;
    std::vector<std::uint8_t> lacing;  // the lengths of its segments; one of 255 goes on in the next

    // The page that begins at `position`; none where there is no whole one.
    static std::optional<OggPage> read(ByteWindow& bytes, std::int64_t position, std::int64_t end);
};

// The page at or after `position`, over bytes that belong to none.
std::optional<OggPage> nextOggPage(ByteWindow& bytes, std::int64_t position, std::int64_t end);

// Where the pages of a stream lie, and which packet is the first to begin in each.
struct OggPlaces {
    struct Place {
        std::int64_t position;
        std::int64_t firstPacket;
    };
    std::vector<Place> pages;
};

class OggPacketSource final : public PacketSource {
public:
    OggPacketSource(std::shared_ptr<const FileBytes> file, std::shared_ptr<const OggPlaces> places)
        : m_file(std::move(file)), m_places(std::move(places)), m_bytes(*m_file) {}

    std::int64_t seek(const PacketIndex& index, std::int64_t packet) override;
    Outcome next(const PacketIndex& index, AVPacket& packet) override;
    std::unique_ptr<PacketSource> forAnotherReader() const override {
        return std::make_unique<OggPacketSource>(m_file, m_places);
    }

private:
    bool enterPage(std::size_t number);
    void skipContinuation();
    bool takePacket(std::vector<std::uint8_t>& packet);

    const std::shared_ptr<const FileBytes> m_file;
    const std::shared_ptr<const OggPlaces> m_places;
    ByteWindow m_bytes;
    std::int64_t m_next = 0;
    std::size_t m_page = 0;     // number of the page that is being read
    std::size_t m_segment = 0;  // the next one of it
    std::int64_t m_position = 0;
    std::optional<OggPage> m_open;
    std::vector<std::uint8_t> m_packet;
};

}  // namespace qm
