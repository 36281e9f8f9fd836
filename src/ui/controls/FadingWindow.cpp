#include "ui/controls/FadingWindow.h"

#include <QCloseEvent>
#include <algorithm>

namespace qm {

void FadingWindow::setAlphaValue(double alpha) {
    m_alphaValue = alpha;
    setWindowOpacity(std::clamp(alpha, 0.0, 1.0));
}

void FadingWindow::makeKeyAndOrderFront() {
    keyWindow = true;
    show();
    raise();
    activateWindow();
    emit madeKey();
}

void FadingWindow::closeEvent(QCloseEvent* event) {
    if (willClose) willClose();
    event->accept();
}

}  // namespace qm
