#include <QApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QDragLeaveEvent>
#include <QDragMoveEvent>
#include <QDropEvent>
#include <QFile>
#include <QMimeData>
#include <QUrl>

#include "app/state/FilePath.h"
#include "support/widgets/ControllerFixture.h"
#include "ui/controls/DropMarker.h"
#include "ui/dialogs/FilePanel.h"

using namespace qm;

namespace {

struct DropFixture : ControllerFixture {
    QString file(const QString& name) {
        const QString path = home.path() + u'/' + name;
        QFile made(path);
        REQUIRE(made.open(QIODevice::WriteOnly));
        return path;
    }

    bool drop(const QStringList& paths) {
        QList<QUrl> urls;
        for (const QString& path : paths) urls.append(QUrl::fromLocalFile(path));
        return controller->trackLoader().acceptDrop(urls);
    }

    QList<Notice> told;
    void listen() {
        QObject::connect(&controller->notices(), &Notices::told, controller.get(),
                         [this](const Notice& notice) { told.append(notice); });
    }
    QString lastTold() const { return told.isEmpty() ? QString() : told.last().text; }
    void waitForQueue() {
        QDeadlineTimer patience(60000);
        while (controller->trackLoader().queue().isBusy() && !patience.hasExpired()) QApplication::processEvents();
    }

    // The words over the list while this is dragged over it.
    QString hoverWords(const QList<QUrl>& urls, bool& refuses) {
        QMimeData data;
        data.setUrls(urls);
        QDragEnterEvent enter(QPoint(10, 60), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(outlets.playList->viewport(), &enter);
        CHECK(enter.isAccepted());
        CHECK(enter.dropAction() == Qt::CopyAction);
        const DropMarker& marker = outlets.playList->dropMarker();
        QDeadlineTimer patience(5000);
        while (marker.words().isEmpty() && !patience.hasExpired())
            QApplication::processEvents(QEventLoop::AllEvents, 20);
        refuses = marker.refuses();
        const QString words = marker.words();
        QDragLeaveEvent leave;
        QApplication::sendEvent(outlets.playList->viewport(), &leave);
        return words;
    }

    // As the system delivers it: the drag comes in, then the button is released.
    bool dropOnView(const QString& path) {
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(path)});
        QDragEnterEvent enter(QPoint(10, 60), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(outlets.playList->viewport(), &enter);
        QDropEvent drop(QPointF(10, 60), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(outlets.playList->viewport(), &drop);
        return drop.isAccepted();
    }
};

}  // namespace

TEST_CASE_FIXTURE(DropFixture, "a dropped file is added on top and loaded") {
    startWithRows({"/music/old.wav"});
    const QString path = file("song.Mp3");
    CHECK(drop({path}));
    CHECK(controller->trackArray == std::vector<QString>{path, "/music/old.wav"});
    CHECK(controller->loadedPath == path);
}

TEST_CASE_FIXTURE(DropFixture, "a file whose name is no UTF-8 is added, and opened by its bytes") {
    start();
    const QByteArray name = home.path().toUtf8() + "/caf\xe9.wav";
    std::FILE* made = std::fopen(name.constData(), "w");
    REQUIRE(made);
    std::fclose(made);
    QMimeData data;
    data.setData(QStringLiteral("text/uri-list"), "file://" + name.toPercentEncoding("/") + "\r\n");
    CHECK(controller->trackLoader().acceptDrop(data.urls()));
    CHECK(log.count("open " + name.toStdString()) == 1);
    CHECK(controller->trackArray == std::vector<QString>{pathFromBytes(name)});
}

TEST_CASE_FIXTURE(DropFixture, "one drop adds one track: the first of the sorted paths") {
    start();
    const QString b = file("b.mp3"), a = file("A.wav");
    CHECK(drop({b, a}));
    CHECK(controller->trackArray == std::vector<QString>{a});
}

TEST_CASE_FIXTURE(DropFixture, "a drop whose first file is refused loads nothing, though others would do") {
    startWithLoadedTrack();
    const Events before = everything();
    CHECK_FALSE(drop({file("b.mp3"), file("a.txt")}));
    CHECK_FALSE(drop({file("song.M4V")}));
    QDir().mkpath(home.path() + "/x.mov");
    CHECK_FALSE(drop({home.path() + "/x.mov"}));
    CHECK(everything() == before);
    CHECK(log.events().empty());
}

TEST_CASE_FIXTURE(DropFixture, "a drop without files is refused") {
    start();
    CHECK_FALSE(drop({}));
    CHECK_FALSE(controller->trackLoader().acceptDrop({QUrl("http://nowhere.invalid/a.mp3")}));
}

TEST_CASE_FIXTURE(DropFixture, "a drop is taken even if the file then cannot be opened as a movie") {
    start();
    const QString path = file("text.mp3");
    engine.unreadable.insert(path.toStdString());
    CHECK(drop({path}));
    CHECK(controller->count() == 0);
    CHECK(controller->loadedPath == path);
}

TEST_CASE_FIXTURE(DropFixture,
                  "hovering is answered with copy whatever is dragged and wherever, marked above the first row") {
    startWithRows({"/music/one.wav", "/music/two.wav"});
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(file("notes.txt"))});
    QDragEnterEvent enter(QPoint(10, 60), Qt::MoveAction | Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(outlets.playList->viewport(), &enter);
    CHECK(enter.isAccepted());
    CHECK(enter.dropAction() == Qt::CopyAction);
    CHECK(outlets.playList->showsDropMarker());
    CHECK(controller->count() == 2);
}

TEST_CASE_FIXTURE(DropFixture, "a file dropped on the list's view arrives, and a refused one is not accepted") {
    start();
    CHECK(dropOnView(file("song.mp3")));
    CHECK_FALSE(dropOnView(file("notes.txt")));
    CHECK(controller->count() == 1);
    CHECK_FALSE(outlets.playList->showsDropMarker());
}

TEST_CASE_FIXTURE(DropFixture, "a dropped file is looked at by another thread, and refused when that gets no answer") {
    start();
    QStringList heard;
    QObject::connect(&controller->notices(), &Notices::told, [&](const Notice& notice) { heard.append(notice.text); });
    const QString path = file("far.wav");
    int waits = 0;
    controller->trackLoader().setPatience([&](const IsDone& isDone) {
        ++waits;
        while (!isDone(std::chrono::milliseconds(1))) {
        }
    });
    CHECK(drop({path}));
    CHECK(waits == 1);
    controller->trackLoader().setPatience([&](const IsDone&) { ++waits; });  // which has run out
    bool refused = false;
    for (int i = 0; i < 1000 && !refused; ++i) refused = !drop({path});  // unless the answer was quicker
    CHECK(refused);
    CHECK(heard.contains("far.wav cannot be read"));
}

TEST_CASE_FIXTURE(DropFixture, "a drop that is not taken is told with the reason") {
    start();
    listen();
    drop({file("song.flac")});
    CHECK(lastTold() == "FLAC files are not taken by dropping: song.flac");
    controller->trackLoader().acceptDrop({QUrl("https://example.org/a.mp3")});
    CHECK(lastTold() == "Web addresses are not played: https://example.org/a.mp3");
    CHECK(told.size() == 2);
    drop({file("song.mp3")});
    CHECK(told.size() == 2);
}

TEST_CASE_FIXTURE(DropFixture,
                  "a drop of many adds the first, tells it, and offers the others as a command of its own") {
    start();
    listen();
    const QString a = file("A.wav"), b = file("b.mp3"), c = file("c.mp3");
    CHECK(drop({c, b, a}));
    CHECK(controller->trackArray == std::vector<QString>{a});
    CHECK(lastTold() == "Only A.wav was added, the first of 3");
    REQUIRE(told.last().actText == "Add the other 2");
    told.last().act();
    waitForQueue();
    CHECK(controller->trackArray == std::vector<QString>{c, b, a});
    CHECK(controller->loadedPath == c);
    CHECK(lastTold() == "Added 2 files");
}

TEST_CASE_FIXTURE(DropFixture, "of the others only those are offered that can be played") {
    start();
    listen();
    CHECK(drop({file("A.wav"), file("b.mp3"), file("cover.jpg")}));
    CHECK(told.last().actText == "Add the other");
    CHECK(drop({file("A.wav"), file("cover.jpg")}));
    CHECK(lastTold() == "Only A.wav was added, the other is not played");
    CHECK(told.last().actText.isEmpty());
}

TEST_CASE_FIXTURE(DropFixture, "where the first is refused the others are offered") {
    start();
    listen();
    const QString b = file("b.wav"), c = file("c.wav");
    CHECK_FALSE(drop({file("a.flac"), b, c}));
    CHECK(controller->count() == 0);
    CHECK(lastTold() == "FLAC files are not taken by dropping: a.flac");
    REQUIRE(told.last().actText == "Add the other 2");
    told.last().act();
    waitForQueue();
    CHECK(controller->trackArray == std::vector<QString>{c, b});
}

TEST_CASE_FIXTURE(DropFixture, "a dropped folder can be opened from, and a file of the panel's kinds can be added") {
    start();
    listen();
    QDir().mkpath(home.path() + "/Album");
    drop({home.path() + "/Album"});
    REQUIRE(told.last().actText == "Open…");
    QString folder;
    controller->trackLoader().setRunPanel([&](FilePanel& panel) -> std::optional<QStringList> {
        folder = panel.directory().path();
        return std::nullopt;
    });
    told.last().act();
    CHECK(folder == home.path() + "/Album");
    const QString clip = file("clip.m4v");
    drop({clip});
    REQUIRE(told.last().actText == "Add");
    told.last().act();
    CHECK(controller->trackArray == std::vector<QString>{clip});
}

TEST_CASE_FIXTURE(DropFixture,
                  "a refused file of a kind that the engine opens is offered, and opened as any sound is") {
    startWithLoadedTrack();
    listen();
    const Events before = everything();
    const QString song = file("song.flac");
    CHECK_FALSE(drop({song}));
    CHECK(everything() == before);
    REQUIRE(told.last().actText == "Open It Anyway");
    told.last().act();
    CHECK(controller->trackArray.at(0) == song);
    CHECK(controller->loadedPath == song);
    CHECK(controller->count() == 3);
    drop({file("notes.txt")});
    CHECK(told.last().actText.isEmpty());
}

TEST_CASE_FIXTURE(DropFixture, "an offered file that cannot be opened is told as by the command") {
    start();
    listen();
    const QString song = file("song.flac");
    engine.unreadable.insert(song.toStdString());
    drop({song});
    told.last().act();
    CHECK(controller->count() == 0);
    CHECK(lastTold() == "Nothing in these files can be played.");
}

TEST_CASE_FIXTURE(DropFixture, "while it hovers a drag says whether it will be taken") {
    start();
    bool refuses = false;
    CHECK(hoverWords({QUrl::fromLocalFile(file("song.flac"))}, refuses) ==
          "FLAC files are not taken by dropping: song.flac");
    CHECK(refuses);
    CHECK_FALSE(outlets.playList->showsDropMarker());
    CHECK(hoverWords({QUrl("https://example.org/a.mp3")}, refuses) ==
          "Web addresses are not played: https://example.org/a.mp3");
    CHECK(refuses);
    CHECK(hoverWords({QUrl::fromLocalFile(file("b.mp3")), QUrl::fromLocalFile(file("A.wav"))}, refuses) ==
          "Only A.wav will be added, the first of 2");
    CHECK_FALSE(refuses);
}
