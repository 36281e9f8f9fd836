#include "ui/controls/MovieView.h"

#include <doctest/doctest.h>

#include <QAction>
#include <QCoreApplication>
#include <QImage>
#include <QTimer>
#include <thread>

#include "app/ActionReceivers.h"
#include "support/widgets/ControllerFixture.h"
#include "support/widgets/Gestures.h"
#include "ui/windows/MainWindow.h"
#include "ui/windows/MainWindowState.h"
#include "ui/windows/VideoPanel.h"

using namespace qm;

namespace {

std::shared_ptr<const VideoPicture> plain(std::uint32_t color, double aspect, int width = 8, int height = 4) {
    auto picture = std::make_shared<VideoPicture>();
    picture->width = width;
    picture->height = height;
    picture->aspect = aspect;
    picture->pixels.assign(std::size_t(width) * height, color);
    return picture;
}

struct FilmWindow {
    ControllerFixture fixture;
    QMController& controller = fixture.init();
    Outlets outlets;
    MainWindow window{outlets};
    VideoPanel panel{outlets, &window};
    MainWindowState state{window, controller, controller, controller.abLoop(), outlets};

    FilmWindow() {
        receiveActions(window.actions(), controller);
        fixture.engine.files["/music/film.mp4"].hasVideo = true;
        fixture.engine.files["/music/other.mp4"].hasVideo = true;
        awakeWith(controller, outlets);
        state.refresh();
    }

    FakeMovie& load(const QString& path) {
        controller.loadFileAdd(path, true);
        state.refresh();
        return *fixture.engine.movie();
    }

    bool offersVideo() { return window.actions().action(ActionId::displayVideo)->isEnabled(); }
};

// As the movie does it: on another thread.
void tell(FakeMovie& movie) {
    std::thread(movie.viewer->changed).join();
    QCoreApplication::processEvents();
}

}  // namespace

TEST_CASE_FIXTURE(FilmWindow, "a picture is painted in the middle in its own proportions, on black") {
    FakeMovie& movie = load("/music/film.mp4");
    movie.picture = plain(0xff20c040, 2);
    outlets.movieView->resize(400, 300);
    tell(movie);
    CHECK(outlets.movieView->pictureRect() == QRectF(0, 50, 400, 200));
    QImage image(400, 300, QImage::Format_RGB32);
    image.fill(Qt::red);
    outlets.movieView->render(&image);
    CHECK(image.pixelColor(200, 40) == QColor(Qt::black));
    CHECK(image.pixelColor(200, 260) == QColor(Qt::black));
    CHECK(image.pixelColor(3, 150) == QColor(0x20, 0xc0, 0x40));
    CHECK(image.pixelColor(396, 54) == QColor(0x20, 0xc0, 0x40));

    movie.picture = plain(0xff20c040, 0.5);
    tell(movie);
    CHECK(outlets.movieView->pictureRect() == QRectF(125, 0, 150, 300));
}

TEST_CASE_FIXTURE(FilmWindow, "a movie is watched for as long as its view is visible") {
    FakeMovie& film = load("/music/film.mp4");
    CHECK(film.viewer);
    panel.hide();
    CHECK_FALSE(film.viewer);
    panel.show();
    CHECK(film.viewer);
    CHECK_FALSE(outlets.movieView->findChild<QTimer*>());  // it is told, and never looks
}

TEST_CASE_FIXTURE(FilmWindow, "the view lets go of a movie before it goes, and of its picture with it") {
    FakeMovie& film = load("/music/film.mp4");
    film.picture = plain(0xffffffff, 2);
    tell(film);
    CHECK_FALSE(outlets.movieView->pictureRect().isEmpty());
    QTMovie* viewedAtOpen = controller.qtMovie.get();
    fixture.log.atEvent = [&](const std::string& event) {
        if (event.starts_with("open ")) viewedAtOpen = outlets.movieView->movie();
    };
    FakeMovie& other = load("/music/other.mp4");
    CHECK(viewedAtOpen == nullptr);
    CHECK(outlets.movieView->movie() == &other);
    CHECK(outlets.movieView->pictureRect().isEmpty());
    CHECK(other.viewer);

    fixture.engine.unreadable.insert("/music/text.mp4");
    controller.loadFileAdd("/music/text.mp4", true);
    CHECK(controller.qtMovie == nullptr);
    CHECK(outlets.movieView->movie() == nullptr);
}

TEST_CASE_FIXTURE(FilmWindow, "pictures are asked for in the size of the view, and painted pixel by pixel") {
    FakeMovie& film = load("/music/film.mp4");
    panel.resize(401, 300);
    CHECK(film.viewer->width == 401);
    CHECK(film.viewer->height == 300);
    auto stripes = std::make_shared<VideoPicture>(*plain(0xff000000, 401.0 / 201, 401, 201));
    for (std::size_t i = 0; i < stripes->pixels.size(); i += 2) stripes->pixels[i] = 0xffffffff;
    film.picture = stripes;
    tell(film);
    QImage image(401, 300, QImage::Format_RGB32);
    outlets.movieView->render(&image);
    int others = 0;
    for (int y = 60; y < 240; ++y)
        for (int x = 0; x < 401; ++x) others += image.pixel(x, y) != 0xff000000 && image.pixel(x, y) != 0xffffffff;
    CHECK(others == 0);
    panel.hide();
    panel.resize(500, 400);
    CHECK_FALSE(film.viewer);
    panel.show();
    CHECK(film.viewer->width == 500);
}

TEST_CASE_FIXTURE(FilmWindow, "the panel comes with a film, goes with a song and can be closed and called back") {
    CHECK_FALSE(offersVideo());
    load("/music/film.mp4");
    CHECK(panel.isVisible());
    CHECK(offersVideo());
    panel.close();
    CHECK_FALSE(panel.isVisible());
    CHECK(controller.qtMovie != nullptr);
    window.actions().action(ActionId::displayVideo)->trigger();
    CHECK(panel.isVisible());
    load("/music/song.mp3");
    CHECK_FALSE(panel.isVisible());
    CHECK(outlets.movieView->movie() == nullptr);
    CHECK_FALSE(offersVideo());
}

TEST_CASE_FIXTURE(FilmWindow, "the panel opens at its size, can be made as small as its least, and the view fills it") {
    CHECK(panel.size() == QSize(560, 315));
    CHECK(panel.minimumSize() == QSize(240, 135));
    CHECK(panel.windowTitle() == "Video");
    CHECK(panel.windowType() == Qt::Tool);
    panel.show();
    panel.resize(10, 10);
    CHECK(panel.size() == QSize(240, 135));
    CHECK(outlets.movieView->geometry() == panel.rect());
    panel.resize(700, 500);
    CHECK(outlets.movieView->geometry() == panel.rect());
}

TEST_CASE_FIXTURE(FilmWindow, "Ctrl+3 is the key of the video") {
    CHECK(window.actions().action(ActionId::displayVideo)->shortcut() == QKeySequence(Qt::CTRL | Qt::Key_3));
}

TEST_CASE_FIXTURE(FilmWindow,
                  "a double click and F11 let the film fill the screen, another one, Esc and Ctrl+W bring it back") {
    QAction* key = window.actions().action(ActionId::fillScreenWithVideo);
    REQUIRE(key);
    CHECK(key->shortcut() == QKeySequence(Qt::Key_F11));
    CHECK_FALSE(key->isEnabled());
    load("/music/film.mp4");
    CHECK(key->isEnabled());
    panel.setGeometry(30, 40, 500, 300);
    doubleClickMouse(*outlets.movieView, {20, 20});
    CHECK(panel.isFullScreen());
    doubleClickMouse(*outlets.movieView, {20, 20});
    CHECK_FALSE(panel.isFullScreen());
    CHECK(panel.isVisible());
    key->trigger();
    CHECK(panel.isFullScreen());
    panel.close();
    CHECK_FALSE(panel.isFullScreen());
    CHECK(panel.isVisible());
    QCoreApplication::processEvents();
    CHECK(panel.size() == QSize(500, 300));
    key->trigger();
    key->trigger();
    CHECK_FALSE(panel.isFullScreen());
    panel.close();
    CHECK_FALSE(panel.isVisible());
    key->trigger();
    CHECK(panel.isVisible());
    CHECK(panel.isFullScreen());
}

TEST_CASE_FIXTURE(FilmWindow, "a film that goes while it fills the screen comes back as a window, where it was") {
    load("/music/film.mp4");
    panel.setGeometry(30, 40, 500, 300);
    const QPoint place = panel.pos();
    panel.toggleFullScreen();
    load("/music/song.mp3");
    CHECK_FALSE(panel.isVisible());
    load("/music/other.mp4");
    CHECK(panel.isVisible());
    CHECK_FALSE(panel.isFullScreen());
    QCoreApplication::processEvents();
    CHECK(panel.size() == QSize(500, 300));
    CHECK(panel.pos() == place);
}
