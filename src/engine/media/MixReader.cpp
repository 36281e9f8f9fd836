#include "engine/media/MixReader.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace qm {

MixReader::MixReader(std::vector<std::unique_ptr<TrackReader>> tracks) {
    const int rate = tracks.front()->track().sampleRate;
    const double start = tracks.front()->track().startSeconds;
    for (auto& reader : tracks) {
        Voice voice;
        const SoundTrack& track = reader->track();
        voice.offset = std::llround(std::clamp(track.startSeconds - start, -1e6, 1e6) * rate);
        std::int64_t length = reader->length();
        if (track.sampleRate != rate) {
            voice.resampler.emplace(track.sampleRate, rate);
            length = voice.resampler->outputLength(length);
        }
        m_length = std::max(m_length, length + voice.offset);
        voice.reader = std::move(reader);
        m_tracks.push_back(std::move(voice));
    }
}

// Pictures that claim to last longer than the frames of the sound can be counted are not believed.
void MixReader::lengthen(double seconds) {
    const double frames = seconds * sampleRate();
    if (frames <= std::numeric_limits<std::int32_t>::max()) {
        m_length = std::max<std::int64_t>(m_length, std::llround(frames));
    }
}

bool MixReader::read(std::int64_t first, float* stereo, std::size_t count) {
    const bool readable = m_tracks.front().reader->read(first, stereo, static_cast<std::int64_t>(count));
    return addOthers(first, stereo, count) && readable;
}

bool MixReader::readParts(std::int64_t first, float* firstTrack, float* others, std::size_t count) {
    std::fill_n(others, 2 * count, 0.0f);
    const bool readable = m_tracks.front().reader->read(first, firstTrack, static_cast<std::int64_t>(count));
    return addOthers(first, others, count) && readable;
}

bool MixReader::addOthers(std::int64_t first, float* stereo, std::size_t count) {
    bool readable = true;
    for (std::size_t i = 1; i < m_tracks.size(); ++i) {
        readable = add(m_tracks[i], first, stereo, static_cast<std::int64_t>(count)) && readable;
    }
    return readable;
}

bool MixReader::add(Voice& voice, std::int64_t first, float* stereo, std::int64_t count) {
    const std::int64_t skipped = std::clamp<std::int64_t>(voice.offset - first, 0, count);
    const std::int64_t from = first + skipped - voice.offset;
    const std::int64_t frames = count - skipped;
    if (frames <= 0) {
        return true;
    }
    float* target = stereo + 2 * skipped;
    const Resampler::Need need = voice.resampler ? voice.resampler->need(from, frames) : Resampler::Need{from, frames};
    m_scratch.resize(static_cast<std::size_t>(2 * need.count));
    const bool readable = voice.reader->read(need.first, m_scratch.data(), need.count);
    if (voice.resampler) {
        voice.resampler->add(from, frames, m_scratch.data(), target);
    } else {
        std::transform(m_scratch.begin(), m_scratch.end(), target, target, std::plus<>());
    }
    return readable;
}

}  // namespace qm
