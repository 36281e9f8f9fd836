#include "support/widgets/FakeMediaEngine.h"

#include <charconv>
#include <cstring>

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

std::string fourChars(std::uint32_t code) {
    return {char(code >> 24), char(code >> 16 & 0xff), char(code >> 8 & 0xff), char(code & 0xff)};
}

std::string timeText(QTTime time) {
    return std::to_string(time.timeValue) + "/" + std::to_string(time.timeScale) +
           (time.flags ? " flags " + std::to_string(time.flags) : "");
}

}  // namespace

FakeMovie::FakeMovie(FakeMediaEngine& engine, Movie handle, MovieScript movieScript)
    : script(std::move(movieScript)), time{0, script.timeScale, 0}, m_engine(engine), m_handle(handle) {
    m_engine.m_living[handle] = this;
}

FakeMovie::~FakeMovie() {
    m_engine.m_living.erase(m_handle);
}

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

FakeMovie* FakeMediaEngine::movie() const {
    return living(m_lastHandle);
}

FakeMovie* FakeMediaEngine::living(Movie movie) const {
    const auto found = m_living.find(movie);
    return found == m_living.end() ? nullptr : found->second;
}

OSErr FakeMediaEngine::statusFor(Movie movie) const {
    return living(movie) ? status : kInvalidMovie;
}

Result<std::unique_ptr<QTMovie>> FakeMediaEngine::movieWithFile(const std::string& path) {
    log.add("open " + path);
    if (silent.contains(path)) return Error{ErrorCategory::NoAnswer, "does not answer"};
    if (missing.contains(path)) return Error{ErrorCategory::NotFound, path + ": No such file or directory"};
    if (unreadable.contains(path)) return Error{ErrorCategory::Unreadable, "not a media file"};
    const auto own = files.find(path);
    std::unique_ptr<QTMovie> opened =
        std::make_unique<FakeMovie>(*this, ++m_lastHandle, own == files.end() ? usual : own->second);
    return opened;
}

OSErr FakeMediaEngine::QTCopyMovieMetaData(Movie movie, QTMetaDataRef& metaData) {
    metaData = 0;
    const FakeMovie* found = living(movie);
    if (!found) return kInvalidMovie;
    if (metaDataStatus == kNoErr) metaData = m_metaData.add(found->script.tags);
    return metaDataStatus;
}

OSErr FakeMediaEngine::QTMetaDataGetNextItem(QTMetaDataRef metaData, std::uint32_t storageFormat,
                                             QTMetaDataItem current, std::uint32_t keyFormat, QTMetaDataItem& next) {
    return m_metaData.nextItem(metaData, storageFormat, current, keyFormat, next);
}

OSErr FakeMediaEngine::QTMetaDataGetItemProperty(QTMetaDataRef metaData, QTMetaDataItem item,
                                                 std::uint32_t propertyClass, std::uint32_t propertyId,
                                                 std::size_t size, void* value, std::size_t& sizeUsed) {
    if (unreadableProperties.contains({item, propertyId})) return kInvalidMetaDataItem;
    return m_metaData.itemProperty(metaData, item, propertyClass, propertyId, size, value, sizeUsed);
}

std::int32_t FakeMediaEngine::GetMovieDuration(Movie movie) {
    const FakeMovie* found = living(movie);
    return found ? found->script.duration : 0;
}

std::int32_t FakeMediaEngine::GetMovieTime(Movie movie) {
    const FakeMovie* found = living(movie);
    return found ? static_cast<std::int32_t>(found->time.timeValue) : 0;
}

void FakeMediaEngine::SetMovieTimeValue(Movie movie, std::int32_t time) {
    log.add("SetMovieTimeValue " + std::to_string(time));
    if (FakeMovie* found = living(movie)) found->time = {time, found->script.timeScale, 0};
}

bool FakeMediaEngine::IsMovieDone(Movie movie) {
    const FakeMovie* found = living(movie);
    return found && found->done;
}

OSErr FakeMediaEngine::QTSetMovieProperty(Movie movie, std::uint32_t propertyClass, std::uint32_t propertyId,
                                          std::uint32_t size, const void* value) {
    float cents = 0;
    std::memcpy(&cents, value, sizeof cents);
    log.add("QTSetMovieProperty " + fourChars(propertyClass) + " " + fourChars(propertyId) + " " +
            std::to_string(size) + " bytes " + number(cents));
    return statusFor(movie);
}

OSErr FakeMediaEngine::SetMovieAudioBalance(Movie movie, float balance, std::uint32_t flags) {
    log.add("SetMovieAudioBalance " + number(balance) + " flags " + std::to_string(flags) +
            (movie == 0 ? " without a movie" : ""));
    return statusFor(movie);
}

int FakeMediaEngine::soundTrackCount(Movie movie) {
    const FakeMovie* found = living(movie);
    return found ? found->script.soundTracks : 0;
}

OSErr FakeMediaEngine::MediaSetSoundBassAndTreble(Movie movie, int soundTrack, std::int16_t bass, std::int16_t treble) {
    log.add("MediaSetSoundBassAndTreble track " + std::to_string(soundTrack) + " " + std::to_string(bass) + " " +
            std::to_string(treble));
    return statusFor(movie);
}

OSErr FakeMediaEngine::SetMovieAudioVolumeMeteringEnabled(Movie movie, std::uint32_t mix, bool enabled) {
    log.add("SetMovieAudioVolumeMeteringEnabled " + fourChars(mix) + yesNo(enabled));
    return statusFor(movie);
}

OSErr FakeMediaEngine::SetMovieAudioFrequencyMeteringNumBands(Movie movie, std::uint32_t mix, std::uint32_t& bands) {
    log.add("SetMovieAudioFrequencyMeteringNumBands " + fourChars(mix) + " " + std::to_string(bands));
    return statusFor(movie);
}

OSErr FakeMediaEngine::meterStatus(Movie movie, std::optional<OSErr> own, const std::string& call) const {
    if (atMeterRead) atMeterRead(call);
    return living(movie) ? own.value_or(status) : kInvalidMovie;
}

OSErr FakeMediaEngine::GetMovieAudioVolumeLevels(Movie movie, std::uint32_t mix, QTAudioVolumeLevels& average,
                                                 QTAudioVolumeLevels& peak) {
    const OSErr answer = meterStatus(movie, volumeLevelsStatus, "GetMovieAudioVolumeLevels " + fourChars(mix));
    if (answer != kNoErr) return answer;
    average = averagePower;
    peak = peakHold;
    return kNoErr;
}

OSErr FakeMediaEngine::GetMovieAudioFrequencyLevels(Movie movie, std::uint32_t mix, QTAudioFrequencyLevels& levels) {
    const OSErr answer = meterStatus(movie, frequencyLevelsStatus, "GetMovieAudioFrequencyLevels " + fourChars(mix));
    if (answer == kNoErr) levels = frequencyLevels;
    return answer;
}

}  // namespace qm
