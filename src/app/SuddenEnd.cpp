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

void take(QtMsgType type, const QMessageLogContext& context, const QString& text) {
    qmLog(qFormatLogMessage(type, context, text).toStdString());
    if (type != QtFatalMsg) return;
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
