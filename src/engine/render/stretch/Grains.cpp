#include "engine/render/stretch/Grains.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace qm {

namespace {

constexpr double kPi = std::numbers::pi;
constexpr int kMostHop = 1024;       // at 44.1 kHz; nearer grains than a quarter of the window empty noise
constexpr double kLightHop = 1.5;    // times that
constexpr int kMainLobe = 4;         // bins on either side of a peak
constexpr float kTogether = 0.955f;  // cosine of 0.3 radians
constexpr double kPeakSpan = 1.5;    // bins by which a frequency may lie beside its peak
constexpr double kNoiseSpan = 4;     // the same of noise
constexpr double kEdge = 400;        // frames over which a window fades towards an attack
constexpr std::int64_t kSlide = 4;   // frames that the edge moves for each by which an attack would come late
constexpr std::int64_t kEarly = 20;  // an attack is taken to begin a little before its steepest place
constexpr std::int64_t kGuard = 24;  // frames before an attack that no grain of the past touches
constexpr std::int64_t kNear = 300;  // attacks this near to a limit are none
constexpr double kSlow = 0.6;  // speeds above it go without the longest windows: attacks and spectra are nearer then
constexpr float kNewEnergy = 1.2f;    // magnitudes this much higher are a partial's restart
constexpr float kNearlyWhole = 0.9f;  // of the sum of a window
constexpr float kLeastWeight = 1e-4f;
constexpr std::int64_t kFar = std::numeric_limits<std::int64_t>::max() / 4;

int floorMod(std::int64_t a, std::size_t size) {
    return static_cast<int>(static_cast<std::uint64_t>(a) & (size - 1));
}

// By how much noise is raised: the further the speed is from 1, the less grains agree on it where they overlap.
float noiseGain(double speed) {
    const double far = speed < 1 ? 4 * (1 - speed) : 2 * (speed - 1.1);
    return static_cast<float>(1 + 0.4 * std::clamp(far, 0.0, 1.0));
}

float fade(double x) {
    return static_cast<float>(std::sin(0.5 * kPi * std::clamp(x, 0.0, 1.0)));
}

}  // namespace

std::int64_t Course::sourceOf(std::int64_t place) const {
    return std::llround(origin + static_cast<double>(place) * speed);
}

std::int64_t Course::placeOf(std::int64_t source) const {
    return std::llround((static_cast<double>(source) - origin) / speed);
}

GrainBand::GrainBand(int band, int sampleRate, Transforms& transforms)
    : m_band(band),
      m_rate(sampleRate),
      m_longest(AttackMap::longestWindow(band, sampleRate)),
      m_edge(static_cast<int>(kEdge * static_cast<double>(sampleRate) / 44100)),
      m_mostHop(kMostHop * AttackMap::windowFactor(sampleRate)) {
    for (int h = 0; h < AttackMap::kWindows[static_cast<std::size_t>(band)]; ++h) {
        const int size = m_longest >> h;
        auto& transform = transforms[size];
        if (!transform) transform = std::make_unique<RealFft>(size);
        m_transforms[size] = transform.get();
        auto& window = m_windows[size];
        window.resize(static_cast<std::size_t>(size));
        for (int i = 0; i < size; ++i)
            window[static_cast<std::size_t>(i)] = static_cast<float>(std::sin(kPi * (i + 0.5) / size));
    }
    const auto longest = static_cast<std::size_t>(m_longest);
    m_window.resize(longest);
    m_sound.resize(longest);
    m_turned.resize(longest / 2 + 1);
    for (Look& look : m_looks) {
        for (auto& spectrum : look.spectra) spectrum.resize(longest / 2 + 1);
        look.magnitudes.resize(longest / 2 + 1);
        look.turns.resize(longest / 2 + 1);
        look.kept.resize(longest / 2 + 1);
    }
    m_peaks.reserve(longest);
    m_borders.reserve(longest);
    std::size_t ring = 1;
    while (ring < 2 * longest + 8192) ring *= 2;
    for (auto& channel : m_ring) channel.resize(ring);
    m_ringWeight.resize(ring);
}

void GrainBand::begin(const Course& course, bool light) {
    m_course = course;
    m_hopScale = (light ? kLightHop : 1) / std::max(1.0, course.speed);
    m_noiseGain = noiseGain(course.speed);
    m_next = course.first - m_longest / 2;
    m_attackPlace = m_next;
    m_attackSource = -kFar;
    m_leastHalvings = m_band < 2 && course.speed > kSlow ? 1 : 0;
    m_ended = false;
    m_last->size = 0;
    for (auto& channel : m_ring) std::fill(channel.begin(), channel.end(), 0.0f);
    std::fill(m_ringWeight.begin(), m_ringWeight.end(), 0.0f);
    m_taken = course.first;
}

bool GrainBand::advance(std::int64_t until, SourceWindow& source, const AttackMap& attacks) {
    while (!m_ended && m_next - m_longest / 2 < until)
        if (!step(source, attacks)) return false;
    return true;
}

void GrainBand::take(std::span<float> left, std::span<float> right) {
    for (std::size_t i = 0; i < left.size(); ++i, ++m_taken) {
        const auto at = static_cast<std::size_t>(floorMod(m_taken, m_ringWeight.size()));
        const float scale = 1 / std::max(m_ringWeight[at], kLeastWeight);
        left[i] += m_ring[0][at] * scale;
        right[i] += m_ring[1][at] * scale;
        m_ring[0][at] = m_ring[1][at] = m_ringWeight[at] = 0;
    }
}

// The place in the source where the present segment ends, as far as it can be seen; kFar otherwise.
std::int64_t GrainBand::nextAttack(const AttackMap& attacks) const {
    const std::int64_t here = m_course.sourceOf(m_next);
    const std::int64_t sight = here + 2 * m_longest;
    const std::int64_t from =
        std::max(m_attackSource > -kFar ? m_attackSource + 2 * kNear : here - m_longest, here - m_longest);
    std::int64_t at = kFar;
    const Attack found = attacks.next(from + kEarly, sight, Confidence::Medium);
    if (found.frame < sight) at = found.frame - kEarly;
    const std::int64_t forced = m_course.forced;
    if (forced >= 0 && m_attackSource < forced && at > forced - kNear) at = forced;
    if (at > m_course.end - kNear) at = kFar;
    return at;
}

// A window of the segment that began at an attack. The first grain sets the attack down at its place, and what was
// before it fades in under a soft edge. Slowed down, every later grain would set it down once more, ever later; sped
// up, ever earlier: so there the edge moves into the new sound.
GrainBand::Cut GrainBand::cutAt(std::int64_t place, std::int64_t at, std::int64_t end, std::int64_t endPlace) const {
    // The limits in the result, where a higher speed makes them nearer.
    Cut cut{-kFar, std::min(end, at + (endPlace - place)), end != m_course.end};
    if (m_attackSource == -kFar) return cut;
    const std::int64_t late = (place - m_attackPlace) - (at - m_attackSource);
    cut.begin = m_attackSource + std::max<std::int64_t>(-late, 0);
    cut.begin += late < 0 ? m_edge : std::min<std::int64_t>(kSlide * late, m_edge);
    return cut;
}

std::int64_t GrainBand::hop() const {
    const int size = m_last->size != 0 ? m_last->size : m_longest;
    return std::max<std::int64_t>(std::llround(std::min(size / 4, m_mostHop) * m_hopScale), 16);
}

// The next grain, or the two that meet at an attack.
bool GrainBand::step(SourceWindow& source, const AttackMap& attacks) {
    std::int64_t attack = nextAttack(attacks);
    // Attacks that lie before the first grain are past.
    if (attack < kFar && m_course.placeOf(attack) < m_next && m_last->size == 0) {
        m_attackSource = attack;
        m_attackPlace = m_course.placeOf(attack);
        return true;
    }
    const bool hasAttack = attack < kFar;
    const std::int64_t end = hasAttack ? attack - kGuard : m_course.end;
    const std::int64_t endPlace = hasAttack ? m_course.placeOf(attack) : m_course.placeOf(m_course.end);
    const bool meets = m_next >= endPlace;
    const std::int64_t place = meets ? endPlace : m_next;
    const std::int64_t at = meets ? (hasAttack ? attack : m_course.end) : m_course.sourceOf(place);
    const Cut cut = cutAt(place, at, end, endPlace);
    if (!grain(place, at, cut, Kind::GoesOn, source, attacks)) return false;
    m_next = place + hop();
    if (!meets) return true;
    if (!hasAttack) return m_ended = true;
    m_attackSource = attack;
    m_attackPlace = endPlace;
    m_next = endPlace;
    const std::int64_t following = nextAttack(attacks);
    const std::int64_t limit = following < kFar ? following - kGuard : m_course.end;
    const std::int64_t limitPlace = m_course.placeOf(following < kFar ? following : m_course.end);
    const Cut after{attack, std::min(limit, attack + limitPlace - endPlace), following < kFar};
    const Kind kind = attack == m_course.forced ? Kind::Begins : Kind::Restarts;
    if (!grain(endPlace, attack, after, kind, source, attacks)) return false;
    m_next = endPlace + hop();
    return true;
}

// False only when the source was interrupted.
bool GrainBand::grain(std::int64_t place, std::int64_t at, const Cut& cut, Kind kind, SourceWindow& source,
                      const AttackMap& attacks) {
    const int size = m_longest >> std::max(attacks.halvings(m_band, at), m_leastHalvings);
    if (!shapeWindow(size, at, cut)) return true;
    const bool resized = m_last->size != 0 && m_last->size != size;
    const std::int64_t earliest = resized ? std::min(at, m_last->source) : at;
    if (!source.ensure(earliest - m_longest / 2, at + m_longest / 2)) return false;
    if (resized) {  // the place of the last grain again, seen through this window
        transform(source, m_last->source, size, *m_last);
        m_last->centre = m_centre;
    }
    m_now->size = size;
    m_now->place = place;
    m_now->source = at;
    m_now->centre = m_centre;
    m_now->weight = m_weight;
    transform(source, at, size, *m_now);
    findPeaks(*m_now);
    const bool breaksOff = !cut.softEnd && m_windowEnd < size;
    const bool isCut = breaksOff || m_weight < kNearlyWhole * 2 / std::numbers::pi_v<float> * static_cast<float>(size);
    turn(*m_now, kind, isCut);
    setDown(*m_now);
    std::swap(m_now, m_last);
    return true;
}

// The window of a grain, cut to its limits with soft edges that lie on the far side of an attack before it and on the
// near side of one after it. False when nothing is left.
bool GrainBand::shapeWindow(int size, std::int64_t at, const Cut& cut) {
    const std::int64_t begin = at - size / 2;
    const std::int64_t from = std::clamp<std::int64_t>(cut.begin - m_edge - begin, 0, size);
    const std::int64_t to = std::clamp<std::int64_t>(cut.end - begin, 0, size);
    if (to - from < 64) return false;
    const auto& full = m_windows[size];
    m_windowBegin = from;
    m_windowEnd = to;
    std::fill_n(m_window.begin(), from, 0.0f);
    std::fill(m_window.begin() + to, m_window.begin() + size, 0.0f);
    std::copy(full.begin() + from, full.begin() + to, m_window.begin() + from);
    for (std::int64_t i = from; i < std::min(to, cut.begin - begin); ++i)
        m_window[static_cast<std::size_t>(i)] *= fade(static_cast<double>(begin + i - cut.begin + m_edge) / m_edge);
    for (std::int64_t i = std::max(from, cut.end - (cut.softEnd ? m_edge : 0) - begin); i < to; ++i)
        m_window[static_cast<std::size_t>(i)] *= fade(static_cast<double>(cut.end - begin - i) / m_edge);
    const std::int64_t middle = size / 2;
    double mass = 0, moment = 0;
    for (std::int64_t i = from; i < to; ++i) {
        const double w = m_window[static_cast<std::size_t>(i)];
        mass += w;
        moment += w * static_cast<double>(i - middle);
    }
    m_weight = static_cast<float>(mass);
    m_centre = mass > 0 ? moment / mass : 0;
    return mass > 0;
}

void GrainBand::transform(const SourceWindow& source, std::int64_t at, int size, Look& look) {
    look.spectrumSize = size;
    for (int channel = 0; channel < 2; ++channel) {
        const float* sound = source.channel(channel, at - size / 2);
        for (int i = 0; i < size; ++i)
            m_sound[static_cast<std::size_t>(i)] = sound[i] * m_window[static_cast<std::size_t>(i)];
        m_transforms[size]->forward(m_sound.data(), look.spectra[static_cast<std::size_t>(channel)].data());
    }
}

// The peaks of the magnitudes around the band, and the valleys between them.
void GrainBand::findPeaks(Look& look) {
    const int half = look.size / 2;
    const auto bin = [&](double hertz) { return hertz * look.size / m_rate; };
    m_firstBin = std::max(0, static_cast<int>(bin(AttackMap::bandEdge(m_band))) - 12);
    m_lastBin = std::min(half, static_cast<int>(bin(AttackMap::bandEdge(m_band + 1))) + 12);
    if (m_band == AttackMap::kBands - 1) m_lastBin = half;
    look.firstBin = m_firstBin;
    look.lastBin = m_lastBin;
    auto& m = look.magnitudes;
    const auto& [left, right] = look.spectra;
    for (int k = 0; k <= half; ++k) {
        const auto i = static_cast<std::size_t>(k);
        m[i] = k >= m_firstBin - 2 && k <= m_lastBin + 2 ? std::sqrt(std::norm(left[i]) + std::norm(right[i])) : 0.0f;
    }
    const auto at = [&](int k) { return m[static_cast<std::size_t>(std::clamp(k, 0, half))]; };
    m_peaks.clear();
    m_borders.clear();
    for (int k = m_firstBin; k <= m_lastBin; ++k) {
        const float here = at(k);
        if (here < 1e-9f || here <= at(k - 1) || here <= at(k - 2) || here < at(k + 1) || here < at(k + 2)) {
            const bool edge = k == 0 && here > 1e-9f && here >= at(1) && here >= at(2);
            if (!edge) continue;
        }
        if (!m_peaks.empty()) {
            int valley = m_peaks.back();
            for (int v = m_peaks.back() + 1; v < k; ++v)
                if (at(v) < at(valley)) valley = v;
            m_borders.push_back(valley);
        }
        m_peaks.push_back(k);
    }
    if (m_peaks.empty()) m_peaks.push_back(m_firstBin);
    m_borders.push_back(m_lastBin + 1);
}

// The argument is how far the phase of a bin has moved since the last grain, in the channel in which it is louder.
std::complex<float> GrainBand::advanceOf(const Look& look, int bin) const {
    const auto i = static_cast<std::size_t>(bin);
    const std::size_t channel = std::norm(look.spectra[0][i]) >= std::norm(look.spectra[1][i]) ? 0 : 1;
    return look.spectra[channel][i] * std::conj(m_last->spectra[channel][i]);
}

// Whether a bin belongs to the partial at its peak: so do those of the main lobe, and side lobes, which move as it
// does.
bool GrainBand::moveTogether(const Look& look, int bin, int peak) const {
    if (std::abs(bin - peak) <= kMainLobe) return true;
    const std::complex<float> apart = advanceOf(look, bin) * std::conj(advanceOf(look, peak));
    return apart.real() > kTogether * std::abs(apart);
}

// Radians per frame of what sounds in a bin, which lies no further than `span` bins from it: by its advance since the
// last grain where that can be told, otherwise by the shape of the peak.
float GrainBand::frequencyAt(const Look& look, int bin, double span) const {
    const double binWidth = 2 * kPi / look.size;
    if (m_last->size != 0 && m_last->spectrumSize == look.size) {
        const std::complex<double> advance(advanceOf(look, bin));
        const auto apart = static_cast<double>(look.source - m_last->source);
        const double distance = apart + look.centre - m_last->centre;
        if (distance > 0.25 * apart && apart > 0) {
            const double off = std::remainder(std::arg(advance) - bin * binWidth * apart, 2 * kPi);
            const double most = span * binWidth;
            return static_cast<float>(bin * binWidth + std::clamp(off / distance, -most, most));
        }
    }
    const auto& m = look.magnitudes;
    const auto level = [&](int k) {
        return std::log(m[static_cast<std::size_t>(std::clamp(k, 0, look.size / 2))] + 1e-12f);
    };
    const float a = level(bin - 1), b = level(bin), c = level(bin + 1);
    const float bend = a - 2 * b + c;
    const float off = bend < -1e-6f ? std::clamp(0.5f * (a - c) / bend, -0.5f, 0.5f) : 0.0f;
    return static_cast<float>((bin + static_cast<double>(off)) * binWidth);
}

std::complex<float> GrainBand::turnAt(const Look& look, int peak, float frequency, Kind kind) const {
    if (m_last->size == 0) {  // so that the first place that is wanted has the phases of its source
        const auto places = static_cast<double>(look.place - m_course.first);
        const double sources =
            static_cast<double>(look.source) - (m_course.origin + static_cast<double>(m_course.first) * m_course.speed);
        return std::polar(1.0f, static_cast<float>(std::remainder(frequency * (places - sources), 2 * kPi)));
    }
    if (kind == Kind::Begins) return {1, 0};
    const int oldHalf = m_last->size / 2;
    // Bins beyond those that were turned have no past of their own.
    const int old = std::clamp(peak * oldHalf / (look.size / 2), m_last->firstBin, m_last->lastBin);
    const std::complex<float> turn = m_last->turns[static_cast<std::size_t>(old)];
    if (kind == Kind::Restarts) {
        float before = 0;
        for (int k = std::max(0, old - 2); k <= std::min(oldHalf, old + 2); ++k)
            before = std::max(before, m_last->magnitudes[static_cast<std::size_t>(k)]);
        const bool goesOn =
            look.magnitudes[static_cast<std::size_t>(peak)] / look.weight < kNewEnergy * before / m_last->weight;
        return goesOn ? turn : std::complex<float>(1, 0);
    }
    const auto stretch = static_cast<double>((look.place - m_last->place) - (look.source - m_last->source));
    return turn * std::polar(1.0f, static_cast<float>(std::remainder(frequency * stretch, 2 * kPi)));
}

// Of a bin too far from its peak to belong to the same partial: breath, hall, hiss. Turned with the peak it would
// cancel itself; it goes on at its own frequency, and is raised by what overlapping noise loses.
std::complex<float> GrainBand::turnBetween(const Look& look, int bin) const {
    const std::complex<float> turn = turnAt(look, bin, frequencyAt(look, bin, kNoiseSpan), Kind::GoesOn);
    return turn * (m_noiseGain / (std::abs(turn) + 1e-12f));
}

// The band a partial near a limit belongs to is that of its frequency, with all bins around its peak; bins further
// inside are the band's own in any case: a click has hardly any peaks.
void GrainBand::findLimits(int size) {
    const double perBin = static_cast<double>(size) / m_rate;
    const auto margin = [](int edge) { return edge == 1 ? 40.0 : 100.0; };  // hertz
    const auto bin = [&](double hertz) { return static_cast<int>(std::lround(hertz * perBin)); };
    const double low = AttackMap::bandEdge(m_band), high = AttackMap::bandEdge(m_band + 1);
    m_possible = {m_firstBin, m_lastBin};
    m_sure = m_possible;
    if (m_band > 0) {
        m_possible.first = bin(low - margin(m_band));
        m_sure.first = bin(low + margin(m_band));
    }
    if (m_band + 1 < AttackMap::kBands) {
        m_possible.last = bin(high + margin(m_band + 1));
        m_sure.last = bin(high - margin(m_band + 1));
    }
}

// Turns every peak's region, keeps what belongs to the band and clears the rest. In a cut window no bin is taken for
// noise: what lies between the peaks there is the edge, or what is left of a click.
void GrainBand::turn(Look& look, Kind kind, bool isCut) {
    const double low = 2 * kPi * AttackMap::bandEdge(m_band) / m_rate;
    const double high = m_band == AttackMap::kBands - 1 ? 10.0 : 2 * kPi * AttackMap::bandEdge(m_band + 1) / m_rate;
    const bool knowsNoise = m_last->size != 0 && kind == Kind::GoesOn && !isCut;
    findLimits(look.size);
    int from = m_firstBin;
    for (std::size_t p = 0; p < m_peaks.size(); ++p) {
        const int peak = m_peaks[p];
        const float frequency = frequencyAt(look, peak, kPeakSpan);
        std::complex<float> turn = turnAt(look, peak, frequency, kind);
        turn /= std::abs(turn) + 1e-12f;
        const bool inBand = frequency >= low && frequency < high;
        for (int k = from; k < m_borders[p]; ++k) {
            const bool between = knowsNoise && !moveTogether(look, k, peak);
            look.turns[static_cast<std::size_t>(k)] = between ? turnBetween(look, k) : turn;
            look.kept[static_cast<std::size_t>(k)] = m_sure.has(k) || (inBand && m_possible.has(k));
        }
        from = m_borders[p];
    }
}

// Into the ring, through the window once more.
void GrainBand::setDown(Look& look) {
    const int size = look.size;
    const std::int64_t begin = look.place - size / 2;
    for (std::size_t channel = 0; channel < 2; ++channel) {
        std::fill_n(m_turned.begin(), size / 2 + 1, std::complex<float>{});
        for (int k = m_firstBin; k <= m_lastBin; ++k) {
            const auto i = static_cast<std::size_t>(k);
            if (look.kept[i]) m_turned[i] = look.spectra[channel][i] * look.turns[i];
        }
        m_transforms[size]->inverse(m_turned.data(), m_sound.data());
        auto& ring = m_ring[channel];
        const float scale = 1.0f / static_cast<float>(size);
        for (std::int64_t i = m_windowBegin; i < m_windowEnd; ++i) {
            if (begin + i < m_taken) continue;
            const auto w = static_cast<std::size_t>(i);
            ring[static_cast<std::size_t>(floorMod(begin + i, ring.size()))] += m_sound[w] * m_window[w] * scale;
        }
    }
    for (std::int64_t i = m_windowBegin; i < m_windowEnd; ++i) {
        if (begin + i < m_taken) continue;
        const auto w = static_cast<std::size_t>(i);
        m_ringWeight[static_cast<std::size_t>(floorMod(begin + i, m_ringWeight.size()))] += m_window[w] * m_window[w];
    }
}

}  // namespace qm
