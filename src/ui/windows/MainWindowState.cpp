#include "ui/windows/MainWindowState.h"

#include <QAction>
#include <QLabel>
#include <QStringList>
#include <algorithm>
#include <optional>
#include <utility>

#include "ui/ReadableForms.h"
#include "ui/controls/ImageButton.h"
#include "ui/controls/ImageView.h"
#include "ui/controls/MovieView.h"
#include "ui/controls/PlayListView.h"
#include "ui/controls/Slider.h"
#include "ui/controls/TimeLabel.h"
#include "ui/controls/Tokens.h"
#include "ui/controls/WaveformStrip.h"
#include "ui/windows/Decks.h"
#include "ui/windows/HeroView.h"
#include "ui/windows/MainToolbar.h"
#include "ui/windows/MainWindow.h"
#include "ui/windows/PlayListCard.h"
#include "ui/windows/SoundCards.h"

namespace qm {

namespace {

constexpr int kRefreshMilliseconds = 100;
constexpr double kRestOpacity = 0.7;

QString spokenMark(QTTime mark) {
    return mark.timeScale > 0 ? spokenDuration(static_cast<double>(mark.timeValue) / mark.timeScale) : QString();
}

void describe(QWidget& control, const QString& description) {
    if (control.accessibleDescription() != description) control.setAccessibleDescription(description);
}

std::optional<std::pair<double, double>> inOrder(const std::optional<std::pair<double, double>>& marks) {
    if (!marks) return std::nullopt;
    return std::pair(std::min(marks->first, marks->second), std::max(marks->first, marks->second));
}

QColor restColor(bool loaded) {
    QColor color = tokens::kText3;
    if (!loaded) color.setAlphaF(static_cast<float>(kRestOpacity));
    return color;
}

}  // namespace

MainWindowState::MainWindowState(MainWindow& window, const PlayerState& state, const PlayListArrays& list,
                                 const AbLoop& loop, const Outlets& outlets)
    : QObject(&window),
      m_window(window),
      m_state(state),
      m_list(list),
      m_loop(loop),
      m_outlets(outlets),
      m_loaded(state, list, outlets) {
    m_timer.setInterval(kRefreshMilliseconds);
    connect(&m_timer, &QTimer::timeout, this, &MainWindowState::refresh);
    connect(&window.actions(), &ActionTable::sent, this, &MainWindowState::refresh);
    m_outlets.cueSlider->setReadableForm([this](double value) { return readableTime(secondsOf(value)); });
    m_outlets.cueSlider->setSpokenForm(
        [this](double value) { return spokenTime(secondsOf(value), secondsOf(m_outlets.cueSlider->maximum())); });
}

void MainWindowState::start() {
    refresh();
    m_timer.start();
}

void MainWindowState::refresh() {
    refreshPlayList();
    refreshHero();
    refreshPositionSlider();
    refreshStrip();
    refreshWaveform();
    refreshLoopTimes();
    refreshDimming();
    refreshPanelStates();
    refreshRecording();
    m_window.grid().speed->showRate(m_state.rate);
}

double MainWindowState::secondsOf(double value) const {
    const long scale = m_state.qtMovie ? m_state.qtMovie->timeScaleAttribute().value_or(0) : 0;
    return scale > 0 ? value / static_cast<double>(scale) : 0;
}

// Of the loaded track, in units of its time scale; none while both are at rest.
std::optional<std::pair<double, double>> MainWindowState::changedMarks() const {
    const int row = m_loaded.row();
    if (row < 0) return std::nullopt;
    const auto i = static_cast<size_t>(row);
    if (m_list.markAarray[i] == 0 && m_list.markBarray[i] == m_list.durations[i]) return std::nullopt;
    return std::pair(static_cast<double>(m_list.markAarray[i]), static_cast<double>(m_list.markBarray[i]));
}

QString MainWindowState::trackByLine() const {
    QStringList parts = {m_loaded.artist(), m_loaded.album()};
    parts.removeAll(QString());
    const QString people = parts.join(QStringLiteral(" — "));
    if (m_hasPlayed) return people;
    return people.isEmpty() ? tr("Press Space to play.") : tr("%1 · press Space to play").arg(people);
}

// Hints for the first use: what to do next, until it has been done once.
QString MainWindowState::hint() const {
    if (m_list.count() == 0) return tr("Add a track, select it, then press Space.");
    if (m_hasPlayed) return tr("Double-click a track to play it.");
    const bool isSelected = m_outlets.playList->selectedRow() >= 0;
    return isSelected ? tr("Press Space to play the selected track.")
                      : tr("Select a track, then press Space, or double-click it.");
}

void MainWindowState::refreshHero() {
    HeroView& hero = *m_window.grid().hero;
    m_hasPlayed = m_hasPlayed || (m_state.qtMovie && m_state.isPlaying);
    if (m_state.qtMovie)
        hero.showTrack(m_loaded.title(), trackByLine(), true);
    else
        hero.showTrack(tr("No track loaded"), hint(), false);
    // What is heard, or will be of the next track: the slider may show another gain than the player's.
    const bool silent = (m_state.qtMovie ? m_state.qtMovie->volume() : m_state.gain) == 0;
    hero.showStates({speedTag(m_state.rate), pitchTag(m_state.pitch),
                     m_loop.repeatedPassage() ? QStringLiteral("Loop A–B") : QString(),
                     silent ? tr("Silent") : QString()});
    hero.showLargeTags(speedPercent(m_state.rate), pitchSteps(m_state.pitch));
    hero.keepClockInPlace();
}

void MainWindowState::refreshPositionSlider() {
    Slider& cue = *m_outlets.cueSlider;
    const bool locked = m_state.qtMovie && m_state.isLooping && m_state.markBset;
    cue.setLocked(locked);
    const QString tip = locked ? tr("Switch the loop off to move freely") : tr("Drag to move through the track");
    if (cue.toolTip() != tip) cue.setToolTip(tip);
    const double second = m_state.qtMovie ? m_state.qtMovie->timeScaleAttribute().value_or(1) : 0.01;
    cue.setStep(second);
    cue.setDimmed(!m_state.qtMovie);
}

// What the movie repeats, whatever the rows say; without a loop the marks of the loaded track.
void MainWindowState::refreshStrip() {
    WaveformStrip& strip = *m_outlets.waveformStrip;
    Slider& cue = *m_outlets.cueSlider;
    const auto repeated = m_loop.repeatedPassage();
    cue.setLoopRegion(inOrder(repeated));
    auto marks = repeated ? repeated : changedMarks();
    const double length = cue.maximum() - cue.minimum();
    if (marks && length > 0)
        marks = {std::clamp(marks->first / length, 0.0, 1.0), std::clamp(marks->second / length, 0.0, 1.0)};
    strip.setActive(m_state.qtMovie != nullptr);
    strip.setLoop(marks, repeated.has_value());
    strip.setPosition(length > 0 ? (cue.value() - cue.minimum()) / length : 0);
}

// The waveform comes in while the track plays.
void MainWindowState::refreshWaveform() {
    const Movie movie = m_state.qtMovie ? m_state.qtMovie->quickTimeMovie() : 0;
    const bool isSame = movie == m_pictured;
    if (isSame && m_isPictured) return;
    Waveform waveform = movie != 0 ? m_state.qtMovie->waveform() : Waveform{};
    m_isPictured = movie == 0 || waveform.isComplete;
    if (isSame && waveform.known == m_partsShown) return;
    m_pictured = movie;
    m_partsShown = waveform.known;
    m_outlets.waveformStrip->setPeaks(std::move(waveform.peaks));
}

// Coloured and spoken for the row whose times they are, which need not be the selected one any more.
void MainWindowState::refreshLoopTimes() {
    const bool loaded = m_state.qtMovie != nullptr;
    const ShownMarks* shown = loaded && m_loop.shownMarks() ? &*m_loop.shownMarks() : nullptr;
    const bool showsB = shown && shown->bIsShown;
    describe(*m_outlets.markAButton, shown ? spokenMark(shown->a) : QString());
    describe(*m_outlets.markBButton, shown ? spokenMark(shown->b) : QString());
    m_outlets.loopIn->setTextColor(shown && shown->aChanged ? tokens::kAmberHigh : restColor(loaded));
    m_outlets.loopOut->setTextColor(showsB && shown->bChanged ? tokens::kAmberHigh : restColor(loaded));
}

void MainWindowState::refreshDimming() {
    const bool nothingLoaded = m_state.qtMovie == nullptr;
    MainGrid& grid = m_window.grid();
    grid.transport->setDimmed(nothingLoaded);
    grid.loop->setDimmed(nothingLoaded);
    grid.playList->setRemoveDimmed(m_outlets.playList->selectedRow() < 0);
    if (ToolButton* exporting = m_window.tools().tool(ActionId::exportMovie)) exporting->setDimmed(nothingLoaded);
    if (ToolButton* clear = m_window.tools().tool(ActionId::clearList)) clear->setDimmed(m_list.count() == 0);
    if (ToolButton* info = m_window.tools().tool(ActionId::displayInfo)) info->setDimmed(nothingLoaded);
}

void MainWindowState::refreshRecording() {
    const QString spoken = m_state.isRecording ? tr("recording") : tr("not recording");
    for (QWidget* control :
         {static_cast<QWidget*>(m_outlets.audioRecordButton), static_cast<QWidget*>(m_outlets.audioRecordStatus)})
        if (control->accessibleDescription() != spoken) control->setAccessibleDescription(spoken);
}

// The tool is lit and the menu item checked while what they show is shown, also when it was closed by its frame.
void MainWindowState::refreshPanelStates() {
    // A tool that only brings its window says that it is shown, and nothing while it is not.
    const auto sign = [this](ActionId id, bool shown, bool hidesAgain = true) {
        if (QAction* action = m_window.actions().action(id)) action->setChecked(shown);
        if (ToolButton* tool = m_window.tools().tool(id))
            tool->setOn(shown || hidesAgain ? std::optional(shown) : std::nullopt);
    };
    const auto isShown = [](const QWidget* panel) { return panel && panel->isVisible(); };
    sign(ActionId::displayLevels, isShown(m_outlets.audioLevelsPanel));
    sign(ActionId::displayInfo, isShown(m_outlets.trackInfoWindow));
    sign(ActionId::displayTrackFormat, !m_outlets.format->isHidden());
    sign(ActionId::audioRecordOpen, isShown(m_outlets.audioRecordingWindow), false);
    sign(ActionId::openPrefsWindow, isShown(m_outlets.prefsWindow), false);
    const bool hasVideo = m_outlets.movieView && m_outlets.movieView->movie();
    for (const ActionId id : {ActionId::displayVideo, ActionId::fillScreenWithVideo})
        if (QAction* action = m_window.actions().action(id)) action->setEnabled(hasVideo);
}

// Another row may have become the loaded track, which the table draws in bold.
void MainWindowState::refreshPlayList() {
    const QString path = m_state.qtMovie ? m_state.loadedPath : QString();
    if (path == m_shownPath) return;
    m_shownPath = path;
    m_outlets.playList->viewport()->update();
}

}  // namespace qm
