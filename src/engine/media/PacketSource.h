// Where a track's packets come from: straight from their bytes in the file, or through the demuxer where packets do not
// lie in the file in one piece. One thread at a time.
#pragma once

#include <cstdint>
#include <memory>

#include "engine/media/Demuxer.h"
#include "engine/media/PacketIndex.h"

namespace qm {

class PacketSource {
public:
    enum class Outcome { Packet, End, Unreadable };

    virtual ~PacketSource() = default;

    // Stands before `packet` or, where that cannot be reached directly, before an earlier one; returns which. -1: the
    // file has become unreadable.
    virtual std::int64_t seek(const PacketIndex& index, std::int64_t packet) = 0;

    // The packet it stands before; then it stands before the next one.
    virtual Outcome next(const PacketIndex& index, AVPacket& packet) = 0;

    // One of the same packets, that stands nowhere yet. Any thread.
    virtual std::unique_ptr<PacketSource> forAnotherReader() const = 0;
};

class FilePacketSource : public PacketSource {
public:
    explicit FilePacketSource(std::shared_ptr<const FileBytes> file) : m_file(std::move(file)) {}

    std::int64_t seek(const PacketIndex& index, std::int64_t packet) override;
    Outcome next(const PacketIndex& index, AVPacket& packet) override;
    std::unique_ptr<PacketSource> forAnotherReader() const override {
        return std::make_unique<FilePacketSource>(m_file);
    }

private:
    const std::shared_ptr<const FileBytes> m_file;
    std::int64_t m_next = 0;
};

// Knows its packets again by their fingerprint, because a demuxer's time stamps after a seek are not to be trusted.
// The index holds the fingerprints in the place of the sizes.
class DemuxedPacketSource : public PacketSource {
public:
    DemuxedPacketSource(std::shared_ptr<const FileBytes> file, MediaKind kind, int stream, int sampleRate);

    // Of what a packet holds, and of where that stands in the file.
    static std::uint64_t contentHash(const AVPacket& packet);
    static std::uint32_t fingerprint(const AVPacket& packet) { return fingerprint(contentHash(packet), packet.pos); }
    static std::uint32_t fingerprint(std::uint64_t contentHash, std::int64_t position);
    static std::uint64_t mixed(std::uint64_t hash, std::uint64_t word);

    std::int64_t seek(const PacketIndex& index, std::int64_t packet) override;
    Outcome next(const PacketIndex& index, AVPacket& packet) override;
    std::unique_ptr<PacketSource> forAnotherReader() const override {
        return std::make_unique<DemuxedPacketSource>(m_file, m_kind, m_stream, m_sampleRate);
    }

private:
    bool restart();
    std::int64_t tryLanding(const PacketIndex& index, std::int64_t frame, std::int64_t packet);

    const std::shared_ptr<const FileBytes> m_file;
    const MediaKind m_kind;
    const int m_stream;
    const int m_sampleRate;
    std::unique_ptr<Demuxer> m_demuxer;  // opened when first needed
    PacketPtr m_landed;                  // the packet that a landing was recognised by, not yet handed out
    bool m_hasLanded = false;
};

}  // namespace qm
