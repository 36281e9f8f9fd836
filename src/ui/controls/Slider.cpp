#include "ui/controls/Slider.h"

#include <QAccessible>
#include <QKeyEvent>
#include <QLinearGradient>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

#include "ui/controls/PixelGrid.h"
#include "ui/controls/Tokens.h"
#include "ui/controls/ValueBubble.h"

namespace qm {

namespace {

constexpr int kBubbleDelayMs = 400;
constexpr double kWheelNotch = 120;
constexpr double kKnobReach = 2;  // pixels beyond its radius: its shadow and its edge

QColor white(double opacity) {
    return QColor::fromRgbF(1, 1, 1, static_cast<float>(opacity));
}
QColor black(double opacity) {
    return QColor::fromRgbF(0, 0, 0, static_cast<float>(opacity));
}

}  // namespace

Slider::Slider(QWidget* parent) : QWidget(parent) {
    setFocusPolicy(Qt::TabFocus);
    setMouseTracking(true);
    m_bubbleDelay.setSingleShot(true);
    m_bubbleDelay.setInterval(kBubbleDelayMs);
    connect(&m_bubbleDelay, &QTimer::timeout, this, &Slider::showBubble);
    updatePointer();
}

void Slider::setValue(double value) {
    if (std::isnan(value)) return;
    double bounded = std::clamp(value, m_minimum, m_maximum);
    if (bounded == 0.0) bounded = 0.0;  // a negative zero becomes the plain one
    if (bounded == m_value && std::signbit(bounded) == std::signbit(m_value)) return;
    m_value = bounded;
    if (m_bubble && m_bubble->isVisible()) placeBubble();
    if (QAccessible::isActive()) {
        QAccessibleValueChangeEvent changed(this, m_value);
        QAccessible::updateAccessibility(&changed);
    }
    paintMove();
}

// A cursor moves a fraction of a pixel at a time: only where the knob was and is, and not before it can be seen.
void Slider::paintMove() {
    const double from = xOfValue(m_drawnValue), to = knobX();
    if (!isSeenToMove(to - from, devicePixelRatioF())) return;
    m_drawnValue = m_value;
    const double reach = m_look.knobRadius + kKnobReach;
    update(QRectF(std::min(from, to) - reach, 0, std::abs(to - from) + 2 * reach, height()).toAlignedRect());
}

void Slider::setRange(double minimum, double maximum) {
    if (std::isnan(minimum) || std::isnan(maximum)) return;
    m_minimum = minimum;
    m_maximum = std::max(minimum, maximum);
    setValue(m_value);
    update();
}

void Slider::setMinimum(double minimum) {
    setRange(minimum, std::max(minimum, m_maximum));
}

void Slider::setMaximum(double maximum) {
    setRange(std::min(m_minimum, maximum), maximum);
}

void Slider::setResetValue(double value) {
    if (m_resetValue == value) return;
    m_resetValue = value;
    update();
}

void Slider::setLocked(bool locked) {
    if (m_locked == locked) return;
    m_locked = locked;
    updatePointer();
    update();
}

void Slider::setLoopRegion(std::optional<std::pair<double, double>> region) {
    if (m_region == region) return;
    m_region = region;
    update();
}

void Slider::setLook(const SliderLook& look) {
    m_look = look;
    updateGeometry();
    update();
}

void Slider::setDimmed(bool dimmed) {
    if (m_dimmed == dimmed) return;
    m_dimmed = dimmed;
    update();
}

void Slider::setReadableForm(std::function<QString(double)> form) {
    m_readable = std::move(form);
}

QString Slider::readableValue() const {
    return m_readable ? m_readable(m_value) : QString::number(m_value, 'g', 6);
}

void Slider::setSpokenForm(std::function<QString(double)> form) {
    m_spoken = std::move(form);
}

QString Slider::spokenValue() const {
    return m_spoken ? m_spoken(m_value) : readableValue();
}

double Slider::xOfValue(double value) const {
    const double radius = m_look.knobRadius;
    const double span = m_maximum - m_minimum;
    const double part = span > 0 ? (std::clamp(value, m_minimum, m_maximum) - m_minimum) / span : 0;
    return radius + part * (width() - 2 * radius);
}

double Slider::valueOfX(double x) const {
    const double radius = m_look.knobRadius;
    const double travel = width() - 2 * radius;
    if (travel <= 0) return m_minimum;
    return m_minimum + std::clamp((x - radius) / travel, 0.0, 1.0) * (m_maximum - m_minimum);
}

QSize Slider::sizeHint() const {
    return {120, minimumSizeHint().height()};
}

QSize Slider::minimumSizeHint() const {
    const int side = static_cast<int>(std::ceil(m_look.knobRadius));
    double bottom = m_look.knobCentreY + m_look.knobRadius;
    for (const SliderTick& tick : m_look.ticks) bottom = std::max(bottom, m_look.knobCentreY + side + 2 + tick.length);
    return {4 * side, static_cast<int>(std::ceil(bottom))};
}

QPainterPath Slider::focusPath() const {
    QPainterPath path;
    const double radius = m_look.knobRadius + 3;
    path.addEllipse(QPointF(knobX(), m_look.knobCentreY), radius, radius);
    return path;
}

// --- drawing ---------------------------------------------------------------------------------------------------------

void Slider::paintEvent(QPaintEvent* event) {
    if (event->rect() == rect()) m_drawnValue = m_value;
    QPainter painter(this);
    if (!m_dimmed && isEnabled()) return paintAll(painter);
    // Dimmed as a whole, so that the groove does not shine through the knob.
    QPixmap layer(size() * devicePixelRatioF());
    layer.setDevicePixelRatio(devicePixelRatioF());
    layer.fill(Qt::transparent);
    QPainter onLayer(&layer);
    paintAll(onLayer);
    onLayer.end();
    painter.setOpacity(tokens::kDimOpacity);
    painter.drawPixmap(0, 0, layer);
}

void Slider::paintAll(QPainter& painter) const {
    painter.setRenderHint(QPainter::Antialiasing);
    paintGroove(painter);
    paintKnob(painter);
}

void Slider::paintGroove(QPainter& painter) const {
    const double radius = m_look.knobRadius, groove = m_look.grooveHeight, y = m_look.knobCentreY;
    const QRectF whole(radius - groove / 2, y - groove / 2, width() - 2 * radius + groove, groove);
    fillRounded(painter, whole, groove / 2, black(0.55));
    strokeRounded(painter, whole, groove / 2, tokens::kGrooveEdge);
    painter.setPen(Qt::NoPen);

    const auto part = [&](double from, double to) {
        const double a = xOfValue(std::min(from, to)), z = xOfValue(std::max(from, to));
        return QRectF(a, whole.top(), z - a, groove);
    };
    if (m_region) {
        QColor amber = tokens::kAmber;
        amber.setAlphaF(0.55f);
        painter.fillRect(part(m_region->first, m_region->second), amber);
    }
    const QRectF fill = part(m_resetValue, m_drawnValue);
    if (fill.width() > 0.5) {
        painter.setBrush(m_look.neutralFill ? tokens::kIcon : tokens::kAqua);
        painter.drawRoundedRect(fill, 1, 1);
    }
    for (const SliderTick& tick : m_look.ticks)
        painter.fillRect(QRectF(xOfValue(tick.value) - 0.5, y + radius + 2, 1, tick.length), white(tick.opacity));
    if (m_resetValue > m_minimum) {
        painter.setBrush(tokens::kNeutralBar);
        painter.drawRoundedRect(QRectF(xOfValue(m_resetValue) - 1, whole.top() - 3, 2, groove + 6), 1, 1);
    }
}

void Slider::paintKnob(QPainter& painter) const {
    const double radius = m_look.knobRadius;
    const QPointF centre(xOfValue(m_drawnValue), m_look.knobCentreY);
    painter.setPen(Qt::NoPen);
    painter.setBrush(black(0.45));
    painter.drawEllipse(centre + QPointF(0, 1), radius, radius);
    const int lightness = m_held ? 86 : m_hovered ? 106 : 100;
    QLinearGradient face(0, centre.y() - radius, 0, centre.y() + radius);
    face.setColorAt(0, QColor(0xFA, 0xFB, 0xFC).lighter(lightness));
    face.setColorAt(1, QColor(0xB4, 0xBB, 0xC3).lighter(m_hovered && !m_held ? 114 : lightness));
    painter.setBrush(face);
    painter.drawEllipse(centre, radius, radius);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(black(0.35), 1));
    painter.drawEllipse(centre, radius - 0.5, radius - 0.5);
    painter.setPen(Qt::NoPen);
    painter.setBrush(m_locked ? tokens::kAmberLow : QColor(0x2A, 0x2E, 0x33));
    const double dot = radius * (m_locked ? 0.5 : 0.28);
    painter.drawEllipse(centre, dot, dot);
}

// --- the user's hand -------------------------------------------------------------------------------------------------

double Slider::nearestValue(double value) const {
    const double size = std::abs(value);
    if (!(size < m_gap)) return value;
    return size < m_gap / 2 ? 0 : std::copysign(m_gap, value);
}

void Slider::moveByUser(double value) {
    setValue(nearestValue(value));
    if (QAccessible::isActive()) {
        QAccessibleEvent spoken(this, QAccessible::DescriptionChanged);
        QAccessible::updateAccessibility(&spoken);
    }
    emit action(m_value);
}

void Slider::stepByUser(int steps) {
    double value = m_value;
    for (int taken = 0; taken < std::abs(steps); ++taken) value = afterStep(value, steps < 0 ? -1 : 1);
    moveByUser(value);
}

// Compares with a tolerance, because the gap's edge may come from a float.
double Slider::afterStep(double value, int direction) const {
    const double next = value + direction * m_step;
    if (std::abs(next) >= m_gap) return next;
    const bool goesOut = value * direction >= 0;
    if (goesOut) return direction * m_gap;
    return std::abs(value) > m_gap + m_step / 1000 ? -direction * m_gap : 0;
}

bool Slider::isOnKnob(const QPointF& position) const {
    return std::hypot(position.x() - knobX(), position.y() - m_look.knobCentreY) <= m_look.knobRadius + 1;
}

void Slider::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return event->ignore();
    m_held = true;
    m_grip = isOnKnob(event->position()) ? event->position().x() - knobX() : 0;
    showBubble();
    update();
    if (!isOnKnob(event->position())) moveByUser(valueOfX(event->position().x()));
}

void Slider::mouseMoveEvent(QMouseEvent* event) {
    if (m_held) moveByUser(valueOfX(event->position().x() - m_grip));
}

void Slider::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return event->ignore();
    m_held = false;
    if (!m_hovered) hideBubble();
    update();
}

void Slider::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !isOnKnob(event->position())) return mousePressEvent(event);
    moveByUser(m_doubleClickValue.value_or(m_resetValue));
}

void Slider::wheelEvent(QWheelEvent* event) {
    m_wheelRest += event->angleDelta().y() != 0 ? event->angleDelta().y() : event->angleDelta().x();
    const int notches = static_cast<int>(m_wheelRest / kWheelNotch);
    m_wheelRest -= notches * kWheelNotch;
    if (notches != 0) stepByUser(notches);
    event->accept();
}

void Slider::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Up)
        stepByUser(1);
    else if (event->key() == Qt::Key_Down)
        stepByUser(-1);
    else
        event->ignore();
}

void Slider::enterEvent(QEnterEvent*) {
    m_hovered = true;
    m_bubbleDelay.start();
    update();
}

void Slider::leaveEvent(QEvent*) {
    m_hovered = false;
    if (!m_held) hideBubble();
    update();
}

void Slider::hideEvent(QHideEvent*) {
    m_held = false;
    hideBubble();
}

void Slider::updatePointer() {
    setCursor(m_locked ? Qt::ForbiddenCursor : Qt::PointingHandCursor);
}

void Slider::showBubble() {
    m_bubbleDelay.stop();
    if (!m_readable) return;
    if (!m_bubble || m_bubble->parentWidget() != window()) {
        delete m_bubble;
        m_bubble = new ValueBubble(window());
    }
    placeBubble();
}

void Slider::placeBubble() {
    const QPoint tip(static_cast<int>(knobX()), static_cast<int>(m_look.knobCentreY - m_look.knobRadius));
    m_bubble->showAt(mapTo(window(), tip), readableValue());
}

void Slider::hideBubble() {
    m_bubbleDelay.stop();
    if (m_bubble) m_bubble->hide();
}

}  // namespace qm
