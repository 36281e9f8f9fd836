#include <QApplication>
#include <QKeyEvent>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>

#include "library/Alert.h"
#include "support/widgets/ControllerFixture.h"

using namespace qm;

namespace {

struct AlertFixture : ControllerFixture {
    // With the real dialog, dismissed as the test says.
    void alertDismissedBy(void (*user)(QMessageBox&)) {
        controller->playerAlert().setRunAlert([this, user](const QString& m, const QString& i, const QString& b) {
            QTimer::singleShot(0, [user] {
                auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
                REQUIRE(box != nullptr);
                user(*box);
            });
            runWarningAlert(nullptr, m, {b}, i);
            log.add("dismissed");
        });
        alert();
    }

    void alert() { controller->displayAlertInfoButtonText("What happened.", "What it means.", "Enough"); }

    void playAt(float rate) {
        startWithLoadedTrack();
        controller->mostRecentlySelected = 0;
        controller->rate = rate;
        controller->playForward();
        log.take();
    }
};

}  // namespace

TEST_CASE_FIXTURE(AlertFixture, "a warning stops clock and movie first, then asks, then goes to the start") {
    playAt(1.0f);
    log.atEvent = [this](const std::string& event) {
        if (event == "stop") {
            CHECK_FALSE(controller->movieTimer->isActive());
            CHECK_FALSE(controller->isPlaying);
            CHECK(outlets.playForwardButton->imageName() == "db_Play_F_on.png");
        }
        if (event.starts_with("alert"))
            CHECK(transportImages() == Events{"db_Play_F_off.png", "db_Pause_on.png", "db_Play_R_off.png"});
    };
    alert();
    CHECK(log.events() == Events{"stop", "alert \"What happened.\" \"What it means.\" [Enough]", "seekTo 0"});
}

TEST_CASE_FIXTURE(AlertFixture, "a speed above normal is normal again before the warning shows") {
    playAt(1.5f);
    log.atEvent = [this](const std::string& event) {
        if (!event.starts_with("alert")) return;
        CHECK(controller->rate == 1.0f);
        CHECK(outlets.speedSlider->value() == 1.0);
        CHECK(outlets.speedResetButton->title() == "1.000000.2");
        CHECK(outlets.speedResetButton->titleAttributes() == controller->controlColorAttributes);
    };
    alert();
    CHECK(log.count("alert") == 1);
    CHECK(log.count("setRate") == 0);
}

TEST_CASE_FIXTURE(AlertFixture, "normal, slower and backward speeds are left alone") {
    for (const float rate : {1.0f, 0.75f, -2.0f, 0.0f}) {
        playAt(1.0f);
        controller->rate = rate;
        outlets.speedSlider->setValue(2.25);
        outlets.speedResetButton->setPlainTitle("as it was");
        alert();
        CHECK(controller->rate == rate);
        CHECK(outlets.speedSlider->value() == 2.25);
        CHECK(outlets.speedResetButton->title() == "as it was");
    }
}

TEST_CASE_FIXTURE(AlertFixture, "with the loop on the track ends at mark A") {
    playAt(1.0f);
    controller->isLooping = true;
    controller->markAarray[0] = 1200;
    alert();
    CHECK(log.events().back() == "setCurrentTime 1200/600");
}

TEST_CASE_FIXTURE(AlertFixture, "whichever way the warning goes, the track is at its start afterwards") {
    const auto byButton = [](QMessageBox& box) { box.buttons().first()->click(); };
    const auto byEscape = [](QMessageBox& box) {
        QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
        QApplication::sendEvent(&box, &escape);
    };
    const auto byClosing = [](QMessageBox& box) { box.close(); };
    for (void (*user)(QMessageBox&) : {+byButton, +byEscape, +byClosing}) {
        playAt(1.0f);
        alertDismissedBy(user);
        CHECK(log.events() == Events{"stop", "dismissed", "seekTo 0"});
    }
}

TEST_CASE_FIXTURE(AlertFixture, "the warning has its message, what it means and one button") {
    playAt(1.0f);
    alertDismissedBy([](QMessageBox& box) {
        CHECK(box.icon() == QMessageBox::Warning);
        CHECK(box.text() == "What happened.");
        CHECK(box.informativeText() == "What it means.");
        REQUIRE(box.buttons().size() == 1);
        CHECK(box.buttons().first()->text() == "Enough");
        box.reject();
    });
    CHECK(log.count("dismissed") == 1);
}

TEST_CASE_FIXTURE(AlertFixture, "without a movie the warning shows and nothing else happens") {
    start();
    log.take();
    alert();
    CHECK(log.events() == Events{"alert \"What happened.\" \"What it means.\" [Enough]"});
    CHECK(transportImages() == Events{"db_Play_F_off.png", "db_Pause_on.png", "db_Play_R_off.png"});
}
