#include "support/widgets/FakeMediaEngine.h"

#include <charconv>

namespace qm {

namespace {

// The shortest text that reads back as the same float.
std::string number(float value) {
    char buffer[64];
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, value);
    return {buffer, end.ptr};
}

std::string yesNo(bool value) {
    return value ? " YES" : " NO";
}

std::string timeText(QTTime time) {
    return std::to_string(time.timeValue) + "/" + std::to_string(time.timeScale) +
           (time.flags ? " flags " + std::to_string(time.flags) : "");
}

}  // namespace

FakeMovie::FakeMovie(FakeMediaEngine& engine, MovieScript movieScript)
    : QTMovie(engine.movies), script(std::move(movieScript)), time{0, script.timeScale, 0}, m_engine(engine) {}

void FakeMovie::play() {
    m_engine.log.add("play");
}

void FakeMovie::stop() {
    m_engine.log.add("stop");
}

void FakeMovie::setRate(float rate) {
    m_engine.log.add("setRate " + number(rate));
}

void FakeMovie::setCurrentTime(QTTime newTime) {
    m_engine.log.add("setCurrentTime " + timeText(newTime));
    time = newTime;
}

void FakeMovie::seekTo(std::int64_t newTime) {
    m_engine.log.add("seekTo " + std::to_string(newTime));
    time = {newTime, script.timeScale, 0};
}

std::optional<long> FakeMovie::timeScaleAttribute() const {
    if (!script.givesTimeScale) return std::nullopt;
    return script.timeScale;
}

void FakeMovie::setSelectionAttribute(QTTimeRange range) {
    m_engine.log.add("setSelection " + timeText(range.time) + " + " + timeText(range.duration));
}

void FakeMovie::setLoopsAttribute(bool loops) {
    m_engine.log.add("setLoops" + yesNo(loops));
}

void FakeMovie::setPlaysSelectionOnlyAttribute(bool only) {
    m_engine.log.add("setPlaysSelectionOnly" + yesNo(only));
}

void FakeMovie::setPreferredRateAttribute(float rate) {
    m_engine.log.add("setPreferredRate " + number(rate));
}

std::unique_ptr<MovieExport> FakeMovie::writeToFileWithAttributes(const std::string& path, WriteAttribute) {
    m_engine.log.add("writeToFile " + path + " QTMovieFlatten YES");
    return std::make_unique<FakeExport>(m_engine);
}

FakeExport::FakeExport(FakeMediaEngine& engine) : m_engine(engine) {
    m_engine.m_export = this;
}

FakeExport::~FakeExport() {
    if (m_engine.m_export == this) m_engine.m_export = nullptr;
    if (!finished) m_engine.log.add("export given up");
}

void FakeExport::cancel() {
    m_engine.log.add("cancel export");
    if (m_engine.exportsObey) finished = true;
}

void FakeMovie::setMuted(bool muted) {
    m_engine.log.add("setMuted" + yesNo(muted));
}

void FakeMovie::setVolume(float volume) {
    m_volume = volume;
    m_engine.log.add("setVolume " + number(volume));
}

void FakeMovie::setBalance(float balance) {
    m_engine.log.add("setBalance " + number(balance));
}

void FakeMovie::setPitch(float cents) {
    m_engine.log.add("setPitch " + number(cents));
}

void FakeMovie::setTone(int soundTrack, std::int16_t bass, std::int16_t treble) {
    m_engine.log.add("setTone track " + std::to_string(soundTrack) + " " + std::to_string(bass) + " " +
                     std::to_string(treble));
}

void FakeMovie::meterVolume(bool on) {
    m_engine.log.add("meterVolume" + yesNo(on));
}

void FakeMovie::meterBands(bool on) {
    m_engine.log.add("meterBands" + yesNo(on));
}

bool FakeMovie::readVolumeLevels(QTAudioVolumeLevels& averagePower, QTAudioVolumeLevels& peakHold) const {
    if (m_engine.atMeterRead) m_engine.atMeterRead("readVolumeLevels");
    if (!m_engine.givesVolumeLevels) return false;
    averagePower = m_engine.averagePower;
    peakHold = m_engine.peakHold;
    return true;
}

bool FakeMovie::readFrequencyLevels(QTAudioFrequencyLevels& levels) const {
    if (m_engine.atMeterRead) m_engine.atMeterRead("readFrequencyLevels");
    if (!m_engine.givesFrequencyLevels) return false;
    levels = m_engine.frequencyLevels;
    return true;
}

std::optional<SoundOutput> FakeMovie::soundOutput() const {
    return m_engine.output;
}

FakeMovie* FakeMediaEngine::movie() const {
    return static_cast<FakeMovie*>(movies.find(m_last));
}

Result<std::unique_ptr<QTMovie>> FakeMediaEngine::movieWithFile(const std::string& path) {
    log.add("open " + path);
    if (silent.contains(path)) return Error{ErrorCategory::NoAnswer, "does not answer"};
    if (missing.contains(path)) return Error{ErrorCategory::NotFound, path + ": No such file or directory"};
    if (unreadable.contains(path)) return Error{ErrorCategory::Unreadable, "not a media file"};
    const auto own = files.find(path);
    std::unique_ptr<QTMovie> opened = std::make_unique<FakeMovie>(*this, own == files.end() ? usual : own->second);
    m_last = opened->quickTimeMovie();
    return opened;
}

}  // namespace qm
