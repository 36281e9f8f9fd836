// film_watcher WINDOW PICTURES-PER-SECOND: what the window of a film shows beside what is heard, both as they come from
// the screen and on standard input (32-bit float stereo). The film's pictures say their numbers in twelve black or
// white fields, and its sound is silent but for a short tone at each whole second. Prints a line for each:
//   picture NUMBER AT      the window shows another picture; AT is in milliseconds
//   tone NUMBER AT OFF     a tone begins while that picture is shown, OFF pictures away from the nearest whole second
// It ends when its input does, or when it is ended.
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <poll.h>
#include <unistd.h>

#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace {

constexpr int kFields = 12;
constexpr int kTick = 4;  // milliseconds between looks at the window
constexpr float kSounding = 0.02f;
constexpr int kSilentFrames = 17640;  // before a tone begins; sound that breaks off within one does not begin another

long milliseconds() {
    using namespace std::chrono;
    return long(duration_cast<std::chrono::milliseconds>(steady_clock::now().time_since_epoch()).count());
}

// The number that the middle line of the window says; -1 if it is none.
int numberShown(Display* display, Window window) {
    XWindowAttributes attributes;
    if (!XGetWindowAttributes(display, window, &attributes)) return -1;
    const int width = attributes.width;
    XImage* line = XGetImage(display, window, 0, attributes.height / 2, unsigned(width), 1, AllPlanes, ZPixmap);
    if (!line) return -1;
    int number = 0;
    for (int field = 0; field < kFields && number >= 0; ++field) {
        const unsigned long pixel = XGetPixel(line, (2 * field + 1) * width / (2 * kFields), 0);
        const int green = int(pixel >> 8 & 0xff);
        if (green > 64 && green < 192) {
            number = -1;
        } else if (green >= 192) {
            number |= 1 << field;
        }
    }
    XDestroyImage(line);
    return number;
}

// Finds where tones begin.
class Ear {
public:
    // True if one begins within these samples.
    bool hear(const float* samples, std::size_t count) {
        bool begins = false;
        for (std::size_t i = 0; i < count; i += 2) {
            if (std::abs(samples[i]) < kSounding) {
                ++m_silent;
                continue;
            }
            begins = begins || m_silent >= kSilentFrames;
            m_silent = 0;
        }
        return begins;
    }

private:
    int m_silent = 0;
};

int fromWholeSecond(int number, int perSecond) {
    const int beyond = number % perSecond;
    return beyond <= perSecond / 2 ? beyond : beyond - perSecond;
}

}  // namespace

int main(int count, char** arguments) {
    Display* display = XOpenDisplay(nullptr);
    if (count != 3 || !display) {
        std::fputs("usage: film_watcher WINDOW PICTURES-PER-SECOND, with a display\n", stderr);
        return 1;
    }
    XSetErrorHandler([](Display*, XErrorEvent*) { return 0; });  // the window may go
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    const Window window = std::strtoul(arguments[1], nullptr, 0);
    const int perSecond = std::atoi(arguments[2]);
    Ear ear;
    int shown = -1;
    pollfd input{STDIN_FILENO, POLLIN, 0};
    for (;;) {
        const int ready = poll(&input, 1, kTick);
        const int number = numberShown(display, window);
        if (number >= 0 && number != shown) {
            shown = number;
            std::printf("picture %d %ld\n", shown, milliseconds());
        }
        if (ready <= 0) continue;
        float samples[2048];
        const ssize_t bytes = read(STDIN_FILENO, samples, sizeof samples);
        if (bytes <= 0) return 0;
        if (ear.hear(samples, std::size_t(bytes) / sizeof(float)) && shown >= 0)
            std::printf("tone %d %ld %d\n", shown, milliseconds(), fromWholeSecond(shown, perSecond));
    }
}
