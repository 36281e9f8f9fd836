// Reads any stretch of one sound track, always with the same result. One thread at a time.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "engine/media/AudioDecoder.h"
#include "engine/media/SoundTrack.h"

namespace qm {

class TrackReader {
public:
    // Null if no decoder takes the track.
    static std::unique_ptr<TrackReader> create(SoundTrack track);

    const SoundTrack& track() const { return m_track; }
    std::int64_t length() const { return m_track.kept.length(); }  // frames meant to be heard

    // Writes heard frames [first, first + count) to `stereo`, zero outside the track. False: the file is unreadable.
    bool read(std::int64_t first, float* stereo, std::int64_t count);

    // How many frames the last packet really yields.
    int measureLastPacket();

    // Ends the reader's use.
    SoundTrack takeTrack() { return std::move(m_track); }

private:
    TrackReader(SoundTrack track, std::unique_ptr<AudioDecoder> decoder);

    bool readDecoded(std::int64_t first, float* stereo, std::int64_t count);
    std::int64_t reservoirPacket(std::int64_t target) const;
    std::int64_t prerollPacket(std::int64_t target) const;
    bool seek(std::int64_t frame);
    bool decodeNext();
    bool fetchAndDecode();
    void planRestart(std::int64_t packet);
    bool restartAndReplay();
    void fitYield(std::int64_t frames);
    std::int64_t decodedEnd() const { return m_decodedStart + static_cast<std::int64_t>(m_decoded.size() / 2); }

    SoundTrack m_track;
    std::unique_ptr<AudioDecoder> m_decoder;
    PacketPtr m_packet;
    bool m_positioned = false;
    std::int64_t m_next = 0;         // the packet to decode next
    std::int64_t m_decodeFrom = 0;   // packets before it are only passed over
    std::int64_t m_nextRestart = 0;  // the packet before which the decoder is started anew
    std::int64_t m_replayFrom = 0;   // from this packet on they are kept for that
    std::vector<PacketPtr> m_replay;
    std::vector<float> m_decoded;     // what the last packet yielded, interleaved stereo
    std::int64_t m_decodedStart = 0;  // the decoded frame it starts at
};

}  // namespace qm
