#include "Drop.h"

#include <X11/Xatom.h>

FileSource::FileSource(Desktop& desktop)
    : m_desktop(desktop),
      m_window(XCreateSimpleWindow(desktop.display(), DefaultRootWindow(desktop.display()), 0, 0, 1, 1, 0, 0, 0)) {}

FileSource::~FileSource() {
    XDestroyWindow(m_desktop.display(), m_window);
}

void FileSource::tell(Window target, const char* type, const std::array<long, 5>& data) const {
    m_desktop.sendMessage(target, target, type, data, NoEventMask);
}

Dropped FileSource::drop(const std::vector<std::string>& files, Window target, const std::vector<Place>& way) {
    constexpr long kVersion = 5L << 24;
    const long self = static_cast<long>(m_window), copy = static_cast<long>(m_desktop.atom("XdndActionCopy"));
    m_list.clear();
    for (const std::string& file : files) m_list += "file://" + file + "\r\n";
    XSetSelectionOwner(m_desktop.display(), m_desktop.atom("XdndSelection"), m_window, CurrentTime);
    tell(target, "XdndEnter", {self, kVersion, static_cast<long>(m_desktop.atom("text/uri-list"))});

    const auto serve = [&](const XEvent& event, const char* awaited) {
        if (event.type == SelectionRequest) answerRequest(event.xselectionrequest);
        return event.type == ClientMessage && event.xclient.message_type == m_desktop.atom(awaited);
    };
    bool accepted = false;
    for (const Place& place : way) {
        tell(target, "XdndPosition", {self, 0, long(place.x) << 16 | place.y, CurrentTime, copy});
        const auto answered = [&](const XEvent& event) {
            const bool status = serve(event, "XdndStatus");
            if (status) accepted = event.xclient.data.l[1] & 1;
            return status;
        };
        if (!m_desktop.waitFor(answered)) return Dropped::NoAnswer;
    }
    if (!accepted) {
        tell(target, "XdndLeave", {self});
        return Dropped::Refused;
    }
    tell(target, "XdndDrop", {self, 0, CurrentTime});
    const auto finished = [&](const XEvent& event) { return serve(event, "XdndFinished"); };
    return m_desktop.waitFor(finished) ? Dropped::Taken : Dropped::NoAnswer;
}

void FileSource::answerRequest(const XSelectionRequestEvent& request) const {
    const bool known = request.target == m_desktop.atom("text/uri-list");
    if (known) {
        XChangeProperty(m_desktop.display(), request.requestor, request.property, request.target, 8, PropModeReplace,
                        reinterpret_cast<const unsigned char*>(m_list.data()), static_cast<int>(m_list.size()));
    }
    XEvent answer{};
    answer.xselection.type = SelectionNotify;
    answer.xselection.requestor = request.requestor;
    answer.xselection.selection = request.selection;
    answer.xselection.target = request.target;
    answer.xselection.property = known ? request.property : None;
    answer.xselection.time = request.time;
    XSendEvent(m_desktop.display(), request.requestor, False, NoEventMask, &answer);
    m_desktop.flush();
}
