// One open container: reads packets of its streams through our own view of the file, so that no file but this one is
// ever touched. One thread at a time. Opening a hostile file is bounded in memory and in bytes read.
#pragma once

#include <memory>

#include "engine/api/MediaKinds.h"
#include "engine/media/FileBytes.h"
#include "engine/media/Libav.h"

namespace qm {

class Demuxer {
public:
    // `kind` names the only container format that is tried. `analyse` also decodes a little to learn
    // what the headers do not say.
    static Result<std::unique_ptr<Demuxer>> open(std::shared_ptr<const FileBytes> file, MediaKind kind, bool analyse);
    ~Demuxer();
    Demuxer(const Demuxer&) = delete;
    Demuxer& operator=(const Demuxer&) = delete;

    AVFormatContext& context() { return *m_context; }
    AVStream& stream(int number) { return *m_context->streams[number]; }

    void onlyStream(int number);  // packets of the others are skipped from now on

    // The next packet of `stream`; 0, or the library's negative code.
    int read(int stream, AVPacket& packet);
    bool seek(int stream, std::int64_t timestamp);  // in the stream's time base; may land anywhere near

private:
    struct Reading;
    Demuxer();

    std::unique_ptr<Reading> m_reading;  // outlives the context, which reads through it
    AVIOContext* m_io = nullptr;
    FormatPtr m_context;
};

}  // namespace qm
