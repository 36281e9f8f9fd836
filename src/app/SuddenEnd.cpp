#include "app/SuddenEnd.h"

#include <QString>
#include <QtGlobal>
#include <chrono>
#include <cstdlib>
#include <thread>
#include <utility>

#include "engine/api/Log.h"

namespace qm {

namespace {

constexpr std::chrono::milliseconds kLongestFlush{300};

std::function<void()> g_keep;
std::thread::id g_keeper;

// Another thread leaves everything alone: it would find the player in the middle of something.
bool keepWhatMustSurvive() {
    if (std::this_thread::get_id() != g_keeper || !g_keep) return false;
    std::exchange(g_keep, nullptr)();
    flushLog(kLongestFlush);
    return true;
}

// After a fatal message the toolkit ends the program. On Wayland it only warns that the connection broke, or has had an
// error, and then calls _exit(), which asks nobody.
bool areLastWords(QtMsgType type, const QString& text) {
    return type == QtFatalMsg || text.startsWith(QLatin1String("The Wayland connection "));
}

void take(QtMsgType type, const QMessageLogContext& context, const QString& text) {
    qmLog(qFormatLogMessage(type, context, text).toStdString());
    if (!areLastWords(type, text)) return;
    keepWhatMustSurvive();
    flushLog(kLongestFlush);
}

// The rest of exit() would take down what other threads still use.
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
