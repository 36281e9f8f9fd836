#include "ui/windows/PanelPlace.h"

#include <doctest/doctest.h>

#include <QApplication>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>

#include "support/widgets/LivingWindow.h"
#include "ui/controls/FocusRing.h"
#include "ui/windows/LevelMetersPanel.h"
#include "ui/windows/PlayListCard.h"
#include "ui/windows/ToolPanel.h"

using namespace qm;

namespace {

const QSize kMeters(248, 264);
const QList<QSize> kVideo = {QSize(560, 315), QSize(504, 283), QSize(448, 252), QSize(392, 220), QSize(336, 189)};

// In logical pixels: 1280 x 800, 1366 x 768, 1920 x 1080 at 150 %, 2560 x 1600 at 200 %, a large one.
const QList<QSize> kScreens = {QSize(1280, 800), QSize(1366, 768), QSize(1280, 720), QSize(1280, 800),
                               QSize(2560, 1440)};

qint64 covered(const QRect& place, const QList<QRect>& parts) {
    qint64 pixels = 0;
    for (const QRect& part : parts) {
        const QRect both = place.intersected(part);
        if (!both.isEmpty()) pixels += qint64(both.width()) * both.height();
    }
    return pixels;
}

// The main window with some tracks on a screen of that size.
struct Desk : LivingWindow {
    explicit Desk(QSize screenSize, int tracks = 6) : screen(QPoint(0, 0), screenSize) {
        for (int i = 0; i < tracks; ++i) addTrack(QStringLiteral("/music/%1.mp3").arg(i));
    }

    void showAtFirst() {
        window.standOn(screen, kMeters);
        window.show();
    }

    void showMaximised() {
        window.show();
        window.setGeometry(screen);
        QApplication::processEvents();
    }

    Surroundings around(const QList<QRect>& panels = {}, const QList<QRect>& others = {}) {
        return {window.frameGeometry(), window.vitalParts(), window.usefulParts(), panels,
                QList<QRect>{screen} + others};
    }

    QRect beside(const QList<QSize>& sizes, const Surroundings& surroundings) {
        return panelPlace(sizes, placeBeside(surroundings.window), surroundings);
    }

    QRect screen;
};

}  // namespace

TEST_CASE("on every screen the main window stands so that the meters fit beside it, and they do") {
    for (const QSize& size : kScreens) {
        CAPTURE(size.width());
        CAPTURE(size.height());
        Desk desk(size);
        desk.showAtFirst();
        const Surroundings around = desk.around();
        CHECK(desk.screen.contains(around.window));
        const QRect meters = desk.beside({kMeters}, around);
        CHECK(desk.screen.contains(meters));
        CHECK(meters.left() == around.window.right() + 1 + kWindowGap);
        CHECK(meters.top() == around.window.top());
    }
}

TEST_CASE("no panel covers a control or another panel, whether the main window is maximised or not") {
    for (const QSize& size : kScreens) {
        for (const bool maximised : {false, true}) {
            CAPTURE(size.width());
            CAPTURE(size.height());
            CAPTURE(maximised);
            Desk desk(size);
            maximised ? desk.showMaximised() : desk.showAtFirst();
            const QList<QRect> meters = {desk.beside({kMeters}, desk.around())};
            const Surroundings around = desk.around(meters);
            for (const QList<QSize>& sizes : {QList<QSize>{kMeters}, kVideo, QList<QSize>{QSize(440, 218)},
                                              QList<QSize>{QSize(380, 266)}, QList<QSize>{QSize(312, 192)}}) {
                const QRect alone = desk.beside(sizes, desk.around());
                CAPTURE(sizes.first().width());
                CHECK(desk.screen.contains(alone));
                CHECK(covered(alone, around.vital) == 0);
                CHECK(desk.screen.contains(desk.beside(sizes, around)));
            }
        }
    }
}

TEST_CASE("a panel with keys of its own stands beside the main window, too, where there is room") {
    Desk desk(QSize(2560, 1440));
    desk.showAtFirst();
    const Surroundings around = desk.around();
    for (const QSize& size : {QSize(480, 348), QSize(480, 174), QSize(360, 374)}) {
        const QRect place = panelPlace({size}, placeInFront(around.window, size), around);
        CHECK(desk.screen.contains(place));
        CHECK(covered(place, around.vital) + covered(place, around.useful) == 0);
    }
}

TEST_CASE("where there is no room it stands where it covers least, wholly on the screen") {
    Desk desk(QSize(1280, 720));
    desk.showMaximised();
    const Surroundings around = desk.around();
    const QSize size(480, 348);
    const QRect place = panelPlace({size}, placeInFront(around.window, size), around);
    CHECK(desk.screen.contains(place));
    CHECK(covered(place, around.vital) < covered({placeInFront(around.window, size), size}, around.vital));
}

TEST_CASE("over a maximised window a panel stands on the empty part of the play list") {
    Desk desk(QSize(1920, 1080));
    desk.showMaximised();
    const Surroundings around = desk.around();
    const QRect place = desk.beside({kMeters}, around);
    CHECK(covered(place, around.vital) + covered(place, around.useful) == 0);
}

TEST_CASE("another screen is taken rather than to cover rows of the play list") {
    Desk desk(QSize(1280, 800), 100);
    desk.showMaximised();
    const QRect second(1280, 0, 1920, 1080);
    CHECK(desk.screen.contains(desk.beside({kMeters}, desk.around())));
    const QRect place = desk.beside({kMeters}, desk.around({}, {second}));
    CHECK(second.contains(place));
    CHECK(place.left() == placeBeside(desk.around().window).x());
}

TEST_CASE("a second screen is left alone while there is room on the first") {
    Desk desk(QSize(1366, 768));
    desk.showAtFirst();
    CHECK(desk.screen.contains(desk.beside({kMeters}, desk.around({}, {QRect(1366, 0, 1920, 1080)}))));
}

TEST_CASE("panels keep a distance from each other") {
    Desk desk(QSize(2560, 1440));
    desk.showAtFirst();
    const QRect meters = desk.beside({kMeters}, desk.around());
    const QRect video = desk.beside(kVideo, desk.around({meters}));
    CHECK(video.size() == kVideo.first());
    const QRect nearMeters = meters.adjusted(-kWindowGap, -kWindowGap, kWindowGap, kWindowGap);
    CHECK(covered(video, {nearMeters, desk.around().window}) == 0);
}

TEST_CASE("a film is rather shown smaller than over the controls") {
    const QRect window(0, 0, 1000, 700);
    const Surroundings around{window, {QRect(0, 0, 1000, 400), QRect(500, 400, 500, 300)}, {}, {}, {window}};
    const QRect video = panelPlace(kVideo, placeBeside(window), around);
    CHECK(video.size() == QSize(448, 252));
    CHECK(covered(video, around.vital) == 0);
    CHECK(window.contains(video));
    const Surroundings full{window, {window}, {}, {}, {window}};
    CHECK(panelPlace(kVideo, placeBeside(window), full).size() == kVideo.first());
}

TEST_CASE("a panel that is larger than the screen is cut to it") {
    const QRect screen(0, 0, 800, 500);
    const QRect place = panelPlace({QSize(1000, 700)}, QPoint(300, 300), {{}, {}, {}, {}, {screen}});
    CHECK(place == screen);
}

TEST_CASE("a panel comes back where it was left, and on the screen if that place is gone") {
    LivingWindow living;
    living.window.show();
    LevelMetersPanel panel(living.outlets, &living.window);
    panel.show();
    panel.move(40, 50);
    panel.hide();
    panel.show();
    CHECK(panel.pos() == QPoint(40, 50));
    panel.move(50000, 50);
    panel.hide();
    panel.show();
    CHECK(panel.screen()->availableGeometry().contains(panel.geometry()));
}

TEST_CASE("when the main window is maximised the panels that were not moved make room for its controls") {
    LivingWindow living;
    living.window.show();
    LevelMetersPanel moved(living.outlets, &living.window), unmoved(living.outlets, &living.window),
        hidden(living.outlets, &living.window);
    for (LevelMetersPanel* panel : {&moved, &unmoved, &hidden}) panel->show();
    moved.move(200, 100);
    hidden.hide();
    const QPoint before = unmoved.pos();
    living.window.move(-900, 0);
    for (LevelMetersPanel* panel : {&moved, &unmoved, &hidden}) panel->standAnew();
    CHECK(moved.pos() == QPoint(200, 100));
    CHECK(unmoved.pos() != before);
    hidden.show();
    CHECK(covered(hidden.frameGeometry(), {unmoved.frameGeometry(), moved.frameGeometry()}) == 0);
}

TEST_CASE("a screen that has room changes nothing of the main window") {
    LivingWindow living;
    living.window.standOn(QRect(0, 0, 1280, 720), kMeters);
    living.window.show();
    CHECK(living.window.size() == QSize(980, 650));
    CHECK(living.window.minimumSize() == QSize(980, 592));
    CHECK_FALSE(living.window.isMaximized());
    CHECK(living.grid().parentWidget() == living.window.centralWidget());
}

TEST_CASE("a screen that is too small is filled, and all of the main window can be scrolled to") {
    LivingWindow living;
    living.window.standOn(QRect(0, 0, 910, 512), kMeters);
    CHECK(living.window.isMaximized());
    CHECK(living.window.minimumSize() == QSize(480, 320));
    living.window.setWindowState(Qt::WindowNoState);
    living.window.show();
    living.window.resize(910, 490);
    QApplication::processEvents();
    CHECK(living.grid().size() == QSize(980, 524));
    auto* scroll = living.window.findChild<QScrollArea*>(QString(), Qt::FindChildrenRecursively);
    REQUIRE(scroll);
    CHECK(scroll->verticalScrollBar()->maximum() > 0);
    CHECK(scroll->horizontalScrollBar()->maximum() > 0);
}

TEST_CASE("a control that the keyboard comes to is scrolled into view, with its ring") {
    LivingWindow living;
    living.window.standOn(QRect(0, 0, 910, 512), kMeters);
    living.window.setWindowState(Qt::WindowNoState);
    living.window.show();
    living.window.resize(700, 400);
    QApplication::setActiveWindow(&living.window);
    QApplication::processEvents();
    auto* ring = living.window.findChild<FocusRing*>(QString(), Qt::FindDirectChildrenOnly);
    REQUIRE(ring);
    int seen = 0;
    for (QWidget* control : living.grid().findChildren<QWidget*>()) {
        if (!(control->focusPolicy() & Qt::TabFocus) || !control->isVisible() || control == living.outlets.playList)
            continue;
        CAPTURE(control->objectName().toStdString());
        control->setFocus(Qt::TabFocusReason);
        CHECK(control->visibleRegion().boundingRect() == control->rect());
        const QPoint middle = control->mapTo(&living.window, control->rect().center());
        if (ring->followedWidget() == control) CHECK((ring->geometry().center() - middle).manhattanLength() <= 2);
        ++seen;
    }
    CHECK(seen > 30);
}

TEST_CASE("a window that is taken back to a large screen needs no scrolling again") {
    LivingWindow living;
    living.window.fitInto(QSize(900, 500));
    living.window.fitInto(QSize(1900, 1000));
    CHECK(living.window.minimumSize() == QSize(980, 592));
    living.window.show();
    living.window.resize(980, 592);
    QApplication::processEvents();
    CHECK(living.grid().size() == QSize(980, 524));
}
