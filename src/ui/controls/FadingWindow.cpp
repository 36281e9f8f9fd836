#include "ui/controls/FadingWindow.h"

#include <QApplication>
#include <QCloseEvent>
#include <QWindow>
#include <algorithm>

#include "ui/controls/DisplayFlush.h"
#include "ui/controls/Wayland.h"
#include "ui/controls/WindowOrder.h"

namespace qm {

void FadingWindow::setAlphaValue(double alpha) {
    m_alphaValue = alpha;
    if (isOnWayland()) return;  // where the toolkit warns at each step
    setWindowOpacity(std::clamp(alpha, 0.0, 1.0));
    flushDisplay();
}

void FadingWindow::makeKeyAndOrderFront() {
    keyWindow = true;
    setAcceptsKeys(true);
    show();
    raise();
    QWidget* panel = QApplication::activeModalWidget();
    qm::makeKeyAndOrderFront(panel ? *panel : *this);
    emit madeKey();
}

// setWindowFlag() would hide a window that is shown.
void FadingWindow::setAcceptsKeys(bool accepts) {
    overrideWindowFlags(windowFlags().setFlag(Qt::WindowDoesNotAcceptFocus, !accepts));
    if (windowHandle()) windowHandle()->setFlag(Qt::WindowDoesNotAcceptFocus, !accepts);
}

void FadingWindow::closeEvent(QCloseEvent* event) {
    if (mayClose && !mayClose()) {
        event->ignore();
        return;
    }
    if (willClose) willClose();
    event->accept();
}

}  // namespace qm
