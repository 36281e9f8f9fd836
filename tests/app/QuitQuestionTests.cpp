#include "app/QuitQuestion.h"

#include <doctest/doctest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QKeyEvent>
#include <QMessageBox>
#include <QTimer>

#include "support/widgets/ControllerFixture.h"

using namespace qm;

namespace {

using Answer = QuitQuestion::Answer;

struct Quitting : ControllerFixture {
    QMController& player = startWithLoadedTrack();
    Answer answer = Answer::Finish;
    int asked = 0;
    int quits = 0;
    bool waits = false;
    std::function<void()> whileAsked;
    QStringList told;
    QuitQuestion question{player.trackExport(), player.notices(),
                          [this] {
                              ++asked;
                              if (whileAsked) whileAsked();
                              return answer;
                          },
                          [this](bool waiting) { waits = waiting; }};

    Quitting() {
        QObject::connect(&player.notices(), &Notices::told, &player, [this](const Notice& n) { told << n.text; });
    }

    FakeExport& exporting() {
        dialogs.savePath = home.path() + "/one.mov";
        player.exportMovie();
        REQUIRE(engine.movieExport() != nullptr);
        return *engine.movieExport();
    }
    bool mayQuit() {
        return question.mayQuit([this] { ++quits; });
    }
    void end(FakeExport& running, bool written) {
        running.reason = written ? "" : "no room";
        running.finished = true;
        fire(&player.trackExport().timer());
    }
};

const char* const kNotWritten = "The movie could not be written, so Quillmere has not quit";

}  // namespace

TEST_CASE_FIXTURE(Quitting, "without an export nobody is asked") {
    CHECK(mayQuit());
    CHECK(asked == 0);
}

TEST_CASE_FIXTURE(Quitting, "the program waits with the export's panel in sight and quits when the movie is written") {
    FakeExport& running = exporting();
    CHECK_FALSE(mayQuit());
    CHECK(asked == 1);
    CHECK(waits);
    CHECK(outlets.exportPanel->isVisible());
    CHECK(quits == 0);
    end(running, true);
    CHECK(quits == 1);
    CHECK_FALSE(told.contains(kNotWritten));
}

TEST_CASE_FIXTURE(Quitting, "an export that fails meanwhile is told, and the program stays") {
    FakeExport& running = exporting();
    CHECK_FALSE(mayQuit());
    end(running, false);
    CHECK(quits == 0);
    CHECK_FALSE(waits);
    CHECK(told.last() == kNotWritten);
    CHECK(mayQuit());
    CHECK(asked == 1);
}

TEST_CASE_FIXTURE(Quitting, "an export that is cancelled meanwhile keeps the program") {
    exporting();
    CHECK_FALSE(mayQuit());
    player.cancelExport();
    CHECK(quits == 0);
    CHECK_FALSE(waits);
    CHECK_FALSE(told.contains(kNotWritten));
}

TEST_CASE_FIXTURE(Quitting, "who would rather quit now does, and who stays stays") {
    FakeExport& running = exporting();
    answer = Answer::Stay;
    CHECK_FALSE(mayQuit());
    CHECK_FALSE(waits);
    answer = Answer::QuitNow;
    CHECK(mayQuit());
    CHECK(asked == 2);
    answer = Answer::Stay;
    CHECK_FALSE(mayQuit());
    end(running, true);
    CHECK(quits == 0);
}

TEST_CASE_FIXTURE(Quitting, "the answer to a second question takes the place of the first one") {
    FakeExport& running = exporting();
    CHECK_FALSE(mayQuit());
    answer = Answer::Stay;
    CHECK_FALSE(mayQuit());
    CHECK_FALSE(waits);
    end(running, true);
    CHECK(quits == 0);
}

TEST_CASE_FIXTURE(Quitting, "a movie that is written while the question stands lets the program quit at once") {
    FakeExport& running = exporting();
    whileAsked = [&] { end(running, true); };
    CHECK(mayQuit());
    CHECK(quits == 0);
}

TEST_CASE_FIXTURE(Quitting, "one that fails while the question stands is told, and the program stays") {
    FakeExport& running = exporting();
    whileAsked = [&] { end(running, false); };
    CHECK_FALSE(mayQuit());
    CHECK(told.last() == kNotWritten);
}

TEST_CASE_FIXTURE(Quitting, "a window that may not close stays open and keeps the program") {
    exporting();
    outlets.mainWindow->show();
    outlets.mainWindow->mayClose = [this] { return mayQuit(); };
    log.take();
    outlets.mainWindow->close();
    CHECK(outlets.mainWindow->isVisible());
    CHECK(log.count("exit") == 0);
    answer = Answer::QuitNow;
    outlets.mainWindow->close();
    CHECK(log.count("exit 0") == 1);
}

TEST_CASE("the question is an alert of the program; Esc quits nothing") {
    const auto ask = [](const std::function<void(QMessageBox&)>& user) {
        QTimer::singleShot(0, [&user] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            REQUIRE(box != nullptr);
            user(*box);
        });
        return askWhetherToQuit(nullptr);
    };
    const auto press = [](const QString& title) {
        return [title](QMessageBox& box) {
            for (QAbstractButton* button : box.buttons())
                if (button->text() == title) button->click();
        };
    };
    CHECK(ask(press("Finish the export, then quit")) == Answer::Finish);
    CHECK(ask(press("Quit now")) == Answer::QuitNow);
    CHECK(ask([](QMessageBox& box) {
              QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
              QApplication::sendEvent(&box, &escape);
          }) == Answer::Stay);
}
