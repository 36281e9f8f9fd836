#include "engine/movie/FileMovie.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <iterator>
#include <limits>
#include <utility>

#include "engine/export/FileExport.h"
#include "engine/media/tags/Tags.h"
#include "engine/movie/SilentReader.h"

namespace qm {

namespace {

constexpr std::int32_t kScaleWithoutSound = 600;

static_assert(Meter::kChannels == kMeterChannels && Meter::kBands == kMeterBands);

// Foreign headers state all kinds of rates: one at which nothing could be heard is none.
float playableRate(double stated) {
    constexpr double kSlowest = 0.1, kFastest = 10;
    const bool playable = std::abs(stated) >= kSlowest && std::abs(stated) <= kFastest;
    return playable || stated == 0 ? static_cast<float>(stated) : 1.0f;
}

// value * to / from, truncated toward zero; what would not fit is the farthest time there is.
std::int64_t rescale(std::int64_t value, std::int32_t to, std::int32_t from) {
    const std::int64_t most = std::numeric_limits<std::int64_t>::max() / to - 1;
    return std::clamp(value / from, -most, most) * to + value % from * to / from;
}

}  // namespace

FileMovie::FileMovie(MovieRegistry& registry, std::shared_ptr<Reaper> reaper, OpenedMedia media,
                     OutputFactory openOutput)
    : QTMovie(registry),
      m_reaper(std::move(reaper)),
      m_description(media.description),
      m_tags(std::move(media.tags)),
      m_works(std::make_unique<Works>(media, std::move(openOutput))),
      m_render(m_works->render),
      m_timeScale(m_description.hasSound ? m_render.sampleRate() : kScaleWithoutSound),
      m_preferredRate(playableRate(m_description.preferredRate)) {}

FileMovie::~FileMovie() {
    setPictureViewer(std::nullopt);
    m_render.close();
    m_reaper->end(std::move(m_works));
}

FileMovie::Works::Works(OpenedMedia& media, OutputFactory openOutput)
    : file(std::move(media.file)),
      openSound(std::move(media.openSound)),
      render(soundOrSilence(std::move(media.sound), media.description.durationSeconds), std::move(openOutput)) {
    if (media.openVideo) video = std::make_unique<VideoThread>(std::move(media.openVideo), [this] { return moment(); });
}

void FileMovie::play() {
    m_request.playing = true;
    m_hasPlayed = true;
    if (!m_hasRate) takeRate(m_preferredRate);
    beginInside();
    request();
}

void FileMovie::stop() {
    m_request.playing = false;
    request();
}

// Another speed at an end that play has come to does not play the movie once more.
void FileMovie::setRate(float rate) {
    const bool begins = m_request.playing && !isDone();
    m_hasRate = true;
    takeRate(rate);
    if (begins) beginInside();
    request();
}

void FileMovie::takeRate(float rate) {
    m_request.rate = rate;
    if (rate != 0) m_backward = rate < 0;
}

// Play that would lead straight out of the movie begins at the other end.
void FileMovie::beginInside() {
    if (m_request.loops || m_request.rate == 0 || !standsAtTheEnd()) return;
    seekTo(m_backward ? toUnits(m_render.length()) : 0);
}

// The end in the direction of play.
bool FileMovie::standsAtTheEnd() const {
    return m_backward ? position() <= 0 : position() >= m_render.length();
}

void FileMovie::setPitch(float cents) {
    m_request.cents = cents;
    request();
}

// The sound tracks are heard as one.
void FileMovie::setTone(int, std::int16_t bass, std::int16_t treble) {
    m_request.tone = {bass, treble};
    request();
}

bool FileMovie::readVolumeLevels(QTAudioVolumeLevels& averagePower, QTAudioVolumeLevels& peakHold) const {
    if (!meter().volumeEnabled()) return false;
    const Meter::Levels heard = meter().levels();
    averagePower.numChannels = peakHold.numChannels = kMeterChannels;
    std::copy(heard.averagePower.begin(), heard.averagePower.end(), std::begin(averagePower.level));
    std::copy(heard.peakHold.begin(), heard.peakHold.end(), std::begin(peakHold.level));
    return true;
}

bool FileMovie::readFrequencyLevels(QTAudioFrequencyLevels& levels) const {
    if (!meter().bandsEnabled()) return false;
    const Meter::Levels heard = meter().levels();
    levels.numChannels = kMeterChannels;
    levels.numFrequencyBands = kMeterBands;
    float* level = levels.level;
    for (const auto& channel : heard.bands) level = std::copy(channel.begin(), channel.end(), level);
    return true;
}

void FileMovie::request() {
    assert(m_mainThread.isHere());
    const bool selects = m_playsSelectionOnly && m_selection.time.timeScale > 0;
    const std::int64_t from = selects ? toFrames(m_selection.time) : 0;
    const std::int64_t to = selects ? toFrames(QTTimeIncrement(m_selection.time, m_selection.duration)) : 0;
    // A selection that ends before it begins is what lies between the two.
    m_request.rangeBegin = std::min(from, to);
    m_request.rangeEnd = std::max(from, to);
    m_selectionIsNew = false;
    m_render.request(m_request);
    if (m_works->video) m_works->video->clockChanged();
}

VideoMoment FileMovie::Works::moment() const {
    const RenderThread::Request request = render.newestRequest();
    const double perFrame = 1.0 / render.sampleRate();
    VideoMoment moment;
    moment.seconds = render.heard() * perFrame;
    moment.rate = request.playing ? request.rate : 0;
    moment.loops = request.loops;
    const bool whole = request.rangeEnd <= request.rangeBegin;
    moment.rangeBegin = whole ? 0 : static_cast<double>(request.rangeBegin) * perFrame;
    moment.rangeEnd = static_cast<double>(whole ? render.length() : request.rangeEnd) * perFrame;
    return moment;
}

void FileMovie::setPictureViewer(std::optional<PictureViewer> viewer) {
    if (m_works->video) m_works->video->setViewer(std::move(viewer));
}

std::shared_ptr<const VideoPicture> FileMovie::currentPicture() const {
    return m_works->video ? m_works->video->picture() : nullptr;
}

QTTime FileMovie::currentTime() const {
    return {toUnits(position()), m_timeScale, 0};
}

QTTime FileMovie::duration() const {
    return {toUnits(m_render.length()), m_timeScale, 0};
}

std::int64_t FileMovie::position() const {
    assert(m_mainThread.isHere());
    return static_cast<std::int64_t>(std::floor(m_render.heard()));
}

void FileMovie::setCurrentTime(QTTime time) {
    const std::int32_t scale = time.timeScale > 0 ? time.timeScale : m_timeScale;
    seekTo(rescale(time.timeValue, m_timeScale, scale));
}

void FileMovie::seekTo(std::int64_t time) {
    const bool pastEnd = time >= toUnits(m_render.length());
    const std::int64_t target =
        pastEnd ? m_render.length() : toFrames({std::max<std::int64_t>(time, 0), m_timeScale, 0});
    m_request.seekTarget = m_request.loops ? intoRange(target) : target;
    ++m_request.seek;
    m_hasPlayed = m_hasPlayed && m_request.playing;
    request();
}

// While a range repeats, a position outside it is the edge at which play enters it. Both edges belong to the range,
// also the one at which play wraps at once.
std::int64_t FileMovie::intoRange(std::int64_t position) const {
    const Playhead entry =
        makePlayhead(position, m_backward, true, m_request.rangeBegin, m_request.rangeEnd, m_render.length());
    const bool isOnEdge = position == entry.rangeBegin || position == entry.rangeEnd;
    return isOnEdge ? position : entry.start;
}

std::int64_t FileMovie::toFrames(QTTime time) const {
    return rescale(time.timeValue, m_render.sampleRate(), time.timeScale);
}

std::int64_t FileMovie::toUnits(std::int64_t frames) const {
    return rescale(frames, m_timeScale, m_render.sampleRate());
}

bool FileMovie::isDone() const {
    return m_hasPlayed && !m_request.loops && standsAtTheEnd();
}

std::optional<long> FileMovie::timeScaleAttribute() const {
    return m_timeScale;
}

bool FileMovie::hasVideoAttribute() const {
    return m_description.hasVideo;
}

std::optional<std::string> FileMovie::displayNameAttribute() const {
    if (m_description.displayName.empty()) return std::nullopt;
    return m_description.displayName;
}

std::optional<std::string> FileMovie::copyrightAttribute() const {
    const Tag* copyright = findCopyright(tags());
    if (!copyright) return std::nullopt;
    return copyright->value.substr(0, copyright->value.find('\0'));
}

void FileMovie::setSelectionAttribute(QTTimeRange range) {
    m_selection = range;
    m_selectionIsNew = true;
    if (m_playsSelectionOnly) request();
}

// Between the calls that set a loop, or end it, another passage would be heard for a moment: so one that leaves the
// loop half set waits for the next.
void FileMovie::setLoopsAttribute(bool loops) {
    m_request.loops = loops;
    const bool isHalfSet = loops ? m_selectionIsNew : m_playsSelectionOnly;
    if (!isHalfSet) request();
}

void FileMovie::setPlaysSelectionOnlyAttribute(bool only) {
    m_playsSelectionOnly = only;
    request();
}

void FileMovie::setPreferredRateAttribute(float rate) {
    m_preferredRate = rate;
}

Waveform FileMovie::waveform() const {
    assert(m_mainThread.isHere());
    Works& works = *m_works;
    if (works.openSound) works.waveform = std::make_unique<WaveformScan>(std::exchange(works.openSound, nullptr));
    return works.waveform ? works.waveform->waveform() : Waveform{.isComplete = true};
}

std::unique_ptr<MovieExport> FileMovie::writeToFileWithAttributes(const std::string& path, WriteAttribute) {
    return std::make_unique<FileExport>(m_works->file, path, m_preferredRate, m_reaper);
}

void FileMovie::setMuted(bool muted) {
    m_muted = muted;
    applyGains();
}

void FileMovie::setVolume(float volume) {
    m_volume = std::clamp(volume, 0.0f, 1.0f);
    applyGains();
}

void FileMovie::setBalance(float balance) {
    m_balance = std::clamp(balance, -1.0f, 1.0f);
    applyGains();
}

void FileMovie::applyGains() {
    assert(m_mainThread.isHere());
    const float volume = m_muted ? 0.0f : m_volume;
    m_render.setGains(volume * std::min(1.0f, 1.0f - m_balance), volume * std::min(1.0f, 1.0f + m_balance));
}

}  // namespace qm
