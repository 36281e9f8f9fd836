#include "app/SuddenEnd.h"

#include <QString>
#include <QtGlobal>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <thread>
#include <utility>

#include "engine/api/Log.h"

namespace qm {

namespace {

constexpr std::chrono::milliseconds kLongestFlush{300};
constexpr std::chrono::milliseconds kLongestKeep{5000};
constexpr std::chrono::milliseconds kPause{10};

std::function<void()> g_keep;
std::thread::id g_keeper;
std::atomic<bool> g_isKept{false};

// Only on the main thread: on another one the player might be in the middle of a change.
bool keepWhatMustSurvive() {
    if (std::this_thread::get_id() != g_keeper || !g_keep) return false;
    std::exchange(g_keep, nullptr)();
    flushLog(kLongestFlush);
    g_isKept = true;
    return true;
}

// On Wayland the toolkit only warns that the connection broke, or has had an error, and then calls _exit(), which asks
// nobody. Its reading thread does so, and the main thread, which notices a little later: it is given the time.
bool isWaylandsEnd(const QString& text) {
    return text.startsWith(QLatin1String("The Wayland connection "));
}

void waitForTheKeeper() {
    if (g_keeper == std::thread::id() || g_keeper == std::this_thread::get_id()) return;
    const auto deadline = std::chrono::steady_clock::now() + kLongestKeep;
    while (!g_isKept && std::chrono::steady_clock::now() < deadline) std::this_thread::sleep_for(kPause);
}

void take(QtMsgType type, const QMessageLogContext& context, const QString& text) {
    qmLog(qFormatLogMessage(type, context, text).toStdString());
    if (type != QtFatalMsg && !isWaylandsEnd(text)) return;
    keepWhatMustSurvive();
    if (type != QtFatalMsg) waitForTheKeeper();
    flushLog(kLongestFlush);
}

// Skips the rest of exit(), which would destroy objects that other threads still use.
void atExit() {
    if (keepWhatMustSurvive()) std::_Exit(EXIT_FAILURE);
}

}  // namespace

void logToolkitMessages() {
    qInstallMessageHandler(take);
}

void beforeSuddenEnd(std::function<void()> keep) {
    g_keep = std::move(keep);
    g_keeper = std::this_thread::get_id();
    std::atexit(atExit);
}

}  // namespace qm
