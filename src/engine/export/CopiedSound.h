// A sound track as it is: the very packets that its reader decodes, with the frames that are meant to be heard marked
// by their times. PCM is cut to these frames.
#pragma once

#include "engine/export/ExportTrack.h"
#include "engine/media/SoundTrack.h"

namespace qm {

class CopiedSound : public ExportTrack {
public:
    // The track is one that canCopySound().
    CopiedSound(SoundTrack track, std::int64_t startFrames);

    void describe(AVStream& stream) const override;
    Outcome next(AVPacket& packet) override;

private:
    Outcome readPacket(AVPacket& packet);
    bool cutToKept(AVPacket& packet, const PacketIndex::Packet& place) const;

    SoundTrack m_track;
    const std::int64_t m_start;  // where the first heard frame stands in the movie
    const KeptRanges::Range m_kept;
    std::int64_t m_next = 0;
    bool m_positioned = false;
    PacketPtr m_part;
};

}  // namespace qm
