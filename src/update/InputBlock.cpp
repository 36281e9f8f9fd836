#include "update/InputBlock.h"

#include <QCoreApplication>
#include <QEvent>

namespace qm {

namespace {

bool isAct(QEvent::Type type) {
    switch (type) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick:
        case QEvent::MouseMove:
        case QEvent::Wheel:
        case QEvent::KeyPress:
        case QEvent::KeyRelease:
        case QEvent::ShortcutOverride:
        case QEvent::Shortcut:
        case QEvent::ContextMenu:
        case QEvent::DragEnter:
        case QEvent::DragMove:
        case QEvent::Drop:
        case QEvent::TouchBegin:
        case QEvent::TouchUpdate:
        case QEvent::TouchEnd:
        case QEvent::TabletPress:
        case QEvent::TabletMove:
        case QEvent::TabletRelease:
            return true;
        default:
            return false;
    }
}

}  // namespace

InputBlock::InputBlock() {
    QCoreApplication::instance()->installEventFilter(this);
}

InputBlock::~InputBlock() {
    for (QWindow* window : m_closing)
        if (window)
            QMetaObject::invokeMethod(
                window, [window] { window->close(); }, Qt::QueuedConnection);
}

bool InputBlock::eventFilter(QObject* watched, QEvent* event) {
    auto* window = qobject_cast<QWindow*>(watched);
    if (window && event->type() == QEvent::Close) {
        m_closing.append(window);
        event->ignore();
        return true;
    }
    return isAct(event->type());
}

}  // namespace qm
