#include "Desktop.h"

#include <X11/Xatom.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <poll.h>

#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>

namespace {

constexpr int kLookMilliseconds = 20;
constexpr int kPatienceLooks = 2000 / kLookMilliseconds;

int ignoreWindowsThatHaveGone(Display*, XErrorEvent*) {
    return 0;
}

}  // namespace

Desktop::Desktop() : m_display(XOpenDisplay(nullptr)) {
    if (!m_display) throw std::runtime_error("there is no screen");
    XSetErrorHandler(ignoreWindowsThatHaveGone);
    m_root = DefaultRootWindow(m_display);
    XSelectInput(m_display, m_root, StructureNotifyMask);  // as the toolkit addresses the answers of `answers`
}

Desktop::~Desktop() {
    XCloseDisplay(m_display);
}

std::vector<KeyCode> Desktop::keys() const {
    int least = 0, most = 0;
    XDisplayKeycodes(m_display, &least, &most);
    std::vector<KeyCode> found;
    for (int code = least; code <= most; ++code)
        if (!nameOf(static_cast<KeyCode>(code)).empty()) found.push_back(static_cast<KeyCode>(code));
    return found;
}

std::string Desktop::nameOf(KeyCode key) const {
    int levels = 0;
    KeySym* meanings = XGetKeyboardMapping(m_display, key, 1, &levels);
    const KeySym first = meanings && levels > 0 ? meanings[0] : NoSymbol;
    if (meanings) XFree(meanings);
    const char* name = first == NoSymbol ? nullptr : XKeysymToString(first);
    return name ? name : "";
}

KeyCode Desktop::keyNamed(const std::string& name) const {
    return XKeysymToKeycode(m_display, XStringToKeysym(name.c_str()));
}

void Desktop::pressKey(KeyCode key) {
    XTestFakeKeyEvent(m_display, key, True, CurrentTime);
}

void Desktop::releaseKey(KeyCode key) {
    XTestFakeKeyEvent(m_display, key, False, CurrentTime);
}

void Desktop::pressButton(unsigned button) {
    XTestFakeButtonEvent(m_display, button, True, CurrentTime);
}

void Desktop::releaseButton(unsigned button) {
    XTestFakeButtonEvent(m_display, button, False, CurrentTime);
}

void Desktop::moveMouse(int x, int y) {
    XTestFakeMotionEvent(m_display, -1, x, y, CurrentTime);
}

void Desktop::flush() {
    XFlush(m_display);
}

std::vector<Window> Desktop::children(Window window) const {
    Window root = 0, parent = 0, *list = nullptr;
    unsigned count = 0;
    std::vector<Window> found;
    if (XQueryTree(m_display, window, &root, &parent, &list, &count) && list) {
        found.assign(list, list + count);
        XFree(list);
    }
    return found;
}

std::vector<unsigned long> Desktop::numbers(Window window, const char* property) const {
    constexpr long kMost = 1024;
    Atom type = None;
    int format = 0;
    unsigned long count = 0, rest = 0;
    unsigned char* data = nullptr;
    std::vector<unsigned long> found;
    if (XGetWindowProperty(m_display, window, atom(property), 0, kMost, False, AnyPropertyType, &type, &format, &count,
                           &rest, &data) != Success)
        return found;
    if (format == 32) {
        const auto* values = reinterpret_cast<const unsigned long*>(data);
        found.assign(values, values + count);
    }
    if (data) XFree(data);
    return found;
}

std::optional<ProgramWindow> Desktop::seen(Window window, pid_t program) const {
    XWindowAttributes attributes{};
    if (!XGetWindowAttributes(m_display, window, &attributes)) return std::nullopt;
    if (attributes.map_state != IsViewable || attributes.c_class != InputOutput) return std::nullopt;
    const auto owner = numbers(window, "_NET_WM_PID");
    if (owner.empty() || static_cast<pid_t>(owner.front()) != program) return std::nullopt;
    ProgramWindow found{window, "", 0, 0, attributes.width, attributes.height, attributes.override_redirect != 0};
    Window ignored = 0;
    XTranslateCoordinates(m_display, window, m_root, 0, 0, &found.x, &found.y, &ignored);
    char* name = nullptr;
    if (XFetchName(m_display, window, &name) && name) {
        found.name = name;
        XFree(name);
    }
    return found;
}

std::vector<ProgramWindow> Desktop::windowsOf(pid_t program) {
    std::vector<ProgramWindow> found;
    for (const unsigned long window : numbers(m_root, "_NET_CLIENT_LIST_STACKING"))
        if (auto one = seen(window, program)) found.push_back(*one);
    for (const Window window : children(m_root)) {
        const auto one = seen(window, program);
        if (one && one->popup) found.push_back(*one);
    }
    return found;
}

std::string Desktop::windowWithKeys() const {
    Window window = 0;
    int ignored = 0;
    XGetInputFocus(m_display, &window, &ignored);
    char* name = nullptr;
    if (window <= PointerRoot || !XFetchName(m_display, window, &name) || !name)
        return "window " + std::to_string(window);
    std::string text = std::string("\"") + name + "\"";
    XFree(name);
    return text;
}

void Desktop::picture(const std::string& file) {
    const std::string command =
        "ffmpeg -hide_banner -loglevel error -y -f x11grab -draw_mouse 0 -i \"$DISPLAY\" "
        "-frames:v 1 \"${QUILLMERE_MONKEY_PICTURES:-/tmp}/" +
        file + "\" </dev/null";
    if (std::system(command.c_str()) != 0) std::printf("There is no picture of it.\n");
}

void Desktop::giveKeysTo(Window window) {
    XSetInputFocus(m_display, window, RevertToParent, CurrentTime);
    XFlush(m_display);
}

void Desktop::resize(Window window, int width, int height) {
    XResizeWindow(m_display, window, static_cast<unsigned>(width), static_cast<unsigned>(height));
}

void Desktop::moveWindow(Window window, int x, int y) {
    XMoveWindow(m_display, window, x, y);
}

void Desktop::bringToFront(Window window) {
    sendMessage(m_root, window, "_NET_ACTIVE_WINDOW", {2, CurrentTime},
                SubstructureNotifyMask | SubstructureRedirectMask);
}

void Desktop::askToClose(Window window) {
    sendMessage(window, window, "WM_PROTOCOLS", {static_cast<long>(atom("WM_DELETE_WINDOW")), CurrentTime},
                NoEventMask);
}

void Desktop::minimise(Window window) {
    XIconifyWindow(m_display, window, DefaultScreen(m_display));
}

void Desktop::switchMaximised(Window window) {
    constexpr long kSwitch = 2;
    sendMessage(m_root, window, "_NET_WM_STATE",
                {kSwitch, static_cast<long>(atom("_NET_WM_STATE_MAXIMIZED_VERT")),
                 static_cast<long>(atom("_NET_WM_STATE_MAXIMIZED_HORZ")), 1},
                SubstructureNotifyMask | SubstructureRedirectMask);
}

void Desktop::sendMessage(Window to, Window about, const char* type, const std::array<long, 5>& data, long mask) {
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.window = about;
    event.xclient.message_type = atom(type);
    event.xclient.format = 32;
    for (std::size_t i = 0; i < data.size(); ++i) event.xclient.data.l[i] = data[i];
    XSendEvent(m_display, to, False, mask, &event);
    XFlush(m_display);
}

bool Desktop::answers(Window window, const std::function<void(const XEvent&)>& other) {
    const Atom ping = atom("_NET_WM_PING"), protocols = atom("WM_PROTOCOLS");
    const long question = ++m_question;
    sendMessage(window, window, "WM_PROTOCOLS", {static_cast<long>(ping), question, static_cast<long>(window)},
                NoEventMask);
    return waitFor([&](const XEvent& event) {
        if (other) other(event);
        return event.type == ClientMessage && event.xclient.message_type == protocols &&
               event.xclient.data.l[0] == static_cast<long>(ping) && event.xclient.data.l[1] == question;
    });
}

// Time is counted in looks, and only in those that came when they should: on a machine that keeps this process waiting
// the program may be waiting as well.
bool Desktop::waitFor(const std::function<bool(const XEvent&)>& wanted) {
    using Clock = std::chrono::steady_clock;
    for (int looks = 0; looks < kPatienceLooks;) {
        while (XPending(m_display)) {
            XEvent event{};
            XNextEvent(m_display, &event);
            if (wanted(event)) return true;
        }
        pollfd connection{ConnectionNumber(m_display), POLLIN, 0};
        const auto before = Clock::now();
        const bool something = poll(&connection, 1, kLookMilliseconds) > 0;
        const auto took = Clock::now() - before;
        if (!something && took < std::chrono::milliseconds(2 * kLookMilliseconds)) ++looks;
    }
    return false;
}
