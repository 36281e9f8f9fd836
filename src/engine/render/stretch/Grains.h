// One band of a stretched sound: overlapping grains of the source, each set down at its place in the result with the
// phases turned so that partials go on from grain to grain.
//
// No grain reaches across an attack: its window ends there, and the overlapping windows are normalised by their sum. At
// an attack only partials with new energy restart at their own phase. What lies between partials goes on bin by bin.
// Both channels are turned alike. At speed 1 nothing is turned at all.
#pragma once

#include <array>
#include <complex>
#include <cstdint>
#include <map>
#include <memory>
#include <span>
#include <vector>

#include "engine/render/stretch/AttackMap.h"
#include "engine/render/stretch/RealFft.h"
#include "engine/render/stretch/SourceWindow.h"

namespace qm {

// How places of the result, counted from an origin of its own, belong to the source.
struct Course {
    double origin = 0;         // source position of place 0
    double speed = 1;          // source frames per frame of the result
    std::int64_t first = 0;    // the first place that is wanted
    std::int64_t end = 0;      // source frame behind the last: a hard end
    std::int64_t forced = -1;  // source frame treated as an attack; -1: none

    std::int64_t sourceOf(std::int64_t place) const;
    std::int64_t placeOf(std::int64_t source) const;
};

using Transforms = std::map<int, std::unique_ptr<RealFft>>;

class GrainBand {
public:
    GrainBand(int band, int sampleRate, Transforms& transforms);

    int longest() const { return m_longest; }
    void begin(const Course& course, bool light);

    // Sets down all grains that reach places before `until`. False when the source was interrupted.
    bool advance(std::int64_t until, SourceWindow& source, const AttackMap& attacks);
    // Adds finished places from the first that was not taken yet.
    void take(std::span<float> left, std::span<float> right);

private:
    struct Cut {  // source limits of a window, its edges lying inside
        std::int64_t begin, end;
        bool softEnd;  // an attack follows, under whose soft edge this one fades; nothing follows a hard end
    };
    enum class Kind { GoesOn, Restarts, Begins };  // at an attack: partials with new energy restart, or all do
    struct Look {                                  // what is remembered of a grain
        int size = 0;                              // of the window by which magnitudes and turns were found
        int spectrumSize = 0;                      // of that of the spectra
        std::int64_t place = 0, source = 0;
        double centre = 0;  // of the window's mass, relative to `source`
        float weight = 0;
        int firstBin = 0, lastBin = 0;
        std::array<AlignedVector<std::complex<float>>, 2> spectra;
        std::vector<float> magnitudes;
        std::vector<std::complex<float>> turns;
        std::vector<std::uint8_t> kept;  // bins that belong to the band
    };

    std::int64_t hop() const;
    std::int64_t nextAttack(const AttackMap& attacks) const;
    Cut cutAt(std::int64_t place, std::int64_t at, std::int64_t end, std::int64_t endPlace) const;
    bool step(SourceWindow& source, const AttackMap& attacks);
    bool grain(std::int64_t place, std::int64_t at, const Cut& cut, Kind kind, SourceWindow& source,
               const AttackMap& attacks);
    bool shapeWindow(int size, std::int64_t at, const Cut& cut);
    void transform(const SourceWindow& source, std::int64_t at, int size, Look& look);
    void findPeaks(Look& look);
    void findLimits(int size);
    void turn(Look& look, Kind kind, bool isCut);
    std::complex<float> advanceOf(const Look& look, int bin) const;
    bool moveTogether(const Look& look, int bin, int peak) const;
    float frequencyAt(const Look& look, int bin, double span) const;
    std::complex<float> turnAt(const Look& look, int peak, float frequency, Kind kind) const;
    std::complex<float> turnBetween(const Look& look, int bin) const;
    void setDown(Look& look);

    const int m_band;
    const int m_rate;
    const int m_longest;
    const int m_edge;
    const int m_mostHop;
    std::map<int, const RealFft*> m_transforms;
    std::map<int, AlignedVector<float>> m_windows;

    Course m_course;
    double m_hopScale = 1;  // of a window
    float m_noiseGain = 1;
    int m_leastHalvings = 0;
    std::int64_t m_next = 0;                             // place of the next grain
    std::int64_t m_taken = 0;                            // the next place to be taken
    std::int64_t m_attackSource = 0, m_attackPlace = 0;  // where the present segment begins
    bool m_ended = false;

    AlignedVector<float> m_window, m_sound;
    AlignedVector<std::complex<float>> m_turned;
    float m_weight = 0;
    double m_centre = 0;
    std::int64_t m_windowBegin = 0, m_windowEnd = 0;  // where the window is not zero
    std::array<Look, 2> m_looks;
    Look* m_now = &m_looks[0];
    Look* m_last = &m_looks[1];  // size 0: there is none
    int m_firstBin = 0, m_lastBin = 0;
    struct Bins {
        int first = 0, last = 0;
        bool has(int bin) const { return bin >= first && bin <= last; }
    };
    Bins m_sure, m_possible;  // bins that are the band's own, and that can be
    std::vector<int> m_peaks, m_borders;
    std::array<std::vector<float>, 2> m_ring;
    std::vector<float> m_ringWeight;
};

}  // namespace qm
