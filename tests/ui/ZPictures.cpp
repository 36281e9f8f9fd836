#include <doctest/doctest.h>

#include <QApplication>
#include <cmath>
#include "support/widgets/LivingWindow.h"
#include "ui/Style.h"
#include "ui/controls/ChipButton.h"
#include "ui/controls/NoticeLine.h"
#include "ui/controls/WaveformStrip.h"
#include "ui/windows/HeroView.h"

using namespace qm;

TEST_CASE("zpictures") {
    if (!qEnvironmentVariableIsSet("QM_PICTURES")) return;
    const QString dir = qEnvironmentVariable("QM_PICTURES");
    applyStyle();
    LivingWindow w;
    w.window.show();
    const auto shoot = [&](const char* name) {
        w.state.refresh();
        for (int i = 0; i < 5; ++i) QApplication::processEvents();
        w.window.grab().save(dir + '/' + name + ".png");
    };
    Notices& n = w.controller.notices();
    n.tell({"FLAC files are not played", {}});
    shoot("idle");
    w.loadTrack();
    std::vector<float> peaks;
    for (int i = 0; i < 400; ++i) peaks.push_back(float(0.4 + 0.35 * std::sin(i * 0.7) * std::sin(i * 0.05)));
    w.fixture.engine.movie()->pictured = {peaks, peaks.size(), true};
    w.outlets.timecode->setText("0:01:23.45");
    w.outlets.timeRemaining->setText("00:02:49");
    n.tell({"3 tracks removed", "Bring Back", [] {}});
    shoot("short-button");
    w.controller.speed075();
    w.controller.semiToneDown();
    w.markAt(12000, 24000);
    w.controller.loopSwitch();
    n.tell({"A at 20 seconds", {}});
    shoot("beside");
    n.tell({"3 tracks removed", "Bring Back", [] {}});
    shoot("beside-button");
    n.tell({"The play list cannot be saved: the disk is full", "Try Again", [] {}});
    shoot("long");
    w.grid().hero->noticeLine().button()->setFocus(Qt::TabFocusReason);
    shoot("long-focus");
    n.tell({"Not found: /media/usb/Practice/Études for the left hand/Second Line Strut (live, 1974).mp3", "Look For It",
            [] {}});
    shoot("cut");
    w.controller.volumeMin();
    n.tell({"B at 40 seconds", {}});
    shoot("four-tags");
    w.window.resize(1280, 830);
    n.tell({"The play list cannot be saved: the disk is full", "Try Again", [] {}});
    shoot("roomy");
    n.tell({"Not found: /media/usb/Practice/Études for the left hand/Second Line Strut (live, 1974).mp3", "Look For It",
            [] {}});
    shoot("roomy-cut");
    w.markAt(40000, 12000);
    w.controller.loopSwitch();
    w.controller.loopSwitch();
    n.tell({"Loop from 20 seconds to 1 minute 6 seconds", {}});
    shoot("roomy-inverted");
}
