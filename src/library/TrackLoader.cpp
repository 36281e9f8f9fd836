#include "library/TrackLoader.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QFileInfo>
#include <QUrl>
#include <algorithm>
#include <chrono>
#include <string>
#include <utility>

#include "app/state/FilePath.h"
#include "app/state/OutletSetters.h"
#include "app/state/SupportFolder.h"
#include "engine/api/Aside.h"
#include "engine/api/Log.h"
#include "ui/controls/FadingWindow.h"
#include "ui/controls/MovieView.h"
#include "ui/dialogs/FileAcceptance.h"
#include "ui/dialogs/FilePanel.h"

namespace qm {

namespace {

constexpr std::chrono::seconds kLongestAnswer{2};  // that a file is waited for

}  // namespace

TrackLoader::TrackLoader(
    Uses<CurrentMovie, MovieHandle, LoadedFile, const PlayState, const SpeedState, const PitchState, const VolumeState,
         const ToneState, const MeteringState>
        state,
    PlayListArrays& list,
    Uses<const VideoOutlets, const MainWindowOutlet, const PositionOutlet, const PlayListOutlet> outlets,
    MediaEngine& engine, MovieToolbox& toolbox, PositionClock& clock, ToneControl& tone, TrackMetadata& metadata,
    Notices& notices, LevelMeterHooks meters)
    : m_movie(state),
      m_handle(state),
      m_file(state),
      m_play(state),
      m_speedState(state),
      m_pitchState(state),
      m_volumeState(state),
      m_toneState(state),
      m_metering(state),
      m_list(list),
      m_outlets(outlets),
      m_window(outlets),
      m_position(outlets),
      m_listOutlet(outlets),
      m_engine(engine),
      m_toolbox(toolbox),
      m_clock(clock),
      m_tone(tone),
      m_metadata(metadata),
      m_notices(notices),
      m_meters(std::move(meters)),
      m_runPanel(runOpenPanel),
      m_queue([this](const QString& path) { return addFromQueue(path); }, notices),
      m_dropNotices(notices, {[this](const QStringList& paths) { m_queue.add(paths); },
                              [this](const QString& folder) {
                                  lookIn(folder);
                                  openFile();
                              },
                              [this](const QString& path) { addAnySound({path}); }}) {}

void TrackLoader::loadFileAdd(const QString& path, bool add) {
    if (!m_requests.isEmpty()) giveWay();
    m_requests.append({path, add});
    if (m_requests.size() > 1) return;
    for (; !m_requests.isEmpty(); m_requests.removeFirst()) load(Request(m_requests.first()));
}

// A newer request takes the place of those that add no row; the first one is being opened at this moment.
void TrackLoader::giveWay() {
    if (!m_requests.first().add) m_engine.giveUpOpening();
    m_requests.erase(
        std::remove_if(m_requests.begin() + 1, m_requests.end(), [](const Request& request) { return !request.add; }),
        m_requests.end());
}

void TrackLoader::load(const Request& request) {
    qmLog("loadFile: 1");
    if (m_movie.qtMovie) m_movie.qtMovie->stop();
    m_file.loadedPath = request.path;
    m_list.loadedRow = rowOf(request);
    qmLog("loadFile: 2");
    if (!open(request.path)) return;
    qmLog("loadFile: 3");
    showVideo();
    m_handle.quickTimeMovie = m_movie.qtMovie->quickTimeMovie();
    resetPositionSlider();
    m_clock.startCueTimer();
    carryOverSound();
    if (request.add) addEntry();
    restoreTone();
    enableMetering();
    if (m_play.isPlaying) {
        m_movie.qtMovie->play();
        m_movie.qtMovie->setRate(m_speedState.rate);
    }
    if (m_listOutlet.playList) m_listOutlet.playList->viewport()->update();  // another row may be the loaded one now
}

// A new row is made when the file is open; an old one is loaded because it is selected.
int TrackLoader::rowOf(const Request& request) const {
    const int row = request.add ? -1 : selectedRow(m_listOutlet, m_list);
    return row >= 0 && m_list.trackArray[static_cast<std::size_t>(row)] == request.path ? row : -1;
}

bool TrackLoader::open(const QString& path) {
    if (m_outlets.movieView) m_outlets.movieView->setMovie(nullptr);
    m_movie.qtMovie.reset();
    const std::string name = pathBytes(path).toStdString();
    auto movie = m_engine.movieWithFile(name);
    if (!movie) {
        qmLog("Unable to open " + name + ": " + movie.error().message);
        keepFailure(path, movie.error());
        return false;
    }
    m_failed.remove(path);
    m_movie.qtMovie = std::move(movie.value());
    return true;
}

// The rows of the file are drawn otherwise from now on.
void TrackLoader::keepFailure(const QString& path, const Error& error) {
    ++m_failures;
    m_lastFailure = {path, error};
    if (error.category == ErrorCategory::GivenUp) return;
    m_failed.insert(path, error.category);
    if (m_listOutlet.playList) m_listOutlet.playList->viewport()->update();
    const bool isTold = error.category == ErrorCategory::NoAnswer || error.category == ErrorCategory::TooLong;
    if (isTold && !m_queue.isBusy()) m_notices.tell(failureWords(path, error));
}

std::optional<ErrorCategory> TrackLoader::failureOf(const QString& path) const {
    const auto found = m_failed.constFind(path);
    return found == m_failed.cend() ? std::nullopt : std::optional(*found);
}

void TrackLoader::tellNoAnswer(const QString& path) {
    m_notices.tell(failureWords(path, {ErrorCategory::NoAnswer, {}}));
}

// The answer of another thread that looks at the file; none, and the user is told, if the file does not let it.
template <typename Question>
auto TrackLoader::ask(Question question, const QString& path) -> std::optional<decltype(question(path))> {
    if (!m_patience) return question(path);
    auto answer = aside([question, path] { return question(path); });
    const QDeadlineTimer end(kLongestAnswer);
    const auto isThere = [&answer](std::chrono::milliseconds longest) {
        return answer.wait_for(longest) == std::future_status::ready;
    };
    m_patience([&](std::chrono::milliseconds longest) { return isThere(longest) || end.hasExpired(); });
    if (isThere(std::chrono::milliseconds(0))) return answer.get();
    qmLog("no answer from " + QFile::encodeName(path).toStdString());
    tellNoAnswer(path);
    return std::nullopt;
}

void TrackLoader::showVideo() {
    const bool hasVideo = m_movie.qtMovie->hasVideoAttribute();
    if (hasVideo && m_outlets.movieView) m_outlets.movieView->setMovie(m_movie.qtMovie.get());
    if (!m_outlets.videoPanel) return;
    if (hasVideo) {
        m_outlets.videoPanel->show();
        m_outlets.videoPanel->raise();
    } else {
        m_outlets.videoPanel->hide();
    }
}

void TrackLoader::resetPositionSlider() {
    if (!m_position.cueSlider) return;
    m_position.cueSlider->setMinimum(0.0);
    m_position.cueSlider->setMaximum(m_toolbox.GetMovieDuration(m_handle.quickTimeMovie));
    m_position.cueSlider->setValue(0.0);
}

void TrackLoader::carryOverSound() {
    m_movie.qtMovie->setMuted(false);
    m_movie.qtMovie->setVolume(m_volumeState.gain);
    m_toolbox.SetMovieAudioBalance(m_handle.quickTimeMovie, m_volumeState.balance, 0);
    m_toolbox.QTSetMovieProperty(m_handle.quickTimeMovie, kQTPropertyClass_Audio, kQTAudioPropertyID_Pitch,
                                 sizeof m_pitchState.pitch, &m_pitchState.pitch);
}

void TrackLoader::addEntry() {
    const QString none = QStringLiteral(" ");
    const auto name = m_movie.qtMovie->displayNameAttribute();
    PlayListEntry entry;
    entry.track = m_file.loadedPath;
    entry.displayName = name ? QString::fromStdString(*name) : m_file.loadedPath;
    entry.artist = m_metadata.parseArtistMetaData(m_handle.quickTimeMovie).value_or(none);
    entry.album = m_metadata.parseAlbumMetaData(m_handle.quickTimeMovie).value_or(none);
    entry.duration = m_toolbox.GetMovieDuration(m_handle.quickTimeMovie);
    entry.timescale = static_cast<std::int32_t>(m_movie.qtMovie->timeScaleAttribute().value_or(0));
    entry.bass = m_toneState.bass;
    entry.treble = m_toneState.treble;
    entry.markA = 0;
    entry.markB = entry.duration;
    m_list.insertEntry(0, entry);
    m_list.loadedRow = 0;
    reloadTable(m_listOutlet.playList);
}

void TrackLoader::restoreTone() {
    const int row = selectedRow(m_listOutlet, m_list);
    if (row >= 0) m_tone.restore(row);
}

void TrackLoader::enableMetering() {
    m_toolbox.SetMovieAudioVolumeMeteringEnabled(m_handle.quickTimeMovie, kDeviceMix, true);
    std::uint32_t bands = kMeterBands;
    m_toolbox.SetMovieAudioFrequencyMeteringNumBands(m_handle.quickTimeMovie, kStereoMix, bands);
    if (!m_meters.switchAudioLevels || !m_meters.audioLevelsPreference) return;
    if (m_meters.audioLevelsPreference() && !m_metering.audioLevelIndicatorsState) m_meters.switchAudioLevels(true);
}

std::optional<QStringList> TrackLoader::askForFiles(std::unique_ptr<FilePanel> (*makePanel)(QWidget*, const QString&)) {
    const auto isThere = [](const QString& folder) { return QFileInfo::exists(folder); };
    const QString last = m_panelFolder.last();
    const bool isGone = last.isEmpty() || !ask(isThere, last).value_or(false);
    const auto panel = makePanel(m_window.mainWindow, isGone ? homeFolder() : last);
    return m_runPanel(*panel);
}

void TrackLoader::openFile() {
    const auto chosen = askForFiles(makeOpenPanel);
    if (!chosen) return;
    QStringList offered;
    for (const QString& path : *chosen)
        if (openPanelTypes().contains(pathExtension(path))) offered.append(path);  // others were typed
    if (offered.isEmpty()) return tellNotOffered(*chosen);
    m_panelFolder.remember(QFileInfo(offered.last()).path());
    m_queue.add(offered);
}

void TrackLoader::openAnySound() {
    const auto chosen = askForFiles(makeAnySoundPanel);
    if (!chosen || chosen->isEmpty()) return;
    m_panelFolder.remember(QFileInfo(chosen->last()).path());
    addAnySound(*chosen);
}

void TrackLoader::addAnySound(const QStringList& paths) {
    m_queue.add(paths, nothingPlayedWords());
}

std::optional<QString> TrackLoader::soundFile(const QUrl& address) {
    const std::optional<QString> path = pathFromUrl(address);
    const std::optional<Refusal> refusal = path ? ask(soundRefusal, *path) : addressRefusal(address);
    if (!refusal) return std::nullopt;
    if (refusal->text.isEmpty()) return path;
    m_dropNotices.refused(*refusal, path.value_or(QString()));
    return std::nullopt;
}

// A name that was typed may be of any kind.
void TrackLoader::tellNotOffered(const QStringList& chosen) {
    const QString path = chosen.value(0);
    const auto refusal = ask(panelRefusal, path);
    if (refusal && !path.isEmpty()) m_dropNotices.refused(*refusal, path);
}

std::optional<bool> TrackLoader::addFromQueue(const QString& path) {
    if (isLoading()) return std::nullopt;
    const auto resolved = ask(resolvedPath, path);
    if (!resolved) return false;
    const int failedBefore = m_failures;
    loadFileAdd(*resolved, true);
    return m_failures == failedBefore;
}

bool TrackLoader::acceptDrop(const QList<QUrl>& urls) {
    const QStringList paths = droppedFiles(urls);
    const std::optional<Refusal> refusal =
        paths.isEmpty() ? addressRefusal(urls.value(0)) : ask(dropRefusal, paths.first());
    if (!refusal) return false;
    if (!refusal->text.isEmpty()) {
        m_dropNotices.refused(*refusal, paths.value(0), droppable(paths.mid(1)));
        return false;
    }
    loadFileAdd(paths.first(), true);
    m_dropNotices.onlyFirstTaken(paths);
    return true;
}

}  // namespace qm
