#include "ui/controls/WaveformStrip.h"

#include <QPaintEvent>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <cmath>

#include "ui/controls/Fonts.h"
#include "ui/controls/PixelGrid.h"
#include "ui/controls/Tokens.h"

namespace qm {

namespace {

constexpr double kInset = 10;  // the same as the position slider's knob radius
constexpr double kBarPitch = 3;
constexpr double kVerticalRoom = 10;  // above and below the tallest bar together
constexpr double kCentreLine = 0.75;  // half its height
constexpr double kShortestBar = 1.2;
constexpr double kCapReach = 6;  // columns that the playhead touches on each side
constexpr double kFlagWidth = 17, kFlagHeight = 16;

}  // namespace

std::pair<FlagPlace, FlagPlace> flagPlaces(double left, double right, double width) {
    if (right - left >= 2 * kFlagWidth) return {{left, true}, {right - kFlagWidth, false}};
    FlagPlace first{std::max(0.0, left - kFlagWidth), false};
    FlagPlace second{std::max(right, first.left + kFlagWidth), true};
    if (second.left + kFlagWidth > width) {
        second.left = width - kFlagWidth;
        first.left = std::min(first.left, second.left - kFlagWidth);
    }
    return {first, second};
}

WaveformStrip::WaveformStrip(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

void WaveformStrip::setPeaks(std::vector<float> peaks) {
    m_peaks = std::move(peaks);
    update();
}

void WaveformStrip::setPosition(double position) {
    const double bounded = std::isnan(position) ? 0 : std::clamp(position, 0.0, 1.0);
    m_position = bounded;
    const double before = xOf(m_drawnPosition), after = xOf(bounded);
    if (!isSeenToMove(after - before, devicePixelRatioF())) return;
    m_drawnPosition = bounded;
    const double left = std::min(before, after) - kCapReach, right = std::max(before, after) + kCapReach;
    update(QRect(static_cast<int>(std::floor(left)), 0, static_cast<int>(std::ceil(right - left)) + 1, height()));
}

void WaveformStrip::setLoop(std::optional<std::pair<double, double>> loop, bool looping) {
    if (m_loop == loop && m_looping == looping) return;
    m_loop = loop;
    m_looping = looping;
    update();
}

void WaveformStrip::setActive(bool active) {
    if (m_active == active) return;
    m_active = active;
    update();
}

int WaveformStrip::barCount() const {
    return std::max(1, static_cast<int>((width() - 2 * kInset) / kBarPitch));
}

double WaveformStrip::xOf(double fraction) const {
    return kInset + fraction * (width() - 2 * kInset);
}

// The mean of the peaks in a bar's time: the loudest alone would make most music a full block.
double WaveformStrip::sizeOfBar(int bar, int bars) const {
    const size_t count = m_peaks.size();
    const size_t first = std::min(count - 1, count * static_cast<size_t>(bar) / static_cast<size_t>(bars));
    const size_t last = std::clamp(count * static_cast<size_t>(bar + 1) / static_cast<size_t>(bars), first + 1, count);
    double sum = 0;
    for (size_t i = first; i < last; ++i) sum += std::clamp(m_peaks[i], 0.0f, 1.0f);
    return sum / static_cast<double>(last - first);
}

QColor WaveformStrip::barColor(double fraction) const {
    if (!m_active) return {0x3A, 0x3E, 0x43};
    const bool played = fraction < m_drawnPosition;
    if (!m_loop || !m_looping) return played ? tokens::kAqua : QColor(0x6B, 0x72, 0x7A);
    const auto [begin, end] = std::minmax(m_loop->first, m_loop->second);
    if (fraction < begin || fraction > end) return {0x50, 0x56, 0x5D};
    return played ? tokens::kAqua : tokens::kAmber;
}

void WaveformStrip::paintEvent(QPaintEvent* event) {
    if (event->rect() == rect()) m_drawnPosition = m_position;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    fillRounded(painter, rect(), tokens::kChipRadius, tokens::kStripGround, event->rect());
    if (m_loop) {
        QColor wash = tokens::kAmber;
        wash.setAlphaF(0.13f);
        const double a = xOf(m_loop->first), b = xOf(m_loop->second);
        painter.fillRect(QRectF(std::min(a, b), 0, std::abs(b - a), height()), wash);
    }
    paintBars(painter, event->rect());
    if (m_loop) {
        const double a = xOf(m_loop->first), b = xOf(m_loop->second);
        const bool inOrder = a <= b;
        const auto [left, right] = flagPlaces(std::min(a, b), std::max(a, b), width());
        paintMark(painter, a, inOrder ? left : right, u'A');
        paintMark(painter, b, inOrder ? right : left, u'B');
    }
    if (m_active) paintPlayhead(painter);
    strokeRounded(painter, rect(), tokens::kChipRadius, QColor(255, 255, 255, 15));
}

void WaveformStrip::paintBars(QPainter& painter, const QRectF& clip) const {
    const int bars = barCount();
    const double middle = height() / 2.0;
    painter.setPen(Qt::NoPen);
    for (int bar = 0; bar < bars; ++bar) {
        const double fraction = (bar + 0.5) / bars;
        const double x = xOf(fraction);
        if (x < clip.left() - 2 || x > clip.right() + 2) continue;
        const double half = m_peaks.empty()
                                ? kCentreLine
                                : std::max(kShortestBar, sizeOfBar(bar, bars) * (height() - kVerticalRoom) / 2);
        painter.setBrush(barColor(fraction));
        painter.drawRoundedRect(QRectF(x - 1, middle - half, 2, 2 * half), 1, std::min(1.0, half));
    }
}

void WaveformStrip::paintMark(QPainter& painter, double x, const FlagPlace& place, QChar letter) const {
    constexpr double kFlagRadius = 4, kLetterBaseline = 12, kTowardsLine = 0.2;
    painter.fillRect(QRectF(x - 1, 0, 2, height()), tokens::kAmber);
    // The corner that is not at the line is round.
    const double line = place.hangsRight ? place.left : place.left + kFlagWidth;
    const double side = place.hangsRight ? 1 : -1;
    QPainterPath flag(QPointF(line, 0));
    flag.lineTo(line + side * kFlagWidth, 0);
    flag.lineTo(line + side * kFlagWidth, kFlagHeight - kFlagRadius);
    flag.quadTo(line + side * kFlagWidth, kFlagHeight, line + side * (kFlagWidth - kFlagRadius), kFlagHeight);
    flag.lineTo(line, kFlagHeight);
    flag.closeSubpath();
    painter.fillPath(flag, tokens::kAmber);
    painter.setFont(uiFont(11, 700));
    painter.setPen(tokens::kAmberInk);
    const double middle = line + side * (kFlagWidth / 2 - kTowardsLine);
    drawLineAt(painter, {middle - textWidth(painter.font(), letter) / 2, kLetterBaseline}, letter);
}

void WaveformStrip::paintPlayhead(QPainter& painter) const {
    const double x = xOf(m_drawnPosition);
    painter.fillRect(QRectF(x - 1, 0, 2, height()), tokens::kWhite);
    QPainterPath cap(QPointF(x - 5, 0));
    cap.lineTo(x + 5, 0);
    cap.lineTo(x, 6);
    cap.closeSubpath();
    painter.fillPath(cap, tokens::kWhite);
}

}  // namespace qm
