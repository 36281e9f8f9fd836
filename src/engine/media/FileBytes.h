// The bytes of one regular file, read by position. Directories, pipes and devices are refused before a byte is read, so
// opening never blocks. Any thread: reads carry their own position. Failure of a read is a short count.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "engine/api/Result.h"

namespace qm {

using ReadCount = std::shared_ptr<std::atomic<std::uint64_t>>;

class FileBytes {
public:
    // `reads` counts what is read, for whoever wants to know whether the file still answers.
    static Result<std::shared_ptr<const FileBytes>> open(const std::string& path, ReadCount reads = {});
    ~FileBytes();
    FileBytes(const FileBytes&) = delete;
    FileBytes& operator=(const FileBytes&) = delete;

    const std::string& path() const { return m_path; }  // that it was opened by; it may be gone
    std::int64_t size() const { return m_size; }        // when it was opened
    std::size_t readAt(std::int64_t position, void* target, std::size_t count) const;

private:
    FileBytes(std::string path, int descriptor, std::int64_t size, ReadCount reads)
        : m_path(std::move(path)), m_descriptor(descriptor), m_size(size), m_reads(std::move(reads)) {}

    std::string m_path;
    int m_descriptor;
    std::int64_t m_size;
    ReadCount m_reads;
};

// A view for walking forward through a file in small steps without a system call for each.
class ByteWindow {
public:
    explicit ByteWindow(const FileBytes& file) : m_file(file) {}

    // The `count` bytes at `position`, or null where the file does not hold them. Valid until the next call.
    const std::uint8_t* at(std::int64_t position, std::size_t count);

    // A copy of the bytes from `position` up to `end`, no more than `most`, or as many as the file holds.
    std::string text(std::int64_t position, std::int64_t end, std::size_t most);

private:
    const FileBytes& m_file;
    std::vector<std::uint8_t> m_block;
    std::int64_t m_start = 0;
};

inline std::uint32_t bigEndian32(const std::uint8_t* p) {
    return std::uint32_t{p[0]} << 24 | std::uint32_t{p[1]} << 16 | std::uint32_t{p[2]} << 8 | p[3];
}

inline std::uint32_t littleEndian32(const std::uint8_t* p) {
    return std::uint32_t{p[3]} << 24 | std::uint32_t{p[2]} << 16 | std::uint32_t{p[1]} << 8 | p[0];
}

inline std::uint16_t bigEndian16(const std::uint8_t* p) {
    return static_cast<std::uint16_t>(p[0] << 8 | p[1]);
}

inline std::uint16_t littleEndian16(const std::uint8_t* p) {
    return static_cast<std::uint16_t>(p[1] << 8 | p[0]);
}

inline std::uint64_t bigEndian64(const std::uint8_t* p) {
    return std::uint64_t{bigEndian32(p)} << 32 | bigEndian32(p + 4);
}

inline std::uint64_t littleEndian64(const std::uint8_t* p) {
    return std::uint64_t{littleEndian32(p + 4)} << 32 | littleEndian32(p);
}

}  // namespace qm
