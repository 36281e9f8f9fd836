// Writes packets into a movie file. One thread at a time. After a failure nothing more can be written.
#pragma once

#include <memory>
#include <optional>

#include "engine/export/TargetFile.h"
#include "engine/media/Libav.h"

namespace qm {

class MovieWriter {
public:
    explicit MovieWriter(TargetFile& file);  // outlives this
    ~MovieWriter();
    MovieWriter(const MovieWriter&) = delete;
    MovieWriter& operator=(const MovieWriter&) = delete;

    // Before begin().
    AVStream& addTrack();                    // enabled; the caller describes it
    void setTags(const AVDictionary* tags);  // what names the track: title, artist and the like
    void setTimeScale(int unitsPerSecond);   // of the times at which tracks begin

    std::optional<Error> begin();

    // Tracks in the order of their packets' times. `timeBase` is what the packet's times are in. Takes the packet.
    std::optional<Error> write(int track, AVPacket& packet, AVRational timeBase);

    std::optional<Error> finish();

private:
    std::optional<Error> outcome(int code) const;
    static int writeBytes(void* opaque, std::uint8_t* bytes, int count);
    static std::int64_t seek(void* opaque, std::int64_t offset, int whence);

    TargetFile& m_file;
    int m_systemError = 0;  // why bytes could not be written
    AVIOContext* m_io = nullptr;
    AVFormatContext* m_context = nullptr;
    AVDictionary* m_options = nullptr;
};

}  // namespace qm
