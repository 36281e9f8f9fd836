#include "library/TrackLoader.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QFileInfo>
#include <QUrl>
#include <algorithm>
#include <chrono>
#include <string>
#include <utility>

#include "engine/api/Aside.h"
#include "engine/api/Log.h"
#include "library/FileAcceptance.h"
#include "library/FilePath.h"
#include "library/SupportFolder.h"
#include "player/OutletSetters.h"
#include "ui/FilePanel.h"
#include "ui/controls/FadingWindow.h"
#include "ui/controls/MovieView.h"

namespace qm {

namespace {

constexpr std::chrono::seconds kLongestAnswer{2};  // that a file is waited for

}  // namespace

TrackLoader::TrackLoader(PlayerState& state, PlayListArrays& list, const Outlets& outlets, MediaEngine& engine,
                         PositionClock& clock, ToneControl& tone, TrackMetadata& metadata, Notices& notices,
                         LevelMeterHooks meters)
    : m_state(state),
      m_list(list),
      m_outlets(outlets),
      m_engine(engine),
      m_clock(clock),
      m_tone(tone),
      m_metadata(metadata),
      m_notices(notices),
      m_meters(std::move(meters)),
      m_runPanel(runOpenPanel) {}

void TrackLoader::loadFileAdd(const QString& path, bool add) {
    if (!m_wishes.isEmpty()) giveWay();
    m_wishes.append({path, add});
    if (m_wishes.size() > 1) return;
    for (; !m_wishes.isEmpty(); m_wishes.removeFirst()) load(Wish(m_wishes.first()));
}

// The first one is being opened at this moment.
void TrackLoader::giveWay() {
    if (!m_wishes.first().add) m_engine.giveUpOpening();
    m_wishes.erase(std::remove_if(m_wishes.begin() + 1, m_wishes.end(), [](const Wish& wish) { return !wish.add; }),
                   m_wishes.end());
}

void TrackLoader::load(const Wish& wish) {
    qmLog("loadFile: 1");
    if (m_state.qtMovie) m_state.qtMovie->stop();
    m_state.loadedPath = wish.path;
    m_list.loadedRow = rowOf(wish);
    qmLog("loadFile: 2");
    if (!open(wish.path)) return;
    qmLog("loadFile: 3");
    showVideo();
    m_state.quickTimeMovie = m_state.qtMovie->quickTimeMovie();
    resetPositionSlider();
    m_clock.startCueTimer();
    carryOverSound();
    if (wish.add) addEntry();
    restoreTone();
    enableMetering();
    if (m_state.isPlaying) {
        m_state.qtMovie->play();
        m_state.qtMovie->setRate(m_state.rate);
    }
    if (m_outlets.playList) m_outlets.playList->viewport()->update();  // another row may be the loaded one now
}

// A new row is made when the file is open; an old one is loaded because it is selected.
int TrackLoader::rowOf(const Wish& wish) const {
    const int row = wish.add ? -1 : selectedRow(m_outlets, m_list);
    return row >= 0 && m_list.trackArray[static_cast<std::size_t>(row)] == wish.path ? row : -1;
}

bool TrackLoader::open(const QString& path) {
    if (m_outlets.movieView) m_outlets.movieView->setMovie(nullptr);
    m_state.qtMovie.reset();
    const std::string name = pathBytes(path).toStdString();
    auto movie = m_engine.movieWithFile(name);
    if (!movie) {
        ++m_failures;
        qmLog("Unable to open " + name + ": " + movie.error().message);
        if (movie.error().category == ErrorCategory::NoAnswer) tellNoAnswer(path);
        if (movie.error().category == ErrorCategory::TooLong)
            m_notices.tell(QFileInfo(path).fileName() + u' ' + QString::fromStdString(movie.error().message));
        return false;
    }
    m_state.qtMovie = std::move(movie.value());
    return true;
}

void TrackLoader::tellNoAnswer(const QString& path) {
    m_notices.tell(QStringLiteral("%1 cannot be read").arg(QFileInfo(path).fileName()));
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
    const bool hasVideo = m_state.qtMovie->hasVideoAttribute();
    if (hasVideo && m_outlets.movieView) m_outlets.movieView->setMovie(m_state.qtMovie.get());
    if (!m_outlets.videoPanel) return;
    if (hasVideo) {
        m_outlets.videoPanel->show();
        m_outlets.videoPanel->raise();
    } else {
        m_outlets.videoPanel->hide();
    }
}

void TrackLoader::resetPositionSlider() {
    if (!m_outlets.cueSlider) return;
    m_outlets.cueSlider->setMinimum(0.0);
    m_outlets.cueSlider->setMaximum(m_engine.GetMovieDuration(m_state.quickTimeMovie));
    m_outlets.cueSlider->setValue(0.0);
}

void TrackLoader::carryOverSound() {
    m_state.qtMovie->setMuted(false);
    m_state.qtMovie->setVolume(m_state.gain);
    m_engine.SetMovieAudioBalance(m_state.quickTimeMovie, m_state.balance, 0);
    m_engine.QTSetMovieProperty(m_state.quickTimeMovie, kQTPropertyClass_Audio, kQTAudioPropertyID_Pitch,
                                sizeof m_state.pitch, &m_state.pitch);
}

void TrackLoader::addEntry() {
    const QString none = QStringLiteral(" ");
    const auto name = m_state.qtMovie->displayNameAttribute();
    PlayListEntry entry;
    entry.track = m_state.loadedPath;
    entry.displayName = name ? QString::fromStdString(*name) : m_state.loadedPath;
    entry.artist = m_metadata.parseArtistMetaData(m_state.quickTimeMovie).value_or(none);
    entry.album = m_metadata.parseAlbumMetaData(m_state.quickTimeMovie).value_or(none);
    entry.duration = m_engine.GetMovieDuration(m_state.quickTimeMovie);
    entry.timescale = static_cast<std::int32_t>(m_state.qtMovie->timeScaleAttribute().value_or(0));
    entry.bass = m_state.bass;
    entry.treble = m_state.treble;
    entry.markA = 0;
    entry.markB = entry.duration;
    m_list.insertEntry(0, entry);
    m_list.loadedRow = 0;
    reloadTable(m_outlets.playList);
}

void TrackLoader::restoreTone() {
    const int row = selectedRow(m_outlets, m_list);
    if (row < 0) return;
    m_state.bass = m_list.bassArray[row];
    showValue(m_outlets.bassSlider, m_state.bass);
    showAttributedTitle(m_outlets.bassResetButton, QString::number(m_state.bass), m_state.controlColorAttributes);
    m_state.treble = m_list.trebleArray[row];
    showValue(m_outlets.trebleSlider, m_state.treble);
    showAttributedTitle(m_outlets.trebleResetButton, QString::number(m_state.treble), m_state.controlColorAttributes);
    m_tone.bassAndTrebleUpdate();
}

void TrackLoader::enableMetering() {
    m_engine.SetMovieAudioVolumeMeteringEnabled(m_state.quickTimeMovie, kDeviceMix, true);
    std::uint32_t bands = kMeterBands;
    m_engine.SetMovieAudioFrequencyMeteringNumBands(m_state.quickTimeMovie, kStereoMix, bands);
    if (!m_meters.switchAudioLevels || !m_meters.audioLevelsPreference) return;
    if (m_meters.audioLevelsPreference() && !m_state.audioLevelIndicatorsState) m_meters.switchAudioLevels(true);
}

void TrackLoader::openFile() {
    const auto isThere = [](const QString& folder) { return QFileInfo::exists(folder); };
    const QString last = m_panelFolder.last();
    const bool isGone = last.isEmpty() || !ask(isThere, last).value_or(false);
    const auto panel = makeOpenPanel(m_outlets.mainWindow, isGone ? homeFolder() : last);
    const auto chosen = m_runPanel(*panel);
    if (!chosen) return;
    for (const QString& path : *chosen) {
        if (!openPanelTypes().contains(pathExtension(path))) continue;  // typed, not offered
        m_panelFolder.remember(QFileInfo(path).path());
        if (const auto resolved = ask(resolvedPath, path)) loadFileAdd(*resolved, true);
    }
}

bool TrackLoader::acceptDrop(const QList<QUrl>& urls) {
    const auto path = firstDroppedFile(urls);
    if (!path || !ask(isValidFileForDrop, *path).value_or(false)) return false;
    loadFileAdd(*path, true);
    return true;
}

}  // namespace qm
