#include "ui/controls/MeterView.h"

#include <QPaintEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "ui/controls/Tokens.h"

namespace qm {

namespace {

// Lengths in pixels.
constexpr int kBarGap = 5, kBars = 4;
constexpr int kCell = 6, kCellGap = 2;
constexpr double kCellRadius = 1;
constexpr int kLength = LevelIndicator::kCells * (kCell + kCellGap) - kCellGap;

constexpr int kQuietCells = 13, kLoudCells = 18;  // the last cell of each colour; above stands red
const QColor kUnlit{255, 255, 255, 22};
const QColor kQuiet{0x2C, 0xB9, 0xCA};

QColor colorOfCell(int cell) {
    return cell < kQuietCells ? kQuiet : cell < kLoudCells ? tokens::kAquaHigh : tokens::kRed;
}

// A rectangle in a space that is turned to the left about itself.
QRect turned(QRect rect, QSize space, int quarterTurns) {
    for (; quarterTurns > 0; --quarterTurns) {
        rect = QRect(rect.y(), space.width() - rect.x() - rect.width(), rect.height(), rect.width());
        space.transpose();
    }
    return rect;
}

}  // namespace

LevelIndicator::LevelIndicator(int tag, QWidget* parent, int thickness)
    : QWidget(parent), m_tag(tag), m_thickness(thickness) {
    setObjectName(QStringLiteral("levelIndicator%1").arg(tag));
}

QSize LevelIndicator::uprightSize() const {
    return {kLength, m_thickness};
}

int LevelIndicator::cellsOf(float value) {
    return static_cast<int>(std::lround(std::clamp<float>(value, 0, kCells)));
}

void LevelIndicator::setFloatValue(float value) {
    const int before = litCells();
    m_value = std::isnan(value) ? 0 : value;
    updateCells(before, litCells());
}

void LevelIndicator::setPeakValue(float value) {
    const int before = cellsOf(m_peak);
    m_peak = std::isnan(value) ? 0 : value;
    const int now = cellsOf(m_peak);
    if (now == before) return;
    updateCells(before - 1, before);
    updateCells(now - 1, now);
}

QRect LevelIndicator::placeOfCell(int cell) const {
    return turned({cell * (kCell + kCellGap), 0, kCell, m_thickness}, uprightSize(), m_turns);
}

// Those between two counts of lit cells.
void LevelIndicator::updateCells(int one, int other) {
    const auto [first, last] = std::minmax(one, other);
    if (first != last) update(placeOfCell(first) | placeOfCell(last - 1));
}

void LevelIndicator::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const int lit = litCells(), peak = cellsOf(m_peak) - 1;
    for (int cell = 0; cell < kCells; ++cell) {
        const QRect place = placeOfCell(cell);
        if (!place.intersects(event->rect())) continue;
        painter.setBrush(cell < lit || cell == peak ? colorOfCell(cell) : kUnlit);
        painter.drawRoundedRect(place, kCellRadius, kCellRadius);
    }
}

MeterView::MeterView(QWidget* parent) : QWidget(parent) {
    for (int tag = kBars - 1; tag >= 0; --tag) new LevelIndicator(tag, this);
    layOut();
}

void MeterView::setFrameRotation(double degrees) {
    m_rotation = degrees;
    layOut();
}

void MeterView::layOut() {
    const QSize space(kLength, kBars * (LevelIndicator::kThickness + kBarGap) - kBarGap);
    const int turns = ((static_cast<int>(std::lround(m_rotation / 90)) % 4) + 4) % 4;
    setFixedSize(turned(QRect(QPoint(), space), space, turns).size());
    for (LevelIndicator* indicator : findChildren<LevelIndicator*>(Qt::FindDirectChildrenOnly)) {
        const int row = kBars - 1 - indicator->tag();
        const QRect place(QPoint(0, row * (LevelIndicator::kThickness + kBarGap)), indicator->uprightSize());
        indicator->setQuarterTurns(turns);
        indicator->setGeometry(turned(place, space, turns));
    }
}

LevelIndicator* MeterView::viewWithTag(int wanted) const {
    for (LevelIndicator* indicator : findChildren<LevelIndicator*>())
        if (indicator->tag() == wanted) return indicator;
    return nullptr;
}

}  // namespace qm
