// window_timeline: prints what happens to the windows of a screen, in the order in which the server saw it, one line
// each: "ID opacity 0.05 at 1234" with the value that it has by then and the server's milliseconds of the change,
// "ID size 480x202" and "ID keys" when a window gets the keyboard. "watching" comes first; it ends when it is ended.
#include <X11/Xatom.h>
#include <X11/Xlib.h>

#include <cstdio>

namespace {

constexpr unsigned long kOpaque = 0xffffffff;  // the rest of what the library gives is the sign of these 32 bits

Atom g_opacity;

void watch(Display* display, Window window) {
    XSelectInput(display, window, PropertyChangeMask | FocusChangeMask | StructureNotifyMask);
}

void printOpacity(Display* display, Window window, Time when) {
    Atom type = None;
    int format = 0;
    unsigned long count = 0, left = 0;
    unsigned char* data = nullptr;
    const int status =
        XGetWindowProperty(display, window, g_opacity, 0, 1, False, XA_CARDINAL, &type, &format, &count, &left, &data);
    if (status == Success && type == XA_CARDINAL && format == 32 && count == 1)
        std::printf("%lu opacity %.2f at %lu\n", window,
                    double(*reinterpret_cast<unsigned long*>(data) & kOpaque) / kOpaque, when);
    if (data) XFree(data);
}

bool isKeys(const XFocusChangeEvent& event) {
    return event.mode == NotifyNormal && event.detail != NotifyPointer && event.detail != NotifyInferior;
}

void print(Display* display, const XEvent& event) {
    switch (event.type) {
        case CreateNotify:
            return watch(display, event.xcreatewindow.window);
        case PropertyNotify:
            if (event.xproperty.atom == g_opacity) printOpacity(display, event.xproperty.window, event.xproperty.time);
            return;
        case ConfigureNotify:
            if (event.xconfigure.event != event.xconfigure.window) return;  // once only, from the window itself
            std::printf("%lu size %dx%d\n", event.xconfigure.window, event.xconfigure.width, event.xconfigure.height);
            return;
        case FocusIn:
            if (isKeys(event.xfocus)) std::printf("%lu keys\n", event.xfocus.window);
            return;
        default:
            return;
    }
}

}  // namespace

int main() {
    Display* display = XOpenDisplay(nullptr);
    if (!display) {
        std::fputs("window_timeline: no display\n", stderr);
        return 1;
    }
    XSetErrorHandler([](Display*, XErrorEvent*) { return 0; });  // a window may be gone before it is looked at
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    g_opacity = XInternAtom(display, "_NET_WM_WINDOW_OPACITY", False);
    XSelectInput(display, DefaultRootWindow(display), SubstructureNotifyMask);
    XSync(display, False);
    std::puts("watching");
    for (XEvent event;;) {
        XNextEvent(display, &event);
        print(display, event);
    }
}
