// Starts a program and measures how long it takes until its window is on the screen and painted, as the X server sees
// it: bench_first_frame [--settle SECONDS] TITLE PROGRAM [ARGUMENTS...]
// Prints one line: milliseconds to the mapped window and to its first frame, milliseconds of processor time until then,
// and resident memory in MiB, so many seconds after the first frame. Needs a screen of its own.
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <fcntl.h>
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
#include <optional>
#include <string>
#include <thread>
#include <vector>

extern char** environ;

namespace {

using Clock = std::chrono::steady_clock;

constexpr unsigned long kUnpainted = 0xFF00FF;  // the screen's own colour, which no window shows
constexpr auto kPatience = std::chrono::seconds(60);
constexpr auto kBetweenLooks = std::chrono::microseconds(300);

double milliseconds(Clock::duration time) {
    return std::chrono::duration<double, std::milli>(time).count();
}

bool hasTitle(Display* display, Window window, const char* title) {
    XTextProperty name{};
    if (XGetWMName(display, window, &name) == 0 || !name.value) return false;
    const bool same = std::strcmp(reinterpret_cast<const char*>(name.value), title) == 0;
    XFree(name.value);
    return same;
}

struct MappedWindow {
    Window window;
    Clock::time_point at;
};

// The mapped window with that title, which it may get only later; nothing while there is none.
std::optional<MappedWindow> findMapped(Display* display, const char* title, std::vector<MappedWindow>& mapped) {
    while (XPending(display) > 0) {
        XEvent event;
        XNextEvent(display, &event);
        if (event.type == MapNotify) mapped.push_back({event.xmap.window, Clock::now()});
    }
    for (const MappedWindow& each : mapped)
        if (hasTitle(display, each.window, title)) return each;
    return std::nullopt;
}

int ignoreError(Display*, XErrorEvent*) {
    return 0;  // a window may vanish while it is looked at
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
    XSetErrorHandler(ignoreError);
    XSetWindowBackground(display, DefaultRootWindow(display), kUnpainted);
    XClearWindow(display, DefaultRootWindow(display));
    XSelectInput(display, DefaultRootWindow(display), SubstructureNotifyMask);
    XSync(display, False);
    return display;
}

// Without its standard output, which is ours. 0, with a line, when it cannot be started.
pid_t startProgram(char** command) {
    pid_t process = 0;
    posix_spawn_file_actions_t silent;
    posix_spawn_file_actions_init(&silent);
    posix_spawn_file_actions_addopen(&silent, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    const int error = posix_spawn(&process, command[0], &silent, nullptr, command, environ);
    posix_spawn_file_actions_destroy(&silent);
    if (error == 0) return process;
    std::fprintf(stderr, "%s: %s\n", command[0], std::strerror(error));
    return 0;
}

int measure(Display* display, double settle, char** command) {
    const char* title = command[0];
    const auto begin = Clock::now();
    const pid_t process = startProgram(command + 1);
    if (process == 0) return 1;
    std::vector<MappedWindow> all;
    std::optional<MappedWindow> found;
    Clock::time_point painted;
    bool seen = false;
    while (!seen && Clock::now() - begin < kPatience) {
        if (!found) found = findMapped(display, title, all);
        if (found && (seen = isPainted(display, found->window))) painted = Clock::now();
        if (!seen) std::this_thread::sleep_for(kBetweenLooks);
    }
    const double processor = processorMilliseconds(process);
    std::this_thread::sleep_for(std::chrono::duration<double>(settle));
    if (seen)
        std::printf("%.1f %.1f %.1f %.1f\n", milliseconds(found->at - begin), milliseconds(painted - begin), processor,
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
