// Reads the pictures of a film with a demuxer and a decoder of its own, so that it seeks without disturbing the sound.
#pragma once

#include <memory>
#include <string>

#include "engine/media/Demuxer.h"
#include "engine/media/PictureConverter.h"
#include "engine/media/VideoReader.h"

namespace qm {

class VideoDecoder : public VideoReader {
public:
    // `origin` is the time that the container gives to the movie's time 0. Null if the stream has no decoder.
    static std::unique_ptr<VideoDecoder> open(std::shared_ptr<const FileBytes> file, MediaKind kind, int stream,
                                              double origin);

    bool seek(double seconds) override;
    bool gainsBySeeking(double from, double to) override;
    Outcome next(RawPicture& picture, double wantedFrom, std::int64_t mostPixels) override;
    double secondsPerPicture() const override { return m_usualDuration; }
    RawPicture reduced(const RawPicture& picture, std::int64_t mostPixels) override;
    std::shared_ptr<const VideoPicture> convert(const RawPicture& picture, PictureSize place) override;

private:
    VideoDecoder() = default;
    bool openDecoder();
    bool openDemuxer();
    bool restart();
    bool landAt(double seconds, double target);
    Outcome decode(double wantedFrom);
    bool takeFrame();
    double heldBack() const;  // seconds
    void leaveOutUnreferenced(const AVPacket& packet, double wantedFrom);
    double secondsOf(std::int64_t timestamp) const;
    std::int64_t stampOf(double seconds) const;

    std::shared_ptr<const FileBytes> m_file;
    MediaKind m_kind = MediaKind::MovieFile;
    int m_stream = 0;
    double m_origin = 0;
    AVRational m_timeBase{1, 1};
    double m_usualDuration = 0.04;  // of a picture, where no time stamps tell
    std::unique_ptr<Demuxer> m_demuxer;
    CodecPtr m_codec;
    PacketPtr m_packet;
    FramePtr m_frame;
    bool m_draining = false;
    bool m_hasLanded = false;  // m_frame is the picture that a seek landed at, not yet handed out
    double m_last = 0;         // time of the picture decoded last
    bool m_hasLast = false;
    int m_turn = 0;  // quarter turns clockwise that set the pictures upright
    PictureConverter m_converter;
};

}  // namespace qm
