#include "ui/controls/FadingWindow.h"

#include <QCloseEvent>
#include <algorithm>

#include "ui/controls/WindowOrder.h"

namespace qm {

void FadingWindow::setAlphaValue(double alpha) {
    m_alphaValue = alpha;
    setWindowOpacity(std::clamp(alpha, 0.0, 1.0));
}

void FadingWindow::makeKeyAndOrderFront() {
    keyWindow = true;
    qm::makeKeyAndOrderFront(*this);
    emit madeKey();
}

void FadingWindow::closeEvent(QCloseEvent* event) {
    if (willClose) willClose();
    event->accept();
}

}  // namespace qm
