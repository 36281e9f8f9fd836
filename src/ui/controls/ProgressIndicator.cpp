#include "ui/controls/ProgressIndicator.h"

#include <QLinearGradient>
#include <QPainter>

#include "ui/controls/Tokens.h"

namespace qm {

namespace {

constexpr double kLightWidth = 0.38;  // of the bar
constexpr int kStepMilliseconds = 33;
constexpr int kRunMilliseconds = 1600;  // through the whole bar

}  // namespace

ProgressIndicator::ProgressIndicator(QWidget* parent) : ProgressBar(parent) {
    setRange(0, 0);
    m_timer.setInterval(kStepMilliseconds);
    connect(&m_timer, &QTimer::timeout, this, qOverload<>(&QWidget::update));
}

void ProgressIndicator::startAnimation() {
    m_running.start();
    m_timer.start();
}

void ProgressIndicator::stopAnimation() {
    m_timer.stop();
    update();
}

void ProgressIndicator::paintFilling(QPainter& painter) {
    if (!isAnimating()) return;
    const double part = static_cast<double>(m_running.elapsed() % kRunMilliseconds) / kRunMilliseconds;
    const double light = width() * kLightWidth;
    const double left = part * (width() + light) - light;
    QLinearGradient shine(left, 0, left + light, 0);
    QColor dark = tokens::kAqua;
    dark.setAlpha(0);
    shine.setStops({{0, dark}, {0.3, tokens::kAqua}, {0.7, tokens::kAqua}, {1, dark}});
    painter.fillRect(QRectF(left, 0, light, height()), shine);
}

}  // namespace qm
