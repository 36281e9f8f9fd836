// close_window ID: asks a window to close, as a window manager does when the frame's close button is clicked.
#include <X11/Xlib.h>

#include <cstdio>
#include <cstdlib>

int main(int argc, char** argv) {
    Display* display = XOpenDisplay(nullptr);
    if (argc != 2 || !display) {
        std::fputs("usage: close_window ID, with a display\n", stderr);
        return 2;
    }
    const Window window = std::strtoul(argv[1], nullptr, 0);
    XEvent event = {};
    event.xclient.type = ClientMessage;
    event.xclient.window = window;
    event.xclient.message_type = XInternAtom(display, "WM_PROTOCOLS", False);
    event.xclient.format = 32;
    event.xclient.data.l[0] = long(XInternAtom(display, "WM_DELETE_WINDOW", False));
    event.xclient.data.l[1] = CurrentTime;
    const bool sent = XSendEvent(display, window, False, NoEventMask, &event) != 0;
    XSync(display, False);
    return sent ? 0 : 1;
}
