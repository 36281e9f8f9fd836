// Time stretch that knows the track: attacks are found ahead of play, and no window reaches across one.
//
// Every pass of a loop begins anew at its start, so that passes at the same settings are the same samples; it takes
// over from the one before in a short cross-fade. Backward play is the forward rendition, turned around piece by piece.
// The pitch is moved by stretching further and reading the result at another rate.
#pragma once

#include <cstdint>
#include <vector>

#include "engine/render/stretch/AttackMap.h"
#include "engine/render/stretch/Resampler.h"
#include "engine/render/stretch/TimeStretch.h"
#include "engine/render/stretch/Vocoder.h"

namespace qm {

class ForesightStretch : public TimeStretch {
public:
    explicit ForesightStretch(int sampleRate);

    void setLight(bool light) override { m_light = light; }
    bool restart(Timeline& timeline, std::int64_t step, double speed, double pitchFactor) override;
    bool render(Timeline& timeline, std::span<StereoFrame> out) override;
    void lookAhead(Timeline& timeline, std::int64_t step) override;

    AttackMap& attackMap() { return m_attacks; }

private:
    void beginRun(Timeline& timeline, std::int64_t run);
    std::int64_t runEnd(std::int64_t run) const;
    std::int64_t takeOverFrames() const;
    bool takeOver(Timeline& timeline);
    bool renderRun(Timeline& timeline, std::span<StereoFrame> out);
    bool nextPlaces(Timeline& timeline, std::span<StereoFrame> out);
    bool nextPiece(Timeline& timeline);
    void beginComing(Timeline& timeline);
    bool makeComing(std::size_t until);

    const int m_rate;
    AttackMap m_attacks;
    Vocoder m_vocoder;
    Resampler m_resampler;
    bool m_light = false;
    bool m_fadesSeams = true;

    Playhead m_playhead;
    std::int64_t m_step = 0;  // of output frame 0
    double m_speed = 1, m_pitch = 1;
    std::int64_t m_frame = 0;     // the next output frame
    std::int64_t m_run = 0;       // runs that wrapped before this one
    std::int64_t m_runFrame = 0;  // the next frame of the run, counted from there
    Course m_course;
    std::int64_t m_sourceBegin = 0;

    std::vector<StereoFrame> m_tail;  // of the run that ends, where the next one takes over
    std::size_t m_tailUsed = 0, m_tailSize = 0;
    std::vector<StereoFrame> m_lead;

    std::vector<StereoFrame> m_places;  // of the run, for the resampler
    std::int64_t m_firstPlace = 0;
    std::size_t m_placeCount = 0;

    // Backward: the piece that is being played, turned around.
    std::vector<StereoFrame> m_piece;
    std::size_t m_pieceUsed = 0, m_pieceSize = 0;
    std::vector<StereoFrame> m_coming;  // the one after it, not yet turned around
    std::size_t m_comingMade = 0;
    std::vector<StereoFrame> m_overlap;  // what the piece before would have played on
    std::int64_t m_pieceEnd = 0;         // places played when the coming piece ends
    std::int64_t m_nextLength = 0;       // source frames
};

}  // namespace qm
