#include "remote/RemotePlayer.h"

#include <QApplication>
#include <QDBusObjectPath>
#include <QElapsedTimer>
#include <QUrl>
#include <algorithm>
#include <cmath>
#include <utility>

#include "app/state/FilePath.h"
#include "app/state/OutletSetters.h"
#include "engine/api/Log.h"
#include "ui/actions/ActionTable.h"
#include "ui/controls/FadingWindow.h"

namespace qm {

namespace {

constexpr int kWatchMilliseconds = 200;
constexpr double kMicroseconds = 1e6;  // in a second
constexpr qlonglong kJump = 500'000;   // microseconds off the expected place that count as a jump
constexpr char kNoTrack[] = "/org/mpris/MediaPlayer2/TrackList/NoTrack";

RemotePlayer::Clock runningClock() {
    QElapsedTimer timer;
    timer.start();
    return [timer] { return timer.elapsed(); };
}

}  // namespace

RemotePlayer::RemotePlayer(const PlayerState& state, const PlayListArrays& list, const Outlets& outlets,
                           MovieToolbox& toolbox, const AbLoop& loop, ActionTable& actions)
    : m_state(state),
      m_list(list),
      m_outlets(outlets),
      m_toolbox(toolbox),
      m_loop(loop),
      m_actions(actions),
      m_loaded(state, list, outlets),
      m_clock(runningClock()) {
    m_timer.setInterval(kWatchMilliseconds);
    connect(&m_timer, &QTimer::timeout, this, &RemotePlayer::refresh);
}

// --- what a remote can do --------------------------------------------------------------------------------------------

void RemotePlayer::play() {
    m_playsOpened = m_opening > 0;
    if (m_playsOpened) return;
    if (isAtEnd()) stop();
    if (!m_state.isPlaying || !m_state.qtMovie) m_actions.send(ActionId::playForward);
}

void RemotePlayer::pause() {
    m_playsOpened = false;
    m_actions.send(ActionId::pause);
}

void RemotePlayer::playPause() {
    status() == Status::Playing ? pause() : play();
}

void RemotePlayer::stop() {
    m_actions.send(ActionId::pause);
    m_actions.send(ActionId::goToStart);
}

void RemotePlayer::next() {
    goToRow(neighbour(1));
}

void RemotePlayer::previous() {
    goToRow(neighbour(-1));
}

void RemotePlayer::goToRow(int row) {
    if (row < 0) return;
    m_outlets.playList->selectRowIndex(row);
    m_actions.send(m_state.isPlaying ? ActionId::rowDoubleClicked : ActionId::selectTrack);
}

void RemotePlayer::seek(qlonglong offset) {
    if (!canSeek()) return;
    // Bounded first, so that the sum cannot overflow.
    const qlonglong target = position() + std::clamp(offset, -length() - 1, length() + 1);
    target > length() ? next() : moveTo(std::max(0LL, target));
}

void RemotePlayer::setPosition(const QString& id, qlonglong target) {
    if (canSeek() && id == trackId() && target >= 0 && target <= length()) moveTo(target);
}

void RemotePlayer::moveTo(qlonglong target) {
    const double scale = static_cast<double>(m_state.qtMovie->timeScaleAttribute().value_or(0));
    m_outlets.cueSlider->moveByUser(static_cast<double>(target) * scale / kMicroseconds);
    m_observed = observe();
    emit seeked(m_observed.position);
}

void RemotePlayer::setRate(double rate) {
    if (std::isnan(rate)) return qmLog("remote: a rate that is no number is ignored");
    if (!m_outlets.speedSlider) return;
    if (m_outlets.speedSlider->nearestValue(rate) == 0.0) return pause();
    m_outlets.speedSlider->moveByUser(rate);
}

void RemotePlayer::setVolume(double volume) {
    if (std::isnan(volume)) return qmLog("remote: a volume that is no number is ignored");
    if (m_outlets.gainSlider) m_outlets.gainSlider->moveByUser(volume);
}

bool RemotePlayer::openUri(const QString& uri) {
    const bool free = !QApplication::activeModalWidget() && m_outlets.playList;
    beginOpening();
    const bool taken = free && m_outlets.playList->takeFiles({QUrl(uri)});
    if (!taken) qmLog("remote: not opened: " + uri.toStdString());
    endOpening(taken);
    return taken;
}

void RemotePlayer::beginOpening() {
    ++m_opening;
}

// A drop leaves the selection where it is; whoever opens a file from elsewhere means it to be played next.
void RemotePlayer::endOpening(bool taken) {
    --m_opening;
    if (taken && m_outlets.playList && m_loaded.row() >= 0) m_outlets.playList->selectRowIndex(m_loaded.row());
    if (m_opening == 0 && std::exchange(m_playsOpened, false)) play();
}

// The switch may stand on for a track that does not loop: it belonged to the one before.
void RemotePlayer::setLoops(bool loops) {
    if (loops == m_loop.repeatedPassage().has_value()) return;
    if (loops && selectedRow(m_outlets, m_list) < 0 && m_loaded.row() >= 0)
        m_outlets.playList->selectRowIndex(m_loaded.row());
    if (loops == m_state.isLooping) m_actions.send(ActionId::loopSwitch);
    m_actions.send(ActionId::loopSwitch);
}

void RemotePlayer::raise() {
    if (!m_outlets.mainWindow) return;
    if (m_outlets.mainWindow->isMinimized()) m_outlets.mainWindow->showNormal();
    m_outlets.mainWindow->makeKeyAndOrderFront();
}

// Once the caller has its answer. Not by the action, which may ask somebody who is not there.
void RemotePlayer::quit() {
    QTimer::singleShot(0, this, &RemotePlayer::quitRequested);
}

// --- what a remote sees ----------------------------------------------------------------------------------------------

bool RemotePlayer::isAtEnd() const {
    return m_state.qtMovie && m_state.isPlaying && m_toolbox.IsMovieDone(m_state.quickTimeMovie);
}

bool RemotePlayer::standsAtStart() const {
    const int row = selectedRow(m_outlets, m_list);
    const std::int64_t start = m_state.isLooping && row >= 0 ? m_list.markAarray[static_cast<std::size_t>(row)] : 0;
    return m_state.qtMovie->currentTime().timeValue == start;
}

RemotePlayer::Status RemotePlayer::status() const {
    if (!m_state.qtMovie) return Status::Stopped;
    if (m_state.isPlaying && !isAtEnd()) return Status::Playing;
    return standsAtStart() ? Status::Stopped : Status::Paused;
}

bool RemotePlayer::canSeek() const {
    const bool locked = m_state.isLooping && m_state.markBset;
    return m_state.qtMovie && m_outlets.cueSlider && !locked && length() > 0;
}

// While a dialog asks something, the track stays.
int RemotePlayer::neighbour(int step) const {
    if (!m_outlets.playList || QApplication::activeModalWidget()) return -1;
    const int here = m_loaded.row() >= 0 ? m_loaded.row() : selectedRow(m_outlets, m_list);
    const int row = here + step;
    return row >= 0 && row < m_list.count() ? row : -1;
}

qlonglong RemotePlayer::microseconds(std::int64_t units) const {
    const long scale = m_state.qtMovie ? m_state.qtMovie->timeScaleAttribute().value_or(0) : 0;
    return scale > 0 ? std::llround(static_cast<double>(units) / static_cast<double>(scale) * kMicroseconds) : 0;
}

qlonglong RemotePlayer::length() const {
    return m_state.qtMovie ? microseconds(m_toolbox.GetMovieDuration(m_state.quickTimeMovie)) : 0;
}

qlonglong RemotePlayer::position() const {
    return m_state.qtMovie ? microseconds(m_state.qtMovie->currentTime().timeValue) : 0;
}

QString RemotePlayer::trackId() const {
    return m_state.qtMovie ? QStringLiteral("/org/quillmere/track/%1").arg(m_state.quickTimeMovie)
                           : QString::fromLatin1(kNoTrack);
}

QVariantMap RemotePlayer::metadata() const {
    QVariantMap data{{QStringLiteral("mpris:trackid"), QVariant::fromValue(QDBusObjectPath(trackId()))}};
    if (!m_state.qtMovie) return data;
    data.insert(QStringLiteral("mpris:length"), length());
    data.insert(QStringLiteral("xesam:title"), m_loaded.title());
    data.insert(QStringLiteral("xesam:url"), QString::fromLatin1(pathUrl(m_state.loadedPath)));
    if (!m_loaded.artist().isEmpty()) data.insert(QStringLiteral("xesam:artist"), QStringList(m_loaded.artist()));
    if (!m_loaded.album().isEmpty()) data.insert(QStringLiteral("xesam:album"), m_loaded.album());
    return data;
}

QVariantMap RemotePlayer::properties() const {
    static constexpr const char* kStatus[] = {"Playing", "Paused", "Stopped"};
    const Slider* speed = m_outlets.speedSlider;
    const Slider* volume = m_outlets.gainSlider;
    return {{QStringLiteral("PlaybackStatus"), QString::fromLatin1(kStatus[static_cast<int>(status())])},
            {QStringLiteral("Rate"), static_cast<double>(m_state.rate)},
            {QStringLiteral("MinimumRate"), speed ? speed->minimum() : 1.0},
            {QStringLiteral("MaximumRate"), speed ? speed->maximum() : 1.0},
            {QStringLiteral("Volume"), volume ? volume->value() : static_cast<double>(m_state.gain)},
            {QStringLiteral("Metadata"), metadata()},
            {QStringLiteral("CanGoNext"), neighbour(1) >= 0},
            {QStringLiteral("CanGoPrevious"), neighbour(-1) >= 0},
            {QStringLiteral("LoopStatus"), m_loop.repeatedPassage() ? QStringLiteral("Track") : QStringLiteral("None")},
            {QStringLiteral("CanPlay"), m_list.count() > 0},
            {QStringLiteral("CanPause"), m_state.qtMovie != nullptr},
            {QStringLiteral("CanSeek"), canSeek()},
            {QStringLiteral("CanControl"), true}};
}

// --- telling what changes --------------------------------------------------------------------------------------------

void RemotePlayer::watch() {
    m_told = properties();
    m_observed = observe();
    connect(&m_actions, &ActionTable::sent, this, &RemotePlayer::refresh, Qt::UniqueConnection);
    m_timer.start();
}

void RemotePlayer::refresh() {
    const QVariantMap now = properties();
    QVariantMap changed;
    for (auto property = now.begin(); property != now.end(); ++property)
        if (m_told.value(property.key()) != property.value()) changed.insert(property.key(), property.value());
    m_told = now;
    if (!changed.isEmpty()) emit propertiesChanged(changed);
    lookForJump();
}

RemotePlayer::Observation RemotePlayer::observe() const {
    const double speed = status() == Status::Playing ? static_cast<double>(m_state.rate) : 0;
    return {m_state.qtMovie ? m_state.quickTimeMovie : 0, position(), m_clock(), speed};
}

void RemotePlayer::lookForJump() {
    const Observation now = observe();
    const auto played = static_cast<qlonglong>(static_cast<double>(now.at - m_observed.at) * 1000 * m_observed.speed);
    const bool jumped = now.movie != 0 && now.movie == m_observed.movie &&
                        std::abs(now.position - (m_observed.position + played)) > kJump;
    m_observed = now;
    if (jumped) emit seeked(now.position);
}

}  // namespace qm
