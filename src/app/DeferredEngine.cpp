#include "app/DeferredEngine.h"

#include <QCoreApplication>
#include <QLibrary>

#include "app/LiveWait.h"
#include "engine/api/Log.h"

namespace qm {

namespace {

// Null, with a log line, when that fails. All symbols are resolved here, so that no sound thread ever has to.
const EngineModule* loadModule(const QString& path) {
    QLibrary library(path);
    library.setLoadHints(QLibrary::ResolveAllSymbolsHint);
    const auto entry = reinterpret_cast<EngineModuleEntry>(library.resolve(kEngineModuleEntry));
    if (entry) {
        const EngineModule* module = entry();
        module->setLogSink(qmLog);
        return module;
    }
    qmLog("the media engine cannot be loaded: " + library.errorString().toStdString());
    return nullptr;
}

}  // namespace

DeferredEngine::DeferredEngine(QString modulePath) : m_modulePath(std::move(modulePath)) {}

QString DeferredEngine::installedModule() {
    return QCoreApplication::applicationDirPath() + QStringLiteral("/../" QUILLMERE_MODULE_FOLDER "/quillmere-engine");
}

void DeferredEngine::load() {
    if (m_module || m_loading.valid()) return;
    m_loading = std::async(std::launch::async, loadModule, m_modulePath);
}

const EngineModule* DeferredEngine::module() {
    load();
    waitWithLiveWindow([this](std::chrono::milliseconds longest) {
        return !m_loading.valid() || m_loading.wait_for(longest) == std::future_status::ready;
    });
    if (m_loading.valid()) m_module = m_loading.get();
    return m_module;
}

Result<std::unique_ptr<QTMovie>> DeferredEngine::movieWithFile(const std::string& path) {
    if (!m_engine && module() && !m_engine) m_engine = m_module->makeMediaEngine(waitWithLiveWindow);
    if (m_engine) return m_engine->movieWithFile(path);
    qmLog("cannot open " + path + ": there is no media engine");
    return Error{ErrorCategory::Device, "there is no media engine"};
}

void DeferredEngine::giveUpOpening() {
    if (m_engine) m_engine->giveUpOpening();
}

std::optional<SoundOutput> DeferredEngine::soundOutput() const {
    return m_engine ? m_engine->soundOutput() : std::nullopt;
}

std::int32_t DeferredEngine::GetMovieDuration(Movie movie) {
    return m_engine ? m_engine->GetMovieDuration(movie) : 0;
}

std::int32_t DeferredEngine::GetMovieTime(Movie movie) {
    return m_engine ? m_engine->GetMovieTime(movie) : 0;
}

void DeferredEngine::SetMovieTimeValue(Movie movie, std::int32_t time) {
    if (m_engine) m_engine->SetMovieTimeValue(movie, time);
}

bool DeferredEngine::IsMovieDone(Movie movie) {
    return m_engine && m_engine->IsMovieDone(movie);
}

OSErr DeferredEngine::QTSetMovieProperty(Movie movie, std::uint32_t propertyClass, std::uint32_t propertyId,
                                         std::uint32_t size, const void* value) {
    return m_engine ? m_engine->QTSetMovieProperty(movie, propertyClass, propertyId, size, value) : kInvalidMovie;
}

OSErr DeferredEngine::SetMovieAudioBalance(Movie movie, float balance, std::uint32_t flags) {
    return m_engine ? m_engine->SetMovieAudioBalance(movie, balance, flags) : kInvalidMovie;
}

int DeferredEngine::soundTrackCount(Movie movie) {
    return m_engine ? m_engine->soundTrackCount(movie) : 0;
}

OSErr DeferredEngine::MediaSetSoundBassAndTreble(Movie movie, int soundTrack, std::int16_t bass, std::int16_t treble) {
    return m_engine ? m_engine->MediaSetSoundBassAndTreble(movie, soundTrack, bass, treble) : kInvalidMovie;
}

OSErr DeferredEngine::SetMovieAudioVolumeMeteringEnabled(Movie movie, std::uint32_t mix, bool enabled) {
    return m_engine ? m_engine->SetMovieAudioVolumeMeteringEnabled(movie, mix, enabled) : kInvalidMovie;
}

OSErr DeferredEngine::SetMovieAudioFrequencyMeteringNumBands(Movie movie, std::uint32_t mix, std::uint32_t& bands) {
    return m_engine ? m_engine->SetMovieAudioFrequencyMeteringNumBands(movie, mix, bands) : kInvalidMovie;
}

OSErr DeferredEngine::GetMovieAudioVolumeLevels(Movie movie, std::uint32_t mix, QTAudioVolumeLevels& averagePower,
                                                QTAudioVolumeLevels& peakHold) {
    return m_engine ? m_engine->GetMovieAudioVolumeLevels(movie, mix, averagePower, peakHold) : kInvalidMovie;
}

OSErr DeferredEngine::GetMovieAudioFrequencyLevels(Movie movie, std::uint32_t mix, QTAudioFrequencyLevels& levels) {
    return m_engine ? m_engine->GetMovieAudioFrequencyLevels(movie, mix, levels) : kInvalidMovie;
}

OSErr DeferredEngine::QTCopyMovieMetaData(Movie movie, QTMetaDataRef& metaData) {
    metaData = 0;
    return m_engine ? m_engine->QTCopyMovieMetaData(movie, metaData) : kInvalidMovie;
}

OSErr DeferredEngine::QTMetaDataGetNextItem(QTMetaDataRef metaData, std::uint32_t storageFormat, QTMetaDataItem current,
                                            std::uint32_t keyFormat, QTMetaDataItem& next) {
    return m_engine ? m_engine->QTMetaDataGetNextItem(metaData, storageFormat, current, keyFormat, next)
                    : kInvalidMetaData;
}

OSErr DeferredEngine::QTMetaDataGetItemProperty(QTMetaDataRef metaData, QTMetaDataItem item,
                                                std::uint32_t propertyClass, std::uint32_t propertyId, std::size_t size,
                                                void* value, std::size_t& sizeUsed) {
    return m_engine
               ? m_engine->QTMetaDataGetItemProperty(metaData, item, propertyClass, propertyId, size, value, sizeUsed)
               : kInvalidMetaData;
}

void DeferredEngine::QTMetaDataRelease(QTMetaDataRef metaData) {
    if (m_engine) m_engine->QTMetaDataRelease(metaData);
}

}  // namespace qm
