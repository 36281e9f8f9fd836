#include "engine/media/FileBytes.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace qm {

namespace {

constexpr std::size_t kSmallestBlock = std::size_t{1} << 13;
constexpr std::size_t kLargestBlock = std::size_t{1} << 18;

Error openError(const std::string& path, int code) {
    const ErrorCategory category =
        code == ENOENT || code == ENOTDIR ? ErrorCategory::NotFound : ErrorCategory::Unreadable;
    return Error{category, path + ": " + std::strerror(code)};
}

}  // namespace

Result<std::shared_ptr<const FileBytes>> FileBytes::open(const std::string& path, ReadCount reads) {
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (descriptor < 0) {
        return openError(path, errno);
    }
    struct stat status {};
    if (::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) {
        ::close(descriptor);
        return Error{ErrorCategory::Unreadable, path + ": not a regular file"};
    }
    return std::shared_ptr<const FileBytes>(new FileBytes(path, descriptor, status.st_size, std::move(reads)));
}

FileBytes::~FileBytes() {
    ::close(m_descriptor);
}

std::size_t FileBytes::readAt(std::int64_t position, void* target, std::size_t count) const {
    std::size_t done = 0;
    while (done < count) {
        const ssize_t got = ::pread(m_descriptor, static_cast<char*>(target) + done, count - done,
                                    static_cast<off_t>(position + static_cast<std::int64_t>(done)));
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (m_reads) ++*m_reads;
        if (got <= 0) {
            break;
        }
        done += static_cast<std::size_t>(got);
    }
    return done;
}

// A walk that goes on reads more and more at a time; a jump begins small, for it may be one of many.
const std::uint8_t* ByteWindow::at(std::int64_t position, std::size_t count) {
    if (position < 0 || position > m_file.size() || count > kLargestBlock) {
        return nullptr;
    }
    const std::int64_t end = m_start + static_cast<std::int64_t>(m_block.size());
    if (position < m_start || position + static_cast<std::int64_t>(count) > end) {
        const bool goesOn = position > m_start && position <= end;
        const std::size_t block =
            goesOn ? std::clamp(2 * m_block.size(), kSmallestBlock, kLargestBlock) : kSmallestBlock;
        m_block.resize(std::max(block, count));
        m_block.resize(m_file.readAt(position, m_block.data(), m_block.size()));
        m_start = position;
        if (m_block.size() < count) {
            return nullptr;
        }
    }
    return m_block.data() + (position - m_start);
}

std::string ByteWindow::text(std::int64_t position, std::int64_t end, std::size_t most) {
    const std::int64_t last = std::min(end, m_file.size());
    if (position < 0 || position >= last) {
        return {};
    }
    std::string bytes(static_cast<std::size_t>(std::min(last - position, static_cast<std::int64_t>(most))), '\0');
    if (const std::uint8_t* p = at(position, bytes.size())) {
        bytes.assign(p, p + bytes.size());
    } else {
        bytes.resize(m_file.readAt(position, bytes.data(), bytes.size()));
    }
    return bytes;
}

}  // namespace qm
