#include "sound/LevelMeters.h"

#include <QLabel>
#include <algorithm>
#include <cmath>
#include <iterator>

#include "ui/controls/MeterView.h"

namespace qm {

namespace {

constexpr int kTickMilliseconds = 100;
constexpr float kBandScale = 20;
constexpr double kQuarterTurn = 90;

void collect(MeterView* view, std::uint8_t band, std::vector<LevelIndicator*>& indicators) {
    LevelIndicator* indicator = view ? view->viewWithTag(band) : nullptr;
    if (!indicator) return;
    indicator->setEnabled(false);
    indicators.push_back(indicator);
}

}  // namespace

LevelMeters::LevelMeters(Uses<const MovieHandle, MeteringState> state, LevelMeterState& meters,
                         Uses<const MeterOutlets, const LevelReadOuts> outlets, MovieToolbox& toolbox)
    : m_handle(state),
      m_metering(state),
      m_meters(meters),
      m_outlets(outlets),
      m_readOuts(outlets),
      m_toolbox(toolbox) {}

void LevelMeters::prepare() {
    m_meters.pAveragePowerLevels = std::make_unique<QTAudioVolumeLevels>();
    m_meters.pPeakHoldLevels = std::make_unique<QTAudioVolumeLevels>();
    m_meters.mFreqResults = std::make_unique<QTAudioFrequencyLevels>();
    m_meters.mArray.clear();
    m_meters.mArray.reserve(kMeterChannels * kMeterBands);
    for (MeterView* view : {m_outlets.meterView1, m_outlets.meterView2}) {
        if (view) view->setFrameRotation(kQuarterTurn);
    }
    for (MeterView* view : {m_outlets.meterView1, m_outlets.meterView2}) {
        for (std::uint8_t n = kMeterBands; n > 0; --n) collect(view, n - 1, m_meters.mArray);
    }
}

void LevelMeters::switchAudioLevels(bool on) {
    if (on) {
        m_meters.mTimer = std::make_unique<QTimer>();
        QObject::connect(m_meters.mTimer.get(), &QTimer::timeout, m_meters.mTimer.get(),
                         [this] { audioLevelFireMethod(); });
        m_meters.mTimer->start(kTickMilliseconds);
        m_metering.audioLevelIndicatorsState = true;
        return;
    }
    m_metering.audioLevelIndicatorsState = false;
    m_meters.mTimer.reset();
    for (LevelIndicator* indicator : m_meters.mArray) indicator->setFloatValue(0);
}

bool LevelMeters::readLevels() {
    const Movie movie = m_handle.quickTimeMovie;
    if (m_toolbox.GetMovieAudioFrequencyLevels(movie, kStereoMix, *m_meters.mFreqResults) != kNoErr) return false;
    return m_toolbox.GetMovieAudioVolumeLevels(movie, kDeviceMix, *m_meters.pAveragePowerLevels,
                                               *m_meters.pPeakHoldLevels) == kNoErr;
}

void LevelMeters::audioLevelFireMethod() {
    if (!m_meters.mFreqResults || !readLevels()) return;
    // The counts are the engine's; what exceeds the records or the layout goes nowhere.
    const QTAudioFrequencyLevels& results = *m_meters.mFreqResults;
    const std::uint32_t channels = std::min(results.numChannels, kMeterChannels);
    const std::uint32_t bands = std::min<std::uint32_t>(results.numFrequencyBands, std::size(results.level));
    auto indicator = m_meters.mArray.begin();
    for (std::uint8_t c = 0; c < channels; ++c) {
        for (std::uint8_t b = 0; b < bands; ++b) {
            const std::size_t place = std::size_t{c} * bands + b;
            if (place >= std::size(results.level) || indicator == m_meters.mArray.end()) break;
            (*indicator++)->setFloatValue(kBandScale * results.level[place]);
        }
        const float power = m_meters.pAveragePowerLevels->level[c];
        if (c == 0)
            showPower(m_readOuts.audioLevelLeft, m_left, power);
        else
            showPower(m_readOuts.audioLevelRight, m_right, power);
    }
}

// With one decimal. A text is made only when that has changed, or when something else was shown meanwhile.
void LevelMeters::showPower(QLabel* readOut, Power& shown, float decibels) {
    if (!readOut) return;
    const double tenths = std::round(double{decibels} * 10) + 0.0;  // no "-0.0"
    if (tenths == shown.tenths && !shown.text.isNull() && readOut->text() == shown.text) return;
    shown = {tenths, QString::number(tenths / 10, 'f', 1)};
    readOut->setText(shown.text);
}

void LevelMeters::displayLevels() {
    if (m_outlets.audioLevelsPanel) showPanel(!m_outlets.audioLevelsPanel->isVisible());
}

void LevelMeters::showPanel(bool shown) {
    QWidget* panel = m_outlets.audioLevelsPanel;
    if (!panel) return;
    panel->setVisible(shown);
    if (shown) panel->raise();
}

}  // namespace qm
