#include <algorithm>
#include <vector>

#include "engine/media/FileBytes.h"
#include "engine/media/FlacFrame.h"
#include "engine/media/Id3Header.h"
#include "engine/media/TrackPlan.h"

namespace qm {

namespace {

struct FlacFile {
    std::shared_ptr<const FileBytes> file;
    FlacStreamInfo info;
    std::int64_t begin = 0;  // of the first frame, bytes
    std::int64_t end = 0;    // where no frame is any more
};

struct FlacPlace {
    std::int64_t position = 0;  // bytes
    FlacFrameHeader header;
};

// Finds frames in the file. Frames say neither where they end nor how long they are, so a header is looked for, and a
// frame is whole where the bytes between two headers have the right checksum.
class FlacFinder {
public:
    explicit FlacFinder(FlacFile flac) : m_flac(std::move(flac)) {}

    const FlacFile& flac() const { return m_flac; }

    // The first header in [from, to) whose number is at least `lowest`.
    std::optional<FlacPlace> headerWithin(std::int64_t from, std::int64_t to, std::int64_t lowest) {
        for (to = std::min(to, m_flac.end); from < to; from += kStep) {
            const std::int64_t last = std::min(from + kStep, to);
            if (!load(from, last + static_cast<std::int64_t>(FlacFrameHeader::kMostBytes))) return std::nullopt;
            for (std::int64_t at = from; at < last; ++at) {
                const std::uint8_t* found = bytes(at);
                if (found[0] != 0xff) continue;
                const auto header = FlacFrameHeader::parse(found, available(at), m_flac.info);
                if (header && header->number >= lowest) return FlacPlace{at, *header};
            }
        }
        return std::nullopt;
    }

    // Where the frame after this one begins: behind a whole frame, or, where this one is damaged, at the next header
    // with a higher number; the end of the file after the last.
    FlacPlace after(const FlacPlace& place) {
        const std::int64_t most = place.position + m_flac.info.mostBytes();
        std::optional<FlacPlace> firstHigher;
        std::int64_t from = place.position + 1;
        while (const auto next = headerWithin(from, std::min(most, m_flac.end), place.header.number + 1)) {
            if (isWhole(place.position, next->position)) return *next;
            if (!firstHigher) firstHigher = next;
            from = next->position + 1;
        }
        if (!firstHigher) firstHigher = headerWithin(most, m_flac.end, place.header.number + 1);
        return firstHigher ? *firstHigher : FlacPlace{m_flac.end, {}};
    }

private:
    static constexpr std::int64_t kStep = 1 << 16;

    // Makes the bytes [from, to) that the file holds readable.
    bool load(std::int64_t from, std::int64_t to) {
        m_start = from;
        m_bytes.resize(static_cast<std::size_t>(to - from));
        m_bytes.resize(m_flac.file->readAt(from, m_bytes.data(), m_bytes.size()));
        const auto wanted = static_cast<std::size_t>(std::min(to, m_flac.end) - from);
        return m_bytes.size() >= wanted;
    }
    const std::uint8_t* bytes(std::int64_t position) const { return m_bytes.data() + (position - m_start); }
    std::size_t available(std::int64_t position) const {
        return m_bytes.size() - static_cast<std::size_t>(position - m_start);
    }

    bool isWhole(std::int64_t from, std::int64_t to) {
        m_frame.resize(static_cast<std::size_t>(to - from));
        return m_flac.file->readAt(from, m_frame.data(), m_frame.size()) == m_frame.size() &&
               isWholeFlacFrame(m_frame.data(), m_frame.size());
    }

    FlacFile m_flac;
    std::vector<std::uint8_t> m_bytes;
    std::int64_t m_start = 0;
    std::vector<std::uint8_t> m_frame;
};

// Frames of equal length, found by their numbers when they are wanted: so a file of any length opens at once.
class FlacPacketSource final : public PacketSource {
public:
    explicit FlacPacketSource(FlacFile flac) : m_finder(std::move(flac)) {}

    std::int64_t seek(const PacketIndex& index, std::int64_t packet) override {
        const FlacFile& flac = m_finder.flac();
        FlacPlace below{flac.begin, {}};
        std::int64_t above = flac.end;
        std::int64_t aboveNumber = index.packets();
        for (bool halving = false; above - below.position > kNear && below.header.number < packet; halving = !halving) {
            const std::int64_t bytes = above - below.position;
            const std::int64_t numbers = aboveNumber - below.header.number;
            const std::int64_t ahead = bytes / numbers * (packet - below.header.number) - kNear / 4;
            const std::int64_t guess = below.position + (halving ? bytes / 2 : std::clamp(ahead, bytes / 8, bytes));
            const auto found = m_finder.headerWithin(guess, above, below.header.number);
            if (found && found->header.number <= packet) {
                below = *found;
            } else {
                above = guess;
                if (found) aboveNumber = std::max(found->header.number, packet + 1);
            }
        }
        const auto reached = m_finder.headerWithin(below.position, flac.end, packet);
        m_place = reached ? *reached : FlacPlace{flac.end, {}};
        return m_next = packet;
    }

    Outcome next(const PacketIndex& index, AVPacket& packet) override {
        if (m_next >= index.packets()) return Outcome::End;
        const FlacFile& flac = m_finder.flac();
        av_packet_unref(&packet);
        const bool isThere = m_place.position < flac.end && m_place.header.number == m_next;
        const FlacPlace after = isThere ? m_finder.after(m_place) : m_place;
        ++m_next;
        // A frame that is missing is one that cannot be decoded.
        const std::int64_t bytes = isThere ? std::min(after.position - m_place.position, kMostBytes) : 1;
        if (av_new_packet(&packet, static_cast<int>(bytes)) < 0) return Outcome::Unreadable;
        packet.data[0] = 0;
        const auto count = static_cast<std::size_t>(bytes);
        if (isThere && flac.file->readAt(m_place.position, packet.data, count) != count) return Outcome::Unreadable;
        packet.pos = m_place.position;
        packet.flags = AV_PKT_FLAG_KEY;
        m_place = after;
        return Outcome::Packet;
    }

    std::unique_ptr<PacketSource> forAnotherReader() const override {
        return std::make_unique<FlacPacketSource>(m_finder.flac());
    }

private:
    static constexpr std::int64_t kNear = 1 << 17;  // bytes that are looked through rather than halved
    static constexpr std::int64_t kMostBytes = 16 << 20;

    FlacFinder m_finder;
    FlacPlace m_place;
    std::int64_t m_next = 0;
};

// Behind the blocks of metadata in front.
std::optional<FlacFile> openFlac(std::shared_ptr<const FileBytes> file) {
    ByteWindow bytes(*file);
    std::int64_t position = 0;
    if (const std::uint8_t* head = bytes.at(0, Id3Header::kBytes)) {
        if (const auto tag = readId3Header(head)) position = tag->tagBytes;
    }
    const std::uint8_t* mark = bytes.at(position, 8 + FlacStreamInfo::kBytes);
    if (!mark || bigEndian32(mark) != 0x664c6143 || (mark[4] & 0x7f) != 0) return std::nullopt;
    const auto info = FlacStreamInfo::parse(mark + 8);
    if (!info) return std::nullopt;
    position += 4;
    for (bool isLast = false; !isLast;) {
        const std::uint8_t* head = bytes.at(position, 4);
        if (!head) return std::nullopt;
        isLast = (head[0] & 0x80) != 0;
        position += 4 + (bigEndian32(head) & 0xffffff);
    }
    const std::int64_t end = file->size();
    return FlacFile{std::move(file), *info, position, end};
}

// All frames of equal length, as the stream says, and the last one where it should be.
bool isRegular(const FlacFile& flac, std::int64_t packets) {
    FlacFinder finder(flac);
    const auto first = finder.headerWithin(flac.begin, flac.begin + 1, 0);
    if (!first || first->header.countsFrames || first->header.number != 0) return false;
    constexpr std::int64_t kTagsBehind = 1 << 20;
    const std::int64_t from = std::max(flac.end - flac.info.mostBytes() - kTagsBehind, flac.begin);
    const auto last = finder.headerWithin(from, flac.end, packets - 1);
    return last && last->header.number == packets - 1;
}

// Every frame looked for, one after the other. Where frames are missing there is silence.
void findFrames(SoundTrack& track, const FlacFile& flac) {
    FlacFinder finder(flac);
    constexpr std::int64_t kLongestGap = 1 << 28;  // frames
    auto place = finder.headerWithin(flac.begin, flac.end, 0);
    const int usualBlock = place ? place->header.blockSize : 0;
    while (place && place->position < flac.end) {
        const FlacFrameHeader& header = place->header;
        const std::int64_t start = header.countsFrames ? header.number : header.number * usualBlock;
        const std::int64_t gap = start - track.index.frames();
        if (gap > 0 && track.index.frames() > 0 && gap < kLongestGap) {
            track.index.append(place->position, 1, static_cast<std::int32_t>(gap));
        }
        const FlacPlace after = finder.after(*place);
        track.index.append(place->position, static_cast<std::uint32_t>(after.position - place->position),
                           header.blockSize);
        place = after;
    }
}

}  // namespace

std::optional<SoundTrack> planFlac(std::shared_ptr<const FileBytes> file, const AVStream& stream,
                                   const StreamStart& start) {
    const auto flac = openFlac(file);
    if (!flac || flac->info.sampleRate != start.sampleRate) return std::nullopt;
    SoundTrack track = beginTrack(stream, start);
    const int block = flac->info.largestBlock;
    const std::int64_t packets = (flac->info.frames + block - 1) / block;
    if (packets > 0 && flac->info.smallestBlock == block && isRegular(*flac, packets)) {
        for (std::int64_t i = 1; i < packets; ++i) track.index.append(PacketIndex::kNoPosition, 0, block);
        track.index.append(PacketIndex::kNoPosition, 0,
                           static_cast<std::int32_t>(flac->info.frames - (packets - 1) * block));
        track.source = std::make_unique<FlacPacketSource>(*flac);
    } else {
        findFrames(track, *flac);
        track.source = std::make_unique<FilePacketSource>(std::move(file));
    }
    if (track.index.packets() == 0) return std::nullopt;
    track.kept = KeptRanges(track.index.frames());
    if (flac->info.frames > 0) track.kept.truncate(flac->info.frames);
    return track;
}

}  // namespace qm
