// One place in a film from which pictures are read on, each known with the time it is shown once the next one is there.
// One thread.
#pragma once

#include <memory>
#include <optional>

#include "engine/video/PictureCache.h"

namespace qm {

class PictureCursor {
public:
    explicit PictureCursor(std::unique_ptr<VideoReader> reader) : m_reader(std::move(reader)) {}

    void seek(double seconds);

    // Reads a little; a picture that is known to its end is stored in `finished`. False at the end of the film.
    bool read(double wantedFrom, std::int64_t mostPixels, std::optional<PictureCache::Shown>& finished);

    // True if the picture shown at `seconds` is better reached by a seek than by reading on.
    bool needsSeek(double seconds) const;

    // Where the picture read last begins; none at the end of the film and just after a seek.
    std::optional<double> position() const;

    const RawPicture* pending() const { return m_pending ? &*m_pending : nullptr; }

    // Nothing can be read wherever it seeks.
    bool isDead() const { return m_fruitless >= kMostFruitless; }

    VideoReader& reader() { return *m_reader; }

private:
    static constexpr int kMostFruitless = 3;

    void countFruitless();

    const std::unique_ptr<VideoReader> m_reader;
    std::optional<RawPicture> m_pending;  // read last; it ends where the next one begins
    double m_pendingBegin = 0;
    double m_soughtTo = 0;
    bool m_justSought = false;
    int m_fruitless = 0;  // seeks in a row after which there was no picture
};

}  // namespace qm
