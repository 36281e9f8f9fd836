#include "engine/video/PictureCursor.h"

#include <string>

#include "engine/api/Log.h"

namespace qm {

namespace {

constexpr double kForever = std::numeric_limits<double>::infinity();
constexpr double kSameTarget = 0.5;  // seconds

}  // namespace

void PictureCursor::seek(double seconds) {
    m_pending.reset();
    m_soughtTo = seconds;
    m_justSought = m_reader->seek(seconds);
    if (!m_justSought) {
        countFruitless();
    }
}

void PictureCursor::countFruitless() {
    if (++m_fruitless == kMostFruitless) {
        qmLog("no picture of the film can be decoded from " + std::to_string(m_soughtTo) + " s on");
    }
}

bool PictureCursor::read(double wantedFrom, std::int64_t mostPixels, std::optional<PictureCache::Shown>& finished) {
    RawPicture picture;
    const VideoReader::Outcome outcome = m_reader->next(picture, wantedFrom, mostPixels);
    if (outcome == VideoReader::Outcome::Working) {
        return true;
    }
    const bool ended = outcome == VideoReader::Outcome::End;
    if (m_pending) {
        finished = PictureCache::Shown{std::move(*m_pending), m_pendingBegin, ended ? kForever : picture.seconds};
        m_pending.reset();
    }
    if (!ended) {
        // Before the first picture of a film nothing else is shown.
        const bool isFirst = m_justSought && picture.seconds > m_soughtTo;
        m_pendingBegin = isFirst ? -kForever : picture.seconds;
        m_pending = std::move(picture);
        m_fruitless = 0;
    } else if (m_justSought) {
        countFruitless();
    }
    m_justSought = false;
    return !ended;
}

bool PictureCursor::needsSeek(double seconds) const {
    if (m_justSought) {
        return m_soughtTo > seconds;
    }
    if (!m_pending || m_pendingBegin > seconds) {
        return true;
    }
    // A seek that fell short of what was hoped for would do so again.
    return seconds > m_soughtTo + kSameTarget && m_reader->gainsBySeeking(m_pending->seconds, seconds);
}

std::optional<double> PictureCursor::position() const {
    return m_pending ? std::optional(m_pendingBegin) : std::nullopt;
}

}  // namespace qm
