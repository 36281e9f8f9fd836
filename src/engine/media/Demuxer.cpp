#include "engine/media/Demuxer.h"

#include <algorithm>
#include <mutex>

extern "C" {
#include <libavutil/log.h>
#include <libavutil/mem.h>
}

namespace qm {

namespace {

constexpr int kIoBufferBytes = 32768;
constexpr std::size_t kLargestBlock = std::size_t{512} << 20;
constexpr std::int64_t kOpeningAllowance = std::int64_t{64} << 20;
constexpr int kMaxStreams = 256;

void prepareLibrary() {
    static std::once_flag once;
    std::call_once(once, [] {
        av_log_set_level(AV_LOG_QUIET);  // damaged packets are expected, and each would be a line
        av_max_alloc(kLargestBlock);
    });
}

int refuseOtherFiles(AVFormatContext*, AVIOContext**, const char*, int, AVDictionary**) {
    return AVERROR(EPERM);
}

std::string reason(int code) {
    char text[AV_ERROR_MAX_STRING_SIZE] = {};
    av_strerror(code, text, sizeof text);
    return text;
}

}  // namespace

struct Demuxer::Reading {
    std::shared_ptr<const FileBytes> file;
    std::int64_t position = 0;
    std::int64_t allowance = 0;  // bytes that may still be read; a header that loops ends here
    bool limited = true;

    static int read(void* opaque, std::uint8_t* buffer, int count) {
        auto& self = *static_cast<Reading*>(opaque);
        const std::size_t got = self.file->readAt(self.position, buffer, static_cast<std::size_t>(count));
        self.position += static_cast<std::int64_t>(got);
        self.allowance -= static_cast<std::int64_t>(got) + (self.limited ? 1024 : 0);
        if (got == 0 || (self.limited && self.allowance < 0)) {
            return AVERROR_EOF;
        }
        return static_cast<int>(got);
    }

    static std::int64_t seek(void* opaque, std::int64_t offset, int whence) {
        auto& self = *static_cast<Reading*>(opaque);
        switch (whence & ~AVSEEK_FORCE) {
            case AVSEEK_SIZE:
                return self.file->size();
            case SEEK_SET:
                break;
            case SEEK_CUR:
                offset += self.position;
                break;
            case SEEK_END:
                offset += self.file->size();
                break;
            default:
                return AVERROR(EINVAL);
        }
        if (offset < 0) {
            return AVERROR(EINVAL);
        }
        return self.position = offset;
    }
};

Demuxer::Demuxer() : m_reading(std::make_unique<Reading>()) {}

Demuxer::~Demuxer() {
    m_context.reset();
    if (m_io) {
        av_freep(&m_io->buffer);
        avio_context_free(&m_io);
    }
}

Result<std::unique_ptr<Demuxer>> Demuxer::open(std::shared_ptr<const FileBytes> file, MediaKind kind, bool analyse) {
    prepareLibrary();
    const std::string format(rowOf(kind).demuxer);
    const AVInputFormat* input = av_find_input_format(format.c_str());
    if (!input) {
        return Error{ErrorCategory::Unsupported, "no reader for the format " + format};
    }
    std::unique_ptr<Demuxer> demuxer(new Demuxer);
    Reading& reading = *demuxer->m_reading;
    reading.allowance = 4 * file->size() + kOpeningAllowance;
    reading.file = std::move(file);
    auto* buffer = static_cast<unsigned char*>(av_malloc(kIoBufferBytes));
    demuxer->m_io = avio_alloc_context(buffer, kIoBufferBytes, 0, &reading, &Reading::read, nullptr, &Reading::seek);
    AVFormatContext* context = avformat_alloc_context();
    context->pb = demuxer->m_io;
    context->io_open = refuseOtherFiles;
    context->probesize = 4 << 20;
    context->max_analyze_duration = 2 * AV_TIME_BASE;
    context->max_streams = kMaxStreams;
    const int code = avformat_open_input(&context, "", input, nullptr);  // frees the context on failure
    if (code < 0) {
        return Error{ErrorCategory::Damaged, reason(code)};
    }
    demuxer->m_context.reset(context);
    if (analyse && avformat_find_stream_info(context, nullptr) < 0) {
        return Error{ErrorCategory::Damaged, "no streams can be made out"};
    }
    reading.limited = false;
    return demuxer;
}

void Demuxer::onlyStream(int number) {
    for (unsigned i = 0; i < m_context->nb_streams; ++i) {
        m_context->streams[i]->discard = static_cast<int>(i) == number ? AVDISCARD_DEFAULT : AVDISCARD_ALL;
    }
}

int Demuxer::read(int stream, AVPacket& packet) {
    for (;;) {
        av_packet_unref(&packet);
        const int code = av_read_frame(m_context.get(), &packet);
        if (code < 0 || packet.stream_index == stream) {
            return code;
        }
    }
}

bool Demuxer::seek(int stream, std::int64_t timestamp) {
    return av_seek_frame(m_context.get(), stream, timestamp, AVSEEK_FLAG_BACKWARD) >= 0;
}

}  // namespace qm
