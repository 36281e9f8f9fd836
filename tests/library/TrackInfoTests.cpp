#include "library/TrackInfo.h"

#include <QLabel>

#include "support/widgets/ControllerFixture.h"

using namespace qm;

namespace {

struct InfoFixture : ControllerFixture {
    InfoFixture() {
        for (QLabel* label : labels) label->setText("as it was");
        outlets.trackInfoWindow = &panel;
        outlets.copyright = &copyright;
        outlets.format = &format;
        outlets.formatInInfo = &formatInInfo;
        outlets.duration = &duration;
        outlets.movieName = &movieName;
        outlets.movieSize = &movieSize;
    }

    MovieScript& script() { return engine.movie()->script; }
    void refresh() { TrackInfo(*controller, *controller, *controller).movieMetaData(); }

    QWidget footer, panel;
    QLabel copyright{&panel}, format{&footer}, formatInInfo{&panel}, duration{&panel}, movieName{&panel},
        movieSize{&panel};
    const std::vector<QLabel*> labels = {&copyright, &format, &formatInInfo, &duration, &movieName, &movieSize};
};

}  // namespace

TEST_CASE_FIXTURE(InfoFixture, "without a movie every field is one space") {
    start();
    refresh();
    for (const QLabel* label : labels) CHECK(label->text() == " ");
}

TEST_CASE_FIXTURE(InfoFixture, "the copyright is shown, and a space where there is none or only <null>") {
    startWithLoadedTrack();
    script().copyright = "© 2019 Süd";
    refresh();
    CHECK(copyright.text() == QStringLiteral("© 2019 Süd"));
    script().copyright = "<null>";
    refresh();
    CHECK(copyright.text() == " ");
    copyright.setText("as it was");
    script().copyright.reset();
    refresh();
    CHECK(copyright.text() == " ");
    script().copyright = " <null>";
    refresh();
    CHECK(copyright.text() == " <null>");
}

TEST_CASE_FIXTURE(InfoFixture, "the name is the selected row's full path, which need not be the loaded file") {
    startWithLoadedTrack();
    outlets.playList->selectRowIndex(1);
    refresh();
    CHECK(movieName.text() == "/music/two.wav");
}

TEST_CASE_FIXTURE(InfoFixture, "without a selected row the name stays") {
    startWithLoadedTrack();
    outlets.playList->selectRowIndex(-1);
    movieName.setText("as it was");
    refresh();
    CHECK(movieName.text() == "as it was");
}

TEST_CASE_FIXTURE(InfoFixture, "the format has a line for each track that has a summary, in both fields") {
    startWithLoadedTrack();
    script().trackFormats = {"H.264, 640 x 480", std::nullopt, "AAC, Stereo, 44.100 kHz"};
    refresh();
    CHECK(format.text() == "H.264, 640 x 480\nAAC, Stereo, 44.100 kHz\n");
    CHECK(formatInInfo.text() == format.text());
}

TEST_CASE_FIXTURE(InfoFixture, "tracks without any summary are muxed") {
    startWithLoadedTrack();
    for (const std::size_t tracks : {1, 2}) {
        script().trackFormats.assign(tracks, std::nullopt);
        format.setText("as it was");
        refresh();
        CHECK(format.text() == "MPEG-1 Muxed");
        CHECK(formatInInfo.text() == "MPEG-1 Muxed");
    }
}

TEST_CASE_FIXTURE(InfoFixture, "a movie without tracks leaves both format fields") {
    startWithLoadedTrack();
    script().trackFormats.clear();
    format.setText("as it was");
    formatInInfo.setText("as it was too");
    refresh();
    CHECK(format.text() == "as it was");
    CHECK(formatInInfo.text() == "as it was too");
}

TEST_CASE_FIXTURE(InfoFixture, "the duration is days, hours, minutes and seconds") {
    startWithLoadedTrack();
    script().duration = 600 * 3723;
    refresh();
    CHECK(duration.text() == "0:01:02:03");
    script().duration = 600 * 83 + 599;
    refresh();
    CHECK(duration.text() == "0:00:01:23");
}

TEST_CASE_FIXTURE(InfoFixture, "the size is the plain number of bytes, and stays where it is not known") {
    startWithLoadedTrack();
    script().dataSize = 12345678901;
    refresh();
    CHECK(movieSize.text() == "12345678901");
    script().dataSize.reset();
    refresh();
    CHECK(movieSize.text() == "12345678901");
}

TEST_CASE_FIXTURE(InfoFixture, "the information panel is shown with its fields filled, then hidden") {
    startWithLoadedTrack();
    controller->displayInfo();
    CHECK(panel.isVisible());
    CHECK(movieName.text() == "/music/one.wav");
    movieName.setText("as it was");
    controller->displayInfo();
    CHECK_FALSE(panel.isVisible());
    CHECK(movieName.text() == "as it was");
}

TEST_CASE_FIXTURE(InfoFixture, "without a selected row the information panel neither comes nor goes") {
    startWithLoadedTrack();
    outlets.playList->selectRowIndex(-1);
    controller->displayInfo();
    CHECK_FALSE(panel.isVisible());
    panel.show();
    controller->displayInfo();
    CHECK(panel.isVisible());
}

TEST_CASE_FIXTURE(InfoFixture, "with a row selected and no movie the panel is shown blank") {
    startWithRows({"/music/one.m4a"});
    outlets.playList->selectRowIndex(0);
    controller->displayInfo();
    CHECK(panel.isVisible());
    for (const QLabel* label : labels) CHECK(label->text() == " ");
}

TEST_CASE_FIXTURE(InfoFixture, "the format line is hidden and shown, and nothing else changes") {
    startWithLoadedTrack();
    format.setText("AAC");
    const Events before = everything();
    controller->displayTrackFormat();
    CHECK(format.isHidden());
    CHECK_FALSE(formatInInfo.isHidden());
    controller->displayTrackFormat();
    CHECK_FALSE(format.isHidden());
    CHECK(format.text() == "AAC");
    CHECK(everything() == before);
}
