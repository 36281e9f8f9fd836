// A track of moving pictures decoded and coded anew, as H.264 where the library can and as MPEG-4 otherwise.
#pragma once

#include <memory>

#include "engine/export/ExportTrack.h"
#include "engine/media/VideoReader.h"

struct SwsContext;

namespace qm {

class EncodedPictures : public ExportTrack {
public:
    // `reader` counts its times from the beginning of the new movie; `source` is the stream that it reads and outlives
    // this. Null if nothing can be decoded or coded.
    static std::unique_ptr<EncodedPictures> create(std::unique_ptr<VideoReader> reader, const AVStream& source);
    ~EncodedPictures() override;

    void describe(AVStream& stream) const override;
    Outcome next(AVPacket& packet) override;

private:
    EncodedPictures(std::unique_ptr<VideoReader> reader, const AVStream& source);
    bool readFirst();
    bool openEncoder(const char* name);
    Outcome feed();
    bool encode(const AVFrame& picture, double seconds);
    FramePtr converted(const AVFrame& picture);

    std::unique_ptr<VideoReader> m_reader;
    const AVStream& m_source;
    RawPicture m_picture;
    bool m_hasPicture = false;  // read, not yet coded
    CodecPtr m_encoder;
    SwsContext* m_scaler = nullptr;
    std::int64_t m_lastTime = AV_NOPTS_VALUE;
};

}  // namespace qm
