#include <QFile>
#include <QLabel>

#include "support/widgets/ControllerFixture.h"
#include "ui/controls/ProgressBar.h"

using namespace qm;

namespace {

const std::string kRefusal =
    "alert \"This file contains DRM protection, added by the producer of the audio/video.\" \"It cannot be edited.\" "
    "[Cancel]";

struct ExportFixture : ControllerFixture {
    ExportFixture() { startWithLoadedTrack(); }

    std::string proposed(const QString& path) {
        controller->loadedPath = path;
        log.take();
        controller->exportMovie();
        return log.events().at(0);
    }

    // An export that has begun; the log is empty afterwards.
    FakeExport& exporting() {
        dialogs.savePath = home.path() + "/one.mov";
        controller->exportMovie();
        log.take();
        REQUIRE(engine.movieExport() != nullptr);
        return *engine.movieExport();
    }

    void look(int times = 1) {
        for (int i = 0; i < times; ++i) fire(&controller->trackExport().timer());
    }

    bool isLooking() { return controller->trackExport().timer().isActive(); }
};

}  // namespace

TEST_CASE_FIXTURE(ExportFixture, "a protected file is refused with a warning, whatever the case of its extension") {
    for (const char* name : {"/music/song.m4p", "/music/song.M4P", "/music/song.m4P"}) {
        controller->loadedPath = name;
        controller->exportMovie();
        CHECK(log.take() == Events{"stop", kRefusal, "seekTo 0"});
    }
}

TEST_CASE_FIXTURE(ExportFixture, "a protected file that could not even be opened is refused all the same") {
    engine.unreadable.insert("/music/song.m4p");
    controller->loadFileAdd("/music/song.m4p", false);
    REQUIRE(controller->qtMovie == nullptr);
    log.take();
    controller->exportMovie();
    CHECK(log.events() == Events{kRefusal});
}

TEST_CASE_FIXTURE(ControllerFixture, "without a movie nothing is exported and nothing is asked") {
    startWithRows({"/music/one.wav"});
    const Events before = everything();
    controller->exportMovie();
    CHECK(log.events().empty());
    CHECK(everything() == before);
}

TEST_CASE_FIXTURE(ExportFixture,
                  "the desktop and the track's name as a mov file are proposed, an avi file under its own") {
    const std::string beginning = "save panel " + home.path().toStdString() + "/Desktop ";
    const std::pair<const char*, const char*> names[] = {{"/music/song.mp3", "song.mov"},
                                                         {"/music/clip.avi", "clip.avi"},
                                                         {"/music/clip.AVI", "clip.AVI"},
                                                         {"/music/song", "song.mov"},
                                                         {"/music/a.tar.gz", "a.tar.mov"},
                                                         {"/music/.mp3", ".mp3.mov"},
                                                         {"/mu.sic/song", "song.mov"},
                                                         {"/music/song.mov", "song.mov"},
                                                         {"/music/mit Ümläut.m4a", "mit Ümläut.mov"},
                                                         {"/music/song.avi.mp3", "song.avi.mov"}};
    for (const auto& [path, name] : names) CHECK(proposed(path) == beginning + name);
}

TEST_CASE_FIXTURE(ExportFixture, "a cancelled panel writes nothing and leaves the movie's preferred rate") {
    dialogs.savePath = std::nullopt;
    controller->exportMovie();
    CHECK(log.events().size() == 1);
    CHECK(log.count("save panel") == 1);
    CHECK_FALSE(isLooking());
}

TEST_CASE_FIXTURE(ExportFixture, "the open movie first gets the present speed, then it is written") {
    controller->rate = -0.5f;
    dialogs.savePath = home.path() + "/mit Ümläut.mov";
    controller->exportMovie();
    CHECK(log.events() == Events{"save panel " + home.path().toStdString() + "/Desktop one.mov",
                                 "setPreferredRate -0.5",
                                 "writeToFile " + home.path().toStdString() + "/mit Ümläut.mov QTMovieFlatten YES"});
}

TEST_CASE_FIXTURE(ExportFixture, "a link that is chosen stands for the file behind it") {
    QFile file(home.path() + "/real.mov");
    REQUIRE(file.open(QIODevice::WriteOnly));
    REQUIRE(QFile::link(file.fileName(), home.path() + "/link.mov"));
    dialogs.savePath = home.path() + "/link.mov";
    controller->exportMovie();
    CHECK(log.events().back() ==
          "writeToFile " + QFileInfo(file.fileName()).canonicalFilePath().toStdString() + " QTMovieFlatten YES");
}

TEST_CASE_FIXTURE(ExportFixture, "while playing, an export neither stops nor moves the movie nor changes a control") {
    controller->mostRecentlySelected = 0;
    controller->playForward();
    const Events before = everything();
    exporting().finished = true;
    look();
    CHECK(log.events().empty());
    CHECK(everything() == before);
}

TEST_CASE_FIXTURE(ExportFixture, "an export that is done soon shows no panel, whether it went well or not") {
    FakeExport& export_ = exporting();
    look(4);
    CHECK(outlets.exportPanel->isHidden());
    export_.finished = true;
    look();
    CHECK(outlets.exportPanel->isHidden());
    CHECK_FALSE(isLooking());
    CHECK(engine.movieExport() == nullptr);
    CHECK(log.events().empty());
}

TEST_CASE_FIXTURE(ExportFixture, "one that takes longer shows what it writes and how far it is, until it is done") {
    FakeExport& export_ = exporting();
    export_.done = 0.25;
    look(5);
    CHECK(outlets.exportPanel->isVisible());
    CHECK(outlets.exportName->text() == "Exporting one.mov");
    CHECK(outlets.exportProgress->value() * 4 == outlets.exportProgress->maximum());
    outlets.exportPanel->hide();
    look(3);
    CHECK(outlets.exportPanel->isHidden());
    controller->exportMovie();
    CHECK(outlets.exportPanel->isVisible());
    export_.finished = true;
    look();
    CHECK(outlets.exportPanel->isHidden());
    CHECK_FALSE(isLooking());
}

TEST_CASE_FIXTURE(ExportFixture, "while a track is being written, a second export asks nothing and writes nothing") {
    exporting();
    controller->exportMovie();
    CHECK(log.events().empty());
    CHECK(outlets.exportPanel->isVisible());
}

TEST_CASE_FIXTURE(ExportFixture, "a cancelled export is gone at once, and another can begin") {
    exporting();
    look(5);
    controller->cancelExport();
    CHECK(log.take() == Events{"cancel export"});
    CHECK(outlets.exportPanel->isHidden());
    controller->cancelExport();
    CHECK(log.events().empty());
    exporting().finished = true;
    look();
    CHECK_FALSE(isLooking());
    CHECK(log.events().empty());
}

TEST_CASE_FIXTURE(ExportFixture, "a thread that is slow to notice the end is waited for without blocking") {
    engine.exportsObey = false;
    FakeExport& slow = exporting();
    controller->cancelExport();
    look(3);
    CHECK(isLooking());
    CHECK(engine.movieExport() == &slow);
    slow.finished = true;
    look();
    CHECK_FALSE(isLooking());
    CHECK(log.count("export given up") == 0);
}

TEST_CASE_FIXTURE(ExportFixture, "who wants to hears once how an export ends") {
    std::vector<TrackExport::End> ends;
    const auto hear = [&] { controller->trackExport().setAtEnd([&](TrackExport::End end) { ends.push_back(end); }); };
    CHECK_FALSE(controller->trackExport().isExporting());
    for (const bool written : {true, false}) {
        FakeExport& export_ = exporting();
        CHECK(controller->trackExport().isExporting());
        hear();
        export_.reason = written ? "" : "no room";
        export_.finished = true;
        look();
    }
    exporting();
    hear();
    controller->cancelExport();
    exporting().finished = true;
    look();
    using End = TrackExport::End;
    CHECK((ends == std::vector{End::Written, End::Failed, End::Cancelled}));
}

TEST_CASE_FIXTURE(ExportFixture, "what has been exported is told, and so is what could not be, until the next export") {
    QStringList told;
    QObject::connect(&controller->notices(), &Notices::told, [&](const Notice& notice) { told << notice.text; });
    bool withdrawn = false;
    QObject::connect(&controller->notices(), &Notices::withdrawn,
                     [&](const QString& subject) { withdrawn |= subject == u"export"; });
    exporting().finished = true;
    look();
    FakeExport& export_ = exporting();
    export_.reason = "No space left on device";
    export_.finished = true;
    look();
    REQUIRE(told.size() == 2);
    CHECK(told[0].contains(u"is in the folder"));
    CHECK(told[1].endsWith(u"could not be written: No space left on device"));
    withdrawn = false;
    exporting();
    CHECK(withdrawn);
    controller->cancelExport();
    CHECK(told.last().endsWith(u"was not exported"));
}

TEST_CASE_FIXTURE(ExportFixture, "another track can be loaded while one is being written") {
    exporting();
    controller->loadFileAdd("/music/two.wav", false);
    CHECK(engine.movieExport() != nullptr);
    CHECK(log.count("cancel") == 0);
}

TEST_CASE_FIXTURE(ExportFixture, "closing the main window keeps the play list and gives the export up before the end") {
    exporting();
    controller->windowWillClose(outlets.mainWindow);
    CHECK(log.events() == Events{"cancel export", "exit 0"});
    CHECK(QFile::exists(home.supportFolder() + "/Quillmere.xml"));
}

TEST_CASE_FIXTURE(ExportFixture, "quitting gives the export up") {
    exporting();
    controller->applicationWillTerminate();
    CHECK(log.count("cancel export") == 1);
}
