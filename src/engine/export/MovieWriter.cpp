#include "engine/export/MovieWriter.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>

extern "C" {
#include <libavutil/dict.h>
#include <libavutil/mem.h>
}

namespace qm {

namespace {

constexpr int kIoBufferBytes = 1 << 18;

}  // namespace

int MovieWriter::writeBytes(void* opaque, std::uint8_t* bytes, int count) {
    auto& self = *static_cast<MovieWriter*>(opaque);
    for (int done = 0; done < count;) {
        const ssize_t written = ::write(self.m_file.descriptor(), bytes + done, static_cast<std::size_t>(count - done));
        if (written < 0 && errno == EINTR) {
            continue;
        }
        if (written <= 0) {
            self.m_systemError = written < 0 ? errno : EIO;
            return AVERROR(self.m_systemError);
        }
        done += static_cast<int>(written);
    }
    return count;
}

std::int64_t MovieWriter::seek(void* opaque, std::int64_t offset, int whence) {
    auto& self = *static_cast<MovieWriter*>(opaque);
    if (whence & AVSEEK_SIZE) {
        return AVERROR(ENOSYS);
    }
    const off_t reached = ::lseek(self.m_file.descriptor(), offset, whence & ~AVSEEK_FORCE);
    return reached < 0 ? AVERROR(errno) : reached;
}

MovieWriter::MovieWriter(TargetFile& file) : m_file(file) {
    auto* buffer = static_cast<unsigned char*>(av_malloc(kIoBufferBytes));
    m_io = avio_alloc_context(buffer, kIoBufferBytes, 1, this, nullptr, &MovieWriter::writeBytes, &MovieWriter::seek);
    avformat_alloc_output_context2(&m_context, nullptr, "mov", nullptr);
    m_context->pb = m_io;
}

MovieWriter::~MovieWriter() {
    avformat_free_context(m_context);
    av_freep(&m_io->buffer);
    avio_context_free(&m_io);
    av_dict_free(&m_options);
}

AVStream& MovieWriter::addTrack() {
    AVStream* stream = avformat_new_stream(m_context, nullptr);
    stream->disposition = AV_DISPOSITION_DEFAULT;
    return *stream;
}

// Only these keys, because the muxer acts on some others instead of just writing them.
void MovieWriter::setTags(const AVDictionary* tags) {
    for (const char* key : {"title", "artist", "album_artist", "album", "composer", "genre", "date", "track", "comment",
                            "copyright", "description"}) {
        if (const AVDictionaryEntry* tag = av_dict_get(tags, key, nullptr, 0)) {
            av_dict_set(&m_context->metadata, key, tag->value, 0);
        }
    }
}

void MovieWriter::setTimeScale(int unitsPerSecond) {
    av_dict_set_int(&m_options, "movie_timescale", unitsPerSecond, 0);
}

std::optional<Error> MovieWriter::outcome(int code) const {
    if (m_systemError != 0) {
        return Error{ErrorCategory::Unreadable, std::strerror(m_systemError)};
    }
    if (code >= 0 && m_io->error >= 0) {
        return std::nullopt;
    }
    char text[AV_ERROR_MAX_STRING_SIZE] = {};
    av_strerror(code < 0 ? code : m_io->error, text, sizeof text);
    return Error{ErrorCategory::Unsupported, text};
}

std::optional<Error> MovieWriter::begin() {
    return outcome(avformat_write_header(m_context, &m_options));
}

std::optional<Error> MovieWriter::write(int track, AVPacket& packet, AVRational timeBase) {
    packet.stream_index = track;
    packet.pos = -1;
    av_packet_rescale_ts(&packet, timeBase, m_context->streams[track]->time_base);
    const int code = av_write_frame(m_context, &packet);
    av_packet_unref(&packet);
    return outcome(code);
}

std::optional<Error> MovieWriter::finish() {
    const int code = av_write_trailer(m_context);
    avio_flush(m_io);
    return outcome(code);
}

}  // namespace qm
