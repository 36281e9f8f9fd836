#include "ui/controls/FaceButton.h"

#include <QAccessible>
#include <QKeyEvent>

#include "ui/controls/Tokens.h"

namespace qm {

FaceButton::FaceButton(QWidget* parent) : QAbstractButton(parent) {
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::TabFocus);
    setCursor(Qt::PointingHandCursor);
}

void FaceButton::setDimmed(bool dimmed) {
    if (m_dimmed == dimmed) return;
    m_dimmed = dimmed;
    update();
}

QPainterPath FaceButton::focusPath() const {
    return focusPathRound(rect());
}

void FaceButton::onStateChanged() {
    if (QAccessible::isActive()) {
        QAccessible::State on;
        on.checked = true;
        QAccessibleStateChangeEvent changed(this, on);
        QAccessible::updateAccessibility(&changed);
        QAccessibleEvent described(this, QAccessible::DescriptionChanged);
        QAccessible::updateAccessibility(&described);
    }
    update();
}

double FaceButton::drawingOpacity() const {
    return m_dimmed || !isEnabled() ? tokens::kDimOpacity : 1.0;
}

void FaceButton::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        if (!event->isAutoRepeat()) click();
        return;
    }
    event->ignore();
}

void FaceButton::keyReleaseEvent(QKeyEvent* event) {
    event->ignore();
}

}  // namespace qm
