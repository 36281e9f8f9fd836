#include "app/LiveWait.h"

#include <doctest/doctest.h>

#include <QGuiApplication>
#include <QTimer>

using namespace qm;

TEST_CASE("While something takes long timers go on and the pointer says so") {
    int ticks = 0;
    bool pointerSaidSo = false;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
        ++ticks;
        pointerSaidSo = QGuiApplication::overrideCursor() != nullptr;
    });
    timer.start(0);
    waitWithLiveWindow([&](std::chrono::milliseconds) { return ticks >= 3; });
    CHECK(ticks >= 3);
    CHECK(pointerSaidSo);
    CHECK_FALSE(QGuiApplication::overrideCursor());
}

TEST_CASE("What is done in a moment lets nothing come between") {
    bool came = false;
    QMetaObject::invokeMethod(
        qGuiApp, [&] { came = true; }, Qt::QueuedConnection);
    waitWithLiveWindow([](std::chrono::milliseconds) { return true; });
    CHECK_FALSE(came);
    QCoreApplication::processEvents();
    CHECK(came);
}
