#include "ui/controls/FocusRing.h"

#include <QApplication>
#include <QEvent>
#include <QPainter>
#include <QPen>

#include "ui/controls/Tokens.h"

namespace qm {

namespace {
constexpr int kReach = 6;  // the ring lies within this distance of the control's edges
}

FocusRing::FocusRing(QWidget* window) : FocusRing(window, tokens::kFocus) {}

FocusRing::FocusRing(QWidget* window, const QColor& color) : QWidget(window), m_color(color) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAttribute(Qt::WA_NoSystemBackground);
    setFocusPolicy(Qt::NoFocus);
    hide();
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) { follow(now); });
}

void FocusRing::follow(QWidget* widget) {
    if (m_followed) m_followed->removeEventFilter(this);
    const bool shows = widget && widget->window() == window() && dynamic_cast<FocusShape*>(widget);
    m_followed = shows ? widget : nullptr;
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
    update();
}

bool FocusRing::eventFilter(QObject*, QEvent* event) {
    const auto type = event->type();
    if (type == QEvent::Move || type == QEvent::Resize || type == QEvent::Show || type == QEvent::Hide) place();
    if (type == QEvent::UpdateRequest || type == QEvent::Paint) update();
    return false;
}

void FocusRing::paintEvent(QPaintEvent*) {
    const auto* shape = dynamic_cast<FocusShape*>(m_followed.data());
    if (!shape) return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(kReach, kReach);
    painter.setPen(QPen(m_color, 2));
    painter.drawPath(shape->focusPath());
}

}  // namespace qm
