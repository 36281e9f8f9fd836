#include "ui/controls/ChoiceButton.h"

#include <QKeyEvent>

namespace qm {

ChoiceButton::ChoiceButton(QWidget* parent) : FaceButton(parent) {
    setCheckable(true);
    setAutoExclusive(true);
    setFocusPolicy(Qt::NoFocus);
    connect(this, &QAbstractButton::toggled, this,
            [this](bool chosen) { setFocusPolicy(chosen ? Qt::TabFocus : Qt::NoFocus); });
}

void ChoiceButton::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_Space:
            if (!event->isAutoRepeat()) click();
            return;
        case Qt::Key_Left:
        case Qt::Key_Right:
        case Qt::Key_Up:
        case Qt::Key_Down:
            return QAbstractButton::keyPressEvent(event);
        default:
            FaceButton::keyPressEvent(event);
    }
}

}  // namespace qm
