// The sound of a whole file: all its sound tracks, summed. The first defines the sample rate. After them there may be
// silence, for as long as the film goes on.
#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "engine/media/Resampler.h"
#include "engine/media/SoundReader.h"
#include "engine/media/TrackReader.h"

namespace qm {

class MixReader : public SoundReader {
public:
    explicit MixReader(std::vector<std::unique_ptr<TrackReader>> tracks);  // at least one

    void lengthen(double seconds);  // to last so long at least

    int sampleRate() const override { return m_tracks.front().reader->track().sampleRate; }
    std::int64_t length() const override { return m_length; }
    int channels() const override { return m_tracks.front().reader->track().channels; }
    bool read(std::int64_t first, float* stereo, std::size_t count) override;
    bool hasOtherTracks() const override { return m_tracks.size() > 1; }
    bool readParts(std::int64_t first, float* firstTrack, float* others, std::size_t count) override;

    // The time that the container gives to frame 0.
    double startSeconds() const { return m_tracks.front().reader->track().startSeconds; }

private:
    struct Voice {
        std::unique_ptr<TrackReader> reader;
        std::int64_t offset = 0;  // frames of the mix before the track begins; negative: it began before
        std::optional<Resampler> resampler;
    };

    bool addOthers(std::int64_t first, float* stereo, std::size_t count);
    bool add(Voice& voice, std::int64_t first, float* stereo, std::int64_t count);

    std::vector<Voice> m_tracks;
    std::int64_t m_length = 0;
    std::vector<float> m_scratch;
};

}  // namespace qm
