// The unrolled sequence of source frames to be played: the playhead's steps with their sound, readable a little behind
// and ahead of what is heard. The loop lives here: whoever reads sees one endless stream and never a seam of its own.
// Render thread only.
//
// Where a loop wraps and the sound would jump, the last few milliseconds of the pass cross-fade, at equal power, into
// what leads up to the place the wrap goes to. The period stays what the marks say, and the first frame after the wrap
// is whole. A seam that is continuous already is left alone.
//
// Bass and treble are set here, before any stretching.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "engine/sound/PcmCache.h"
#include "engine/sound/Playhead.h"
#include "engine/sound/Tone.h"

namespace qm {

class Timeline {
public:
    explicit Timeline(PcmCache& cache);

    void begin(const Playhead& playhead, bool seamFade, const ToneSettings& tone);
    const Playhead& playhead() const { return m_playhead; }
    int sampleRate() const { return m_cache.sampleRate(); }

    // Sound of steps [step, step + out.size()); silence outside the track. False when the cache was interrupted.
    bool read(std::int64_t step, std::span<StereoFrame> out);

    // The same without the cross-fade at the seams of a loop, for whoever makes one of its own if there is to be any.
    bool readUnfaded(std::int64_t step, std::span<StereoFrame> out);
    bool fadesSeams() const { return m_seamFade; }

    // Frames of the track as they are, without tone. False when the cache was interrupted.
    bool readTrack(std::int64_t frame, std::span<StereoFrame> out) { return m_cache.read(frame, out); }
    // True when that would not wait for the decoder.
    bool hasTrack(std::int64_t frame, std::int64_t count) const { return m_cache.has(frame, count); }

private:
    bool readPlain(std::int64_t step, std::span<StereoFrame> out, PcmCache::Part part);
    bool readWithTone(std::int64_t step, std::span<StereoFrame> out);
    bool settleTone(std::int64_t step);
    bool readRun(std::int64_t step, std::span<StereoFrame> out, PcmCache::Part part);
    bool readBackward(std::int64_t lastFrame, std::span<StereoFrame> out, PcmCache::Part part);
    bool fadeSeam(std::int64_t step, std::span<StereoFrame> out, PcmCache::Part part);
    std::optional<bool> seamJumps();

    PcmCache& m_cache;
    Playhead m_playhead;
    bool m_seamFade = true;
    std::int64_t m_fadeLength = 0;    // frames
    std::optional<bool> m_seamJumps;  // found out when the first seam comes near
    std::vector<StereoFrame> m_leadIn;
    Tone m_tone;
    std::optional<std::int64_t> m_toneStep;  // the step that the tone filters expect next
    std::vector<StereoFrame> m_settling;
    std::vector<StereoFrame> m_otherTracks;
};

}  // namespace qm
