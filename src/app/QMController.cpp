#include "app/QMController.h"

#include <QApplication>
#include <QHeaderView>
#include <QLabel>
#include <QScrollBar>
#include <cstdlib>

#include "app/WindowPosition.h"
#include "library/DropHover.h"
#include "ui/controls/FadingWindow.h"
#include "ui/controls/PlayListView.h"
#include "ui/controls/RoundedBox.h"

namespace qm {

namespace {

constexpr double kControlFontPoints = 13;
constexpr double kLevelsBoxRadius = 5;

TextAttributes controlContentAttributes() {
    QFont font = QApplication::font();
    font.setPointSizeF(kControlFontPoints);
    return {font, Qt::white};
}

}  // namespace

QMController::QMController(MediaEngine& engine, const MovieRegistry& movies, CaptureEngine& capture, Prefs& store,
                           const ImageProvider& images)
    : prefs(store),
      m_exit([](int status) { std::_Exit(status); }),
      m_toolbox(movies),
      m_metaDataToolbox(movies),
      m_chrome(*this, *this),
      m_clock(*this, *this, m_toolbox),
      m_info(*this, *this, *this),
      m_loop(*this, *this, *this, m_toolbox, m_clock),
      m_speed(*this, *this, m_clock),
      m_pitch(*this, *this, m_toolbox),
      m_tone(*this, *this, *this, m_toolbox),
      m_volume(*this, *this, m_toolbox, m_speed, m_pitch, m_tone),
      m_levels(*this, *this, *this, m_toolbox),
      m_preferences(*this, *this, prefs, m_tone, m_volume, m_levels),
      m_panes(*this, images),
      m_metadata(m_metaDataToolbox),
      m_loader(*this, *this, *this, engine, m_toolbox, m_clock, m_tone, m_metadata, m_notices, meterHooks()),
      m_table(*this, *this, *this, m_loader, m_loop, m_info, m_history),
      m_file(*this, *this, m_notices),
      m_copy(*this, m_file, m_notices, [this](const PlayListArrays& rows) { m_table.bringBackList(rows); }),
      m_transport(*this, *this, *this, m_toolbox, m_clock, m_speed, m_table, m_info),
      m_alert(*this, *this, m_speed, m_transport),
      m_export(*this, *this, m_alert, m_notices),
      m_takes(m_notices, *this),
      m_recorder(*this, *this, *this, capture, m_takes) {
    trackIcon = images(QStringLiteral("type_AAC.png"));
    nonM4aIcon = images(QStringLiteral("type_aiff.png"));
    videoIcon = images(QStringLiteral("type_VIDEO"));
    m_file.loadPlayList();
    m_preferences.storeMissingAudioLevels();
    controlColorAttributes = controlContentAttributes();
}

LevelMeterHooks QMController::meterHooks() {
    return {[this] { return prefs.boolForKey(prefkeys::kAudioLevels); }, [this](bool on) { switchAudioLevels(on); }};
}

void QMController::awakeFromNib() {
    if (playList) playList->setModel(&m_table);
    m_chrome.startFadeIn();
    if (playList) connect(playList, &PlayListView::rowActivated, this, &QMController::rowDoubleClicked);
    m_levels.prepare();
    m_panes.buildToolbar();
    if (mainWindow) restoreWindowPosition(*mainWindow);
    setUpFields();
    setUpPlayList();
    if (levelsBox) levelsBox->setCornerRadius(kLevelsBoxRadius);
    m_preferences.applyStoredTextColor();
    m_chrome.setAboutPanelBackground();
    nudgeSecondColumn();
    m_preferences.applyDefaultGain();
    m_preferences.orderLevelsPanel();
    m_chrome.setTrackInfoWindowBackground();
    if (mainWindow) mainWindow->willClose = [this] { windowWillClose(mainWindow); };
}

// Numbers in the size field have their thousands grouped and no decimals; text set by the program stands as it is.
void QMController::setUpFields() {
    if (!movieSize) return;
    movieSize->setProperty("numberFormat", QStringLiteral("#,###"));
    movieSize->setProperty("allowsDecimals", false);
}

void QMController::setUpPlayList() {
    if (!playList) return;
    playList->verticalScrollBar()->setProperty("controlTint", QStringLiteral("graphite"));
    playList->setProperty("selectionHighlightStyle", QStringLiteral("sourceList"));
    playList->setAcceptDrops(true);
    playList->acceptDrop = [this](const QList<QUrl>& files) { return m_loader.acceptDrop(files); };
    new DropHover(*playList);
    playList->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
}

// One pixel narrower, then wider again: the width stays, but the table lays itself out anew.
void QMController::nudgeSecondColumn() {
    if (!playList) return;
    const int column = playList->horizontalHeader()->logicalIndex(1);
    if (column < 0) return;
    playList->setColumnWidth(column, playList->columnWidth(column) - 1);
    playList->setColumnWidth(column, playList->columnWidth(column) + 1);
}

void QMController::checkSoftwareUpdate() {
    if (m_makeManualUpdater) m_makeManualUpdater();
}

void QMController::applicationWillTerminate() {
    prefs.setBool(prefkeys::kToolbarOpen, toolbar && !toolbar->isHidden());
    keepWhatMustSurvive();
    cleanupWhenClosing();
}

void QMController::keepWhatMustSurvive() {
    savePlayList();
}

void QMController::windowWillClose(const QWidget* window) {
    if (!window || window != mainWindow) return;
    savePlayList();
    cleanupWhenClosing();
    m_exit(0);
}

void QMController::cleanupWhenClosing() {
    if (mainWindow) saveWindowPosition(*mainWindow);
    m_export.cancelExport();
}

}  // namespace qm
