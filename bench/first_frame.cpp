// Starts a program and measures how long it takes until its window is on the screen and painted, as the X server sees
// it: bench_first_frame [--settle SECONDS] TITLE PROGRAM [ARGUMENTS...]
// Prints one line: milliseconds to the mapped window and to its first frame, milliseconds of processor time until then,
// and resident memory in MiB, so many seconds after the first frame. Needs a screen of its own.
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fstream>
#include <string>
#include <thread>

extern char** environ;

namespace {

using Clock = std::chrono::steady_clock;

constexpr unsigned long kUnpainted = 0xFF00FF;  // the screen's own colour, which no window shows
constexpr auto kPatience = std::chrono::seconds(60);
constexpr auto kBetweenLooks = std::chrono::microseconds(300);

double milliseconds(Clock::duration time) {
    return std::chrono::duration<double, std::milli>(time).count();
}

// The first mapped window with that title; 0 while there is none.
Window mappedWindow(Display* display, const char* title) {
    while (XPending(display) > 0) {
        XEvent event;
        XNextEvent(display, &event);
        char* name = nullptr;
        if (event.type != MapNotify || !XFetchName(display, event.xmap.window, &name)) continue;
        const bool found = std::strcmp(name, title) == 0;
        XFree(name);
        if (found) return event.xmap.window;
    }
    return 0;
}

bool isPainted(Display* display, int x, int y, int width, int height) {
    XImage* image = XGetImage(display, DefaultRootWindow(display), x, y, static_cast<unsigned>(width),
                              static_cast<unsigned>(height), AllPlanes, ZPixmap);
    if (!image) return false;
    bool painted = true;
    for (int row = 0; row < height; ++row)
        for (int column = 0; column < width; ++column)
            painted = painted && (XGetPixel(image, column, row) & 0xFFFFFF) != kUnpainted;
    XDestroyImage(image);
    return painted;
}

// Looks at one row and one column through the middle of the window, as far as it lies on the screen.
bool isPainted(Display* display, Window window) {
    XWindowAttributes size;
    if (!XGetWindowAttributes(display, window, &size)) return false;
    const int left = std::max(0, size.x), top = std::max(0, size.y);
    const int right = std::min(DisplayWidth(display, 0), size.x + size.width);
    const int bottom = std::min(DisplayHeight(display, 0), size.y + size.height);
    return left < right && top < bottom && isPainted(display, left, (top + bottom) / 2, right - left, 1) &&
           isPainted(display, (left + right) / 2, top, 1, bottom - top);
}

double processorMilliseconds(pid_t process) {
    clockid_t clock;
    timespec time{};
    if (clock_getcpuclockid(process, &clock) != 0 || clock_gettime(clock, &time) != 0) return 0;
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

double residentMiB(pid_t process) {
    std::ifstream status("/proc/" + std::to_string(process) + "/status");
    for (std::string word; status >> word;) {
        double kib = 0;
        if (word == "VmRSS:" && status >> kib) return kib / 1024;
    }
    return 0;
}

Display* openScreen() {
    Display* display = XOpenDisplay(nullptr);
    if (!display) return nullptr;
    XSetWindowBackground(display, DefaultRootWindow(display), kUnpainted);
    XClearWindow(display, DefaultRootWindow(display));
    XSelectInput(display, DefaultRootWindow(display), SubstructureNotifyMask);
    XSync(display, False);
    return display;
}

int measure(Display* display, double settle, char** command) {
    const char* title = command[0];
    const auto begin = Clock::now();
    pid_t process = 0;
    if (posix_spawn(&process, command[1], nullptr, nullptr, command + 1, environ) != 0) {
        std::perror(command[1]);
        return 1;
    }
    Window window = 0;
    Clock::time_point mapped, painted;
    bool seen = false;
    while (!seen && Clock::now() - begin < kPatience) {
        if (window == 0 && (window = mappedWindow(display, title)) != 0) mapped = Clock::now();
        if (window != 0 && (seen = isPainted(display, window))) painted = Clock::now();
        if (!seen) std::this_thread::sleep_for(kBetweenLooks);
    }
    const double processor = processorMilliseconds(process);
    std::this_thread::sleep_for(std::chrono::duration<double>(settle));
    if (seen)
        std::printf("%.1f %.1f %.1f %.1f\n", milliseconds(mapped - begin), milliseconds(painted - begin), processor,
                    residentMiB(process));
    kill(process, SIGKILL);
    waitpid(process, nullptr, 0);
    return seen ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    char** command = argv + 1;
    double settle = 0;
    if (argc > 2 && std::strcmp(argv[1], "--settle") == 0) {
        settle = std::atof(argv[2]);
        command += 2;
    }
    if (command + 1 >= argv + argc) {
        std::fputs("usage: bench_first_frame [--settle SECONDS] TITLE PROGRAM [ARGUMENTS...]\n", stderr);
        return 2;
    }
    Display* display = openScreen();
    if (!display) {
        std::fputs("no screen\n", stderr);
        return 1;
    }
    return measure(display, settle, command);
}
