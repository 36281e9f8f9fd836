// Ordering windows. Main thread only.
#pragma once

#include <QWidget>

namespace qm {

// Shows the window above the others and asks for the keyboard; a desktop may refuse it.
inline void makeKeyAndOrderFront(QWidget& window) {
    window.show();
    window.raise();
    window.activateWindow();
}

}  // namespace qm
