#include "library/TrackInfo.h"

#include <QLabel>

#include "support/widgets/ControllerFixture.h"

using namespace qm;

namespace {

struct InfoFixture : ControllerFixture {
    InfoFixture() {
        for (QLabel* label : labels) label->setText("as it was");
        outlets.copyright = &copyright;
        outlets.format = &format;
        outlets.formatInInfo = &formatInInfo;
        outlets.duration = &duration;
        outlets.movieName = &movieName;
        outlets.movieSize = &movieSize;
    }

    QLabel copyright, format, formatInInfo, duration, movieName, movieSize;
    const std::vector<QLabel*> labels = {&copyright, &format, &formatInInfo, &duration, &movieName, &movieSize};
};

}  // namespace

TEST_CASE_FIXTURE(InfoFixture, "without a movie every field is one space") {
    start();
    TrackInfo(*controller, *controller, *controller).movieMetaData();
    for (const QLabel* label : labels) CHECK(label->text() == " ");
}

TEST_CASE_FIXTURE(InfoFixture, "the name is the selected row's full path, which need not be the loaded file") {
    startWithLoadedTrack();
    outlets.playList->selectRowIndex(1);
    TrackInfo(*controller, *controller, *controller).movieMetaData();
    CHECK(movieName.text() == "/music/two.wav");
}

TEST_CASE_FIXTURE(InfoFixture, "without a selected row the name stays") {
    startWithLoadedTrack();
    outlets.playList->selectRowIndex(-1);
    movieName.setText("as it was");
    TrackInfo(*controller, *controller, *controller).movieMetaData();
    CHECK(movieName.text() == "as it was");
}

TEST_CASE_FIXTURE(InfoFixture, "the duration is days, hours, minutes and seconds") {
    startWithLoadedTrack();
    engine.movie()->script.duration = 600 * 3723;
    TrackInfo(*controller, *controller, *controller).movieMetaData();
    CHECK(duration.text() == "0:01:02:03");
}
