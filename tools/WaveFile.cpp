#include "WaveFile.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>

namespace qm {

std::optional<std::string> objectionTo(const std::string& output, const std::string& input) {
    struct stat source {
    }, named{}, meant{};
    if (::lstat(output.c_str(), &named) != 0) return std::nullopt;
    const bool isSource = ::stat(input.c_str(), &source) == 0 && ::stat(output.c_str(), &meant) == 0 &&
                          source.st_dev == meant.st_dev && source.st_ino == meant.st_ino;
    if (isSource) return output + ": is the track itself, which is not replaced";
    if (S_ISLNK(named.st_mode)) return output + ": is a link, which is not replaced";
    if (!S_ISREG(named.st_mode)) return output + ": not a regular file, which is all that is replaced";
    return std::nullopt;
}

WaveFile::WaveFile(const std::string& path, int sampleRate, std::int64_t frames) {
    auto target = TargetFile::create(path);
    if (!target) return;
    m_target = std::move(target.value());
    m_file = ::fdopen(::dup(m_target->descriptor()), "wb");
    if (m_file != nullptr) writeHeader(sampleRate, frames);
}

void WaveFile::writeHeader(int sampleRate, std::int64_t frames) {
    const auto dataBytes = static_cast<std::uint32_t>(std::min<std::int64_t>(frames * 8, 0xFFFFFFFFll - 64));
    std::string header;
    const auto put = [&](std::uint64_t value, int bytes) {
        for (int i = 0; i < bytes; ++i) header.push_back(static_cast<char>(value >> (8 * i)));
    };
    header += "RIFF";
    put(dataBytes + 48ull, 4);
    header += "WAVEfmt ";
    put(16, 4);
    put(3, 2);
    put(2, 2);
    put(static_cast<std::uint64_t>(sampleRate), 4);
    put(static_cast<std::uint64_t>(sampleRate) * 8, 4);
    put(8, 2);
    put(32, 2);
    header += "fact";
    put(4, 4);
    put(static_cast<std::uint64_t>(frames), 4);
    header += "data";
    put(dataBytes, 4);
    std::fwrite(header.data(), 1, header.size(), m_file);
}

}  // namespace qm
