#include "ui/controls/ProgressBar.h"

#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <cmath>

#include "ui/controls/PixelGrid.h"
#include "ui/controls/Tokens.h"

namespace qm {

namespace {

constexpr int kHeight = 6;
constexpr double kRadius = kHeight / 2.0;
constexpr int kWhole = 1000;
const QColor kGroove{0, 0, 0, 128};

}  // namespace

ProgressBar::ProgressBar(QWidget* parent) : QProgressBar(parent) {
    setRange(0, kWhole);
    setTextVisible(false);
    setFixedHeight(kHeight);
}

void ProgressBar::setFraction(double done) {
    setValue(static_cast<int>(std::lround(std::clamp(done, 0.0, 1.0) * kWhole)));
}

void ProgressBar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath groove;
    groove.addRoundedRect(rect(), kRadius, kRadius);
    painter.fillPath(groove, kGroove);
    strokeRounded(painter, rect(), kRadius, tokens::kLine);
    painter.setClipPath(groove);
    painter.setPen(Qt::NoPen);
    paintFilling(painter);
}

void ProgressBar::paintFilling(QPainter& painter) {
    painter.setBrush(tokens::kAqua);
    const double filled = static_cast<double>(width()) * value() / kWhole;
    painter.drawRoundedRect(QRectF(0, 0, filled, height()), kRadius, kRadius);
}

}  // namespace qm
