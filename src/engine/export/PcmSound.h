// A sound track decoded, as 16-bit samples: what is heard of it, exactly, mono or stereo.
#pragma once

#include <vector>

#include "engine/export/ExportTrack.h"
#include "engine/media/TrackReader.h"

namespace qm {

class PcmSound : public ExportTrack {
public:
    PcmSound(std::unique_ptr<TrackReader> reader, std::int64_t startFrames);

    void describe(AVStream& stream) const override;
    Outcome next(AVPacket& packet) override;

private:
    std::unique_ptr<TrackReader> m_reader;
    const std::int64_t m_start;  // where the first frame stands in the movie
    std::int64_t m_next = 0;
    std::vector<float> m_block;
};

}  // namespace qm
