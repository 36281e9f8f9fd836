// A track of moving pictures as it is, with its times counted from the beginning of the new movie.
#pragma once

#include <memory>
#include <string>

#include "engine/export/ExportTrack.h"
#include "engine/media/Demuxer.h"

namespace qm {

class CopiedPictures : public ExportTrack {
public:
    // The stream is one of which canCopyPictures(). `origin` is the container's time, in seconds, at which the new
    // movie begins.
    CopiedPictures(std::unique_ptr<Demuxer> demuxer, int stream, double origin);

    void describe(AVStream& stream) const override;
    Outcome next(AVPacket& packet) override;

private:
    void setTimes(AVPacket& packet);

    std::unique_ptr<Demuxer> m_demuxer;
    const int m_stream;
    const std::int64_t m_origin;  // in the stream's time base
    std::int64_t m_usualDuration = 0;
    std::int64_t m_lastDecoded = AV_NOPTS_VALUE;
    bool m_hasShown = false;
};

}  // namespace qm
