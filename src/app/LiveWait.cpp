#include "app/LiveWait.h"

#include <QCursor>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QGuiApplication>

namespace qm {

namespace {

constexpr std::chrono::milliseconds kMoment{100};  // shorter than what a user notices
constexpr std::chrono::milliseconds kLong{400};    // from then on the user's input is handled again
constexpr std::chrono::milliseconds kStep{10};

}  // namespace

void waitWithLiveWindow(const IsDone& isDone) {
    if (isDone(kMoment)) return;
    QGuiApplication::setOverrideCursor(Qt::BusyCursor);
    QElapsedTimer waiting;
    waiting.start();
    do {
        const bool isLong = waiting.hasExpired(kLong.count());
        QCoreApplication::processEvents(isLong ? QEventLoop::AllEvents : QEventLoop::ExcludeUserInputEvents);
    } while (!isDone(kStep));
    QGuiApplication::restoreOverrideCursor();
}

}  // namespace qm
