#include "ui/controls/FocusRing.h"

#include <QApplication>
#include <QEvent>
#include <QPainter>
#include <QPen>
#include <QPushButton>

#include "ui/controls/Tokens.h"

namespace qm {

namespace {
constexpr int kReach = 6;  // the ring lies within this distance of the control's edges
}

QPainterPath focusPathRound(const QRect& rect) {
    constexpr double kOut = 3, kRadius = tokens::kChipRadius + kOut;
    QPainterPath path;
    path.addRoundedRect(QRectF(rect).adjusted(-kOut, -kOut, kOut, kOut), kRadius, kRadius);
    return path;
}

FocusRing::FocusRing(QWidget* window) : FocusRing(window, tokens::kFocus) {}

FocusRing::FocusRing(QWidget* window, const QColor& color) : QWidget(window), m_color(color) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAttribute(Qt::WA_NoSystemBackground);
    setFocusPolicy(Qt::NoFocus);
    hide();
    connect(qApp, &QApplication::focusChanged, this, &FocusRing::follow);
}

void FocusRing::follow(QWidget* before, QWidget* now) {
    if (m_followed) m_followed->removeEventFilter(this);
    const bool here = now && now->window() == window();
    const bool moved = here && before && before->window() == window() && qobject_cast<QPushButton*>(now);
    m_followed = here && (moved || dynamic_cast<FocusShape*>(now)) ? now : nullptr;
    if (m_followed) m_followed->installEventFilter(this);
    place();
}

void FocusRing::place() {
    const bool shown = m_followed && m_followed->isVisible();
    setVisible(shown);
    if (!shown) return;
    const QRect area(m_followed->mapTo(parentWidget(), QPoint(0, 0)), m_followed->size());
    setGeometry(area.adjusted(-kReach, -kReach, kReach, kReach));
    raise();
    drawAnew();
}

void FocusRing::drawAnew() {
    m_drawn = path();
    update();
}

bool FocusRing::eventFilter(QObject*, QEvent* event) {
    const auto type = event->type();
    if (type == QEvent::Move || type == QEvent::Resize || type == QEvent::Show || type == QEvent::Hide) place();
    // A slider's knob has taken its ring along. Painting the ring paints the control below it: without the comparison
    // each would ask for the other for ever.
    if (type == QEvent::Paint && path() != m_drawn) drawAnew();
    return false;
}

void FocusRing::paintEvent(QPaintEvent*) {
    if (!m_followed) return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(kReach, kReach);
    painter.setPen(QPen(m_color, 2));
    painter.drawPath(m_drawn);
}

QPainterPath FocusRing::path() const {
    const auto* shape = dynamic_cast<FocusShape*>(m_followed.data());
    return shape ? shape->focusPath() : focusPathRound(m_followed->rect());
}

}  // namespace qm
