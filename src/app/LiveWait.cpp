#include "app/LiveWait.h"

#include <QCursor>
#include <QEventLoop>
#include <QGuiApplication>

namespace qm {

namespace {

constexpr std::chrono::milliseconds kMoment{100};  // nobody sees it
constexpr std::chrono::milliseconds kStep{10};

}  // namespace

void waitWithLiveWindow(const IsDone& isDone) {
    if (isDone(kMoment)) return;
    QGuiApplication::setOverrideCursor(Qt::BusyCursor);
    do {
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    } while (!isDone(kStep));
    QGuiApplication::restoreOverrideCursor();
}

}  // namespace qm
