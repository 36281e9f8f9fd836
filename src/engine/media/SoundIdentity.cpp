#include "engine/media/SoundIdentity.h"

extern "C" {
#include <libavutil/mem.h>
#include <libavutil/sha.h>
}

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>
#include <vector>

namespace qm {

namespace {

constexpr std::int64_t kPlaces = 16;
constexpr std::int64_t kMostBytes = 32 << 10;  // at one place
constexpr std::size_t kIdentityBytes = 16;

class Sha256 {
public:
    Sha256() : m_context(av_sha_alloc()) { av_sha_init(m_context, 256); }
    ~Sha256() { av_free(m_context); }
    Sha256(const Sha256&) = delete;
    Sha256& operator=(const Sha256&) = delete;

    void add(const void* bytes, std::size_t count) {
        av_sha_update(m_context, static_cast<const std::uint8_t*>(bytes), count);
    }
    void add(std::string_view text) { add(text.data(), text.size()); }
    void addLittleEndian(std::uint64_t number, int bytes) {
        std::array<std::uint8_t, 8> digits{};
        for (std::size_t i = 0; i < digits.size(); ++i) digits[i] = static_cast<std::uint8_t>(number >> (8 * i));
        add(digits.data(), static_cast<std::size_t>(bytes));
    }

    std::string hexadecimal(std::size_t bytes) {
        std::array<std::uint8_t, 32> digest{};
        av_sha_final(m_context, digest.data());
        static constexpr char kDigits[] = "0123456789abcdef";
        std::string text;
        for (std::size_t i = 0; i < bytes; ++i) {
            text += kDigits[digest[i] >> 4];
            text += kDigits[digest[i] & 15];
        }
        return text;
    }

private:
    AVSHA* m_context;
};

bool isMpegAudio(AVCodecID codec) {
    return codec == AV_CODEC_ID_MP3 || codec == AV_CODEC_ID_MP2 || codec == AV_CODEC_ID_MP1;
}

// A track's coded sound as if its packets followed one another, whatever lies between them in the file.
class CodedBytes {
public:
    CodedBytes(const PacketIndex& index, std::int64_t packets, const FileBytes& file)
        : m_index(index), m_packets(packets), m_file(file) {
        const auto& sizes = index.sizes();
        if (sizes.empty()) {
            const PacketIndex::Packet last = index.packet(packets - 1);
            m_bytes = last.position + last.size - index.packet(0).position;
        } else {
            for (std::int64_t i = 0; i < packets; ++i) m_bytes += sizes[static_cast<std::size_t>(i)];
        }
    }

    std::int64_t bytes() const { return m_bytes; }

    // Neighbouring packets are read at once.
    bool read(std::int64_t place, std::vector<std::uint8_t>& target) {
        goTo(place);
        std::size_t done = 0;
        while (done < target.size()) {
            const PacketIndex::Packet first = m_index.packet(m_packet);
            const std::int64_t position = first.position + place + static_cast<std::int64_t>(done) - m_packetPlace;
            std::int64_t end = first.position + first.size;
            const auto wanted = static_cast<std::int64_t>(target.size() - done);
            while (end - position < wanted && goToNeighbour(end)) end += m_index.packet(m_packet).size;
            const auto count = static_cast<std::size_t>(std::min(wanted, end - position));
            if (m_file.readAt(position, target.data() + done, count) != count) return false;
            done += count;
            if (done < target.size()) goTo(place + static_cast<std::int64_t>(done));
        }
        return true;
    }

private:
    std::int64_t sizeOf(std::int64_t packet) const { return m_index.packet(packet).size; }

    void goTo(std::int64_t place) {
        const auto& sizes = m_index.sizes();
        if (sizes.empty()) {
            const std::int64_t each = sizeOf(0);
            m_packet = place / each;
            m_packetPlace = m_packet * each;
            return;
        }
        while (place < m_packetPlace) m_packetPlace -= sizes[static_cast<std::size_t>(--m_packet)];
        while (place >= m_packetPlace + sizes[static_cast<std::size_t>(m_packet)])
            m_packetPlace += sizes[static_cast<std::size_t>(m_packet++)];
    }

    bool goToNeighbour(std::int64_t end) {
        if (m_packet + 1 >= m_packets || m_index.packet(m_packet + 1).position != end) return false;
        m_packetPlace += sizeOf(m_packet++);
        return true;
    }

    const PacketIndex& m_index;
    const std::int64_t m_packets;
    const FileBytes& m_file;
    std::int64_t m_bytes = 0;
    std::int64_t m_packet = 0;
    std::int64_t m_packetPlace = 0;  // where the packet begins among the coded bytes
};

// Pieces of equal length, evenly from the very beginning to the very end; all of it where that is short.
bool addPieces(Sha256& hash, CodedBytes coded) {
    const std::int64_t length = std::min(kMostBytes, (coded.bytes() + kPlaces - 1) / kPlaces);
    std::vector<std::uint8_t> piece(static_cast<std::size_t>(length));
    for (std::int64_t i = 0; i < kPlaces; ++i) {
        if (!coded.read((coded.bytes() - length) * i / (kPlaces - 1), piece)) return false;
        hash.add(piece.data(), piece.size());
    }
    return true;
}

// One packet at each place: in a film the next packet may lie anywhere, and elsewhere after a copy.
bool addPackets(Sha256& hash, const PacketIndex& index, std::int64_t packets, const FileBytes& file) {
    std::vector<std::uint8_t> piece;
    std::int64_t former = -1;
    for (std::int64_t i = 0; i < kPlaces; ++i) {
        const std::int64_t number = (packets - 1) * i / (kPlaces - 1);
        if (number == former) continue;
        former = number;
        const PacketIndex::Packet packet = index.packet(number);
        piece.resize(static_cast<std::size_t>(std::min<std::int64_t>(packet.size, kMostBytes)));
        if (file.readAt(packet.position, piece.data(), piece.size()) != piece.size()) return false;
        hash.add(piece.data(), piece.size());
    }
    return true;
}

// The last packet is left out where there are others: a cut file has a part of it, and then tags may be taken for the
// rest.
bool addSound(Sha256& hash, const SoundTrack& track, const FileBytes& file) {
    const PacketIndex& index = track.index;
    const AVCodecID codec = track.parameters->codec_id;
    const std::int64_t packets = std::max<std::int64_t>(index.packets() - 1, 1);
    if (index.packet(0).position == PacketIndex::kNoPosition) {
        hash.addLittleEndian(static_cast<std::uint64_t>(packets), 8);
        hash.addLittleEndian(track.contentHash, 8);
        return true;
    }
    if (isPcm(codec) || isBlocks(codec)) {
        CodedBytes coded(index, index.packets(), file);  // a movie's packets are of any length there
        hash.addLittleEndian(static_cast<std::uint64_t>(coded.bytes()), 8);
        return addPieces(hash, std::move(coded));
    }
    hash.addLittleEndian(static_cast<std::uint64_t>(packets), 8);
    for (std::int64_t i = 0; i < packets; ++i) hash.addLittleEndian(index.sizes()[static_cast<std::size_t>(i)], 4);
    return isMpegAudio(codec) ? addPieces(hash, {index, packets, file}) : addPackets(hash, index, packets, file);
}

}  // namespace

std::string soundIdentity(const SoundTrack& track, const FileBytes& file) {
    if (track.index.packets() == 0) return {};
    Sha256 hash;
    hash.add("q1 ");
    hash.add(avcodec_get_name(track.parameters->codec_id));
    hash.add(" " + std::to_string(track.sampleRate) + " " + std::to_string(track.channels) + " ");
    return addSound(hash, track, file) ? "q1-" + hash.hexadecimal(kIdentityBytes) : std::string();
}

}  // namespace qm
