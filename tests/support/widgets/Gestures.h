// What a hand does to a widget: presses, moves, double-clicks, wheel turns and keys, sent as the system sends them.
#pragma once

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWheelEvent>
#include <QWidget>

namespace qm {

inline void sendMouse(QWidget& widget, QEvent::Type type, const QPointF& at, Qt::MouseButton button,
                      Qt::MouseButtons held) {
    QMouseEvent event(type, at, widget.mapToGlobal(at), button, held, Qt::NoModifier);
    QApplication::sendEvent(&widget, &event);
}

inline void pressMouse(QWidget& widget, const QPointF& at) {
    sendMouse(widget, QEvent::MouseButtonPress, at, Qt::LeftButton, Qt::LeftButton);
}

inline void moveMouse(QWidget& widget, const QPointF& to) {
    sendMouse(widget, QEvent::MouseMove, to, Qt::NoButton, Qt::LeftButton);
}

inline void releaseMouse(QWidget& widget, const QPointF& at) {
    sendMouse(widget, QEvent::MouseButtonRelease, at, Qt::LeftButton, Qt::NoButton);
}

inline void clickMouse(QWidget& widget, const QPointF& at) {
    pressMouse(widget, at);
    releaseMouse(widget, at);
}

inline void doubleClickMouse(QWidget& widget, const QPointF& at) {
    sendMouse(widget, QEvent::MouseButtonDblClick, at, Qt::LeftButton, Qt::LeftButton);
    releaseMouse(widget, at);
}

inline void turnWheel(QWidget& widget, double notches) {
    const QPointF at(widget.rect().center());
    QWheelEvent event(at, widget.mapToGlobal(at), {}, QPoint(0, static_cast<int>(120 * notches)), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&widget, &event);
}

// Answers whether the widget itself took the key.
inline bool pressKey(QWidget& widget, int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QKeyEvent event(QEvent::KeyPress, key, modifiers);
    QApplication::sendEvent(&widget, &event);
    return event.isAccepted();
}

}  // namespace qm
