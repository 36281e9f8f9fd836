#include "ui/controls/TiffImage.h"

#include <QtEndian>
#include <cstdint>
#include <cstring>
#include <map>

namespace qm {

namespace {

enum Tag : std::uint16_t {
    kWidth = 256,
    kHeight = 257,
    kCompression = 259,
    kPhotometric = 262,
    kStripOffset = 273,
    kSamplesPerPixel = 277,
};

using Directory = std::map<std::uint16_t, std::uint32_t>;

template <typename T>
bool readAt(const QByteArray& file, qsizetype offset, T* value) {
    if (offset < 0 || offset > file.size() - static_cast<qsizetype>(sizeof(T))) return false;
    *value = qFromLittleEndian<T>(file.constData() + offset);
    return true;
}

// Reads the directory at `offset`; answers the next one's offset, 0 after the last, -1 when damaged.
std::int64_t readDirectory(const QByteArray& file, qsizetype offset, Directory* entries) {
    constexpr int kEntryBytes = 12;
    constexpr std::uint16_t kShort = 3;
    std::uint16_t count = 0;
    if (!readAt(file, offset, &count)) return -1;
    for (int i = 0; i < count; ++i) {
        const qsizetype at = offset + 2 + i * kEntryBytes;
        std::uint16_t tag = 0, type = 0, small = 0;
        std::uint32_t value = 0;
        if (!readAt(file, at, &tag) || !readAt(file, at + 2, &type) || !readAt(file, at + 8, &value)) return -1;
        readAt(file, at + 8, &small);
        (*entries)[tag] = type == kShort ? small : value;
    }
    std::uint32_t next = 0;
    return readAt(file, offset + 2 + count * kEntryBytes, &next) ? next : -1;
}

}  // namespace

QImage tiffPage(const QByteArray& file, int page) {
    std::uint32_t first = 0;
    if (!file.startsWith(QByteArray("II\x2A\0", 4)) || !readAt(file, 4, &first)) return {};
    std::int64_t offset = first;
    Directory entries;
    for (int i = 0; i <= page; ++i) {
        if (offset <= 0) return {};
        entries.clear();
        offset = readDirectory(file, offset, &entries);
    }
    if (offset < 0 || entries[kCompression] != 1 || entries[kPhotometric] != 2 || entries[kSamplesPerPixel] != 4)
        return {};
    const qsizetype width = entries[kWidth], height = entries[kHeight], start = entries[kStripOffset];
    constexpr qsizetype kLargest = 4096;
    if (width <= 0 || height <= 0 || width > kLargest || height > kLargest) return {};
    if (start > file.size() || width * height * 4 > file.size() - start) return {};
    QImage image(static_cast<int>(width), static_cast<int>(height), QImage::Format_RGBA8888);
    for (int y = 0; y < image.height(); ++y)
        std::memcpy(image.scanLine(y), file.constData() + start + y * width * 4, static_cast<size_t>(width) * 4);
    return image;
}

}  // namespace qm
