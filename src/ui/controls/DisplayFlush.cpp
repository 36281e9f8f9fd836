#include "ui/controls/DisplayFlush.h"

#ifdef QUILLMERE_XCB
#include <xcb/xcb.h>

#include <QGuiApplication>
#endif

namespace qm {

void flushDisplay() {
#ifdef QUILLMERE_XCB
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (x11 && x11->connection()) xcb_flush(x11->connection());
#endif
}

}  // namespace qm
