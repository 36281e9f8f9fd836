#include "ui/controls/FadingWindow.h"

#include <QApplication>
#include <QCloseEvent>
#include <QWindow>
#include <algorithm>

#include "ui/controls/DisplayFlush.h"
#include "ui/controls/WindowOrder.h"

namespace qm {

namespace {

// Wayland has no such thing, and the toolkit complains each time it is asked for.
bool desktopFadesWindows() {
    static const bool fades = !QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
    return fades;
}

}  // namespace

void FadingWindow::setAlphaValue(double alpha) {
    m_alphaValue = alpha;
    if (!desktopFadesWindows()) return;
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
