// The screen as a hand and an eye have it: keys, the mouse, and the windows of one program. One thread. What happens to
// a window that has just gone is nothing.
#pragma once

#include <X11/Xlib.h>
#include <sys/types.h>

#include <array>
#include <functional>
#include <optional>
#include <string>
#include <vector>

struct ProgramWindow {
    Window id = 0;
    std::string name;
    int x = 0, y = 0, width = 0, height = 0;  // of what the program paints, on the screen
    bool popup = false;                       // a menu, a list, a tool tip: no window manager's business
};

class Desktop {
public:
    Desktop();
    ~Desktop();
    Desktop(const Desktop&) = delete;
    Desktop& operator=(const Desktop&) = delete;

    // Every key of the keyboard that means something.
    std::vector<KeyCode> keys() const;
    std::string nameOf(KeyCode key) const;
    KeyCode keyNamed(const std::string& name) const;

    void pressKey(KeyCode key);
    void releaseKey(KeyCode key);
    void pressButton(unsigned button);
    void releaseButton(unsigned button);
    void moveMouse(int x, int y);
    void flush();

    // Those that can be seen, the frontmost last.
    std::vector<ProgramWindow> windowsOf(pid_t program);
    // The name of the window that gets the keys.
    std::string windowWithKeys() const;
    void picture(const std::string& file);  // of the whole screen, in QUILLMERE_MONKEY_PICTURES, or /tmp
    void giveKeysTo(Window window);
    void resize(Window window, int width, int height);
    void moveWindow(Window window, int x, int y);
    void bringToFront(Window window);
    void askToClose(Window window);
    void minimise(Window window);
    void switchMaximised(Window window);

    // Asks the thread that runs the window for a sign of life. Passes whatever else comes to `other`. False after two
    // seconds in which this process was not itself kept from running.
    bool answers(Window window, const std::function<void(const XEvent&)>& other = {});

    // Waits for an event that is wanted, for as long.
    bool waitFor(const std::function<bool(const XEvent&)>& wanted);

    Display* display() const { return m_display; }
    Atom atom(const char* name) const { return XInternAtom(m_display, name, False); }
    void sendMessage(Window to, Window about, const char* type, const std::array<long, 5>& data, long mask);

private:
    std::vector<Window> children(Window window) const;
    std::vector<unsigned long> numbers(Window window, const char* property) const;
    std::optional<ProgramWindow> seen(Window window, pid_t program) const;

    Display* m_display;
    Window m_root;
    long m_question = 0;
};
