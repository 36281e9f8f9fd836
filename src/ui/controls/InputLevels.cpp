#include "ui/controls/InputLevels.h"

#include "ui/controls/MeterView.h"

namespace qm {

namespace {

constexpr int kThickness = 4, kGap = 3;  // pixels
constexpr float kDecibelsPerCell = 3;

float cells(float decibels) {
    return decibels / kDecibelsPerCell + LevelIndicator::kCells;
}

}  // namespace

InputLevels::InputLevels(QWidget* parent)
    : QWidget(parent), m_bars{new LevelIndicator(0, this, kThickness), new LevelIndicator(1, this, kThickness)} {
    const QSize bar = m_bars[0]->uprightSize();
    m_bars[0]->setGeometry(QRect(QPoint(), bar));
    m_bars[1]->setGeometry(QRect(QPoint(0, kThickness + kGap), bar));
    setFixedSize(bar.width(), 2 * kThickness + kGap);
    setAccessibleName(tr("Input level"));
}

void InputLevels::setLevels(const QTCaptureAudioLevels& levels) {
    for (std::size_t channel = 0; channel < m_bars.size(); ++channel) {
        m_bars[channel]->setFloatValue(cells(levels.averagePower[channel]));
        m_bars[channel]->setPeakValue(cells(levels.peakHold[channel]));
    }
}

}  // namespace qm
