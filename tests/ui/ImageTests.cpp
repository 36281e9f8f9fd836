#include <doctest/doctest.h>

#include <string>
#include <vector>

#include "engine/api/Log.h"
#include "support/widgets/TestText.h"
#include "ui/controls/NamedImage.h"

using namespace qm;

namespace {

const std::vector<const char*> kNames = {"db_Play_F_on.png",
                                         "db_Play_F_off.png",
                                         "db_Pause_on.png",
                                         "db_Pause_off.png",
                                         "db_Play_R_on.png",
                                         "db_Play_R_off.png",
                                         "db_loop_on.png",
                                         "db_loop_off.png",
                                         "db_set_in_on.png",
                                         "db_set_in_off.png",
                                         "db_set_out_on.png",
                                         "db_set_out_off.png",
                                         "type_AAC.png",
                                         "type_aiff.png",
                                         "type_VIDEO",
                                         "preficon_general.png",
                                         "preficon_SWUpdate.png",
                                         "default.tiff",
                                         "db_rec_ind_on.png",
                                         "db_rec_ind_off.png",
                                         "db_start_recording_off.png",
                                         "db_stop_recording_off.png",
                                         "RecordingControls_Record.png",
                                         "RecordingControls_Stop.png"};

}  // namespace

TEST_CASE("every image has its name and a picture for plain and for doubled screens") {
    CHECK(kNames.size() == 24);
    for (const char* name : kNames) {
        CAPTURE(name);
        const QImage plain = namedImage(QString::fromLatin1(name));
        const QImage doubled = namedImage(QString::fromLatin1(name), 2.0);
        REQUIRE_FALSE(plain.isNull());
        REQUIRE_FALSE(doubled.isNull());
        CHECK(doubled.size() == plain.size() * 2);
        CHECK(doubled.devicePixelRatio() == 2.0);
    }
}

TEST_CASE("the on and off pictures of a button have one size, so that nothing shifts") {
    for (const char* stem :
         {"db_Play_F", "db_Pause", "db_Play_R", "db_loop", "db_set_in", "db_set_out", "db_rec_ind"}) {
        CAPTURE(stem);
        const QString name = QString::fromLatin1(stem);
        CHECK(namedImage(name + QStringLiteral("_on.png")).size() ==
              namedImage(name + QStringLiteral("_off.png")).size());
    }
}

TEST_CASE("an unknown image name gives a null image and a log line") {
    std::vector<std::string> lines;
    setLogSink([&](std::string_view line) { lines.emplace_back(line); });
    CHECK(namedImage(QStringLiteral("nothing.png")).isNull());
    setLogSink({});
    REQUIRE(lines.size() == 1);
    CHECK(lines[0].find("nothing.png") != std::string::npos);
}

TEST_CASE("the loudspeaker is drawn in its two sizes on nothing") {
    const QString name = QStringLiteral("default.tiff");
    CHECK(namedImage(name).size() == QSize(28, 28));
    CHECK(namedImage(name, 2.0).size() == QSize(56, 56));
    CHECK(qAlpha(namedImage(name).pixel(0, 0)) == 0);
}

TEST_CASE("what is shown larger than it is drawn has a picture of four times the size") {
    for (const char* name : {"type_AAC.png", "type_aiff.png", "type_VIDEO", "qm_warning.png", "qm_drop.png"}) {
        CAPTURE(name);
        const QString text = QString::fromLatin1(name);
        const QImage large = namedImage(text, 4.0);
        CHECK(large.size() == namedImage(text).size() * 4);
        CHECK(large.devicePixelRatio() == 4.0);
    }
    CHECK(namedImage(QStringLiteral("db_loop_on.png"), 4.0).devicePixelRatio() == 2.0);
}

TEST_CASE("a line icon takes the wanted size and colour") {
    const QPixmap icon = lineIcon(QStringLiteral("qm_add.png"), 18, QColor(1, 200, 3), 2.0);
    CHECK(icon.size() == QSize(36, 36));
    CHECK(icon.devicePixelRatio() == 2.0);
    const QImage image = icon.toImage();
    const QColor middle = image.pixelColor(image.rect().center());
    CHECK(middle.green() == 200);
    CHECK(middle.alpha() > 200);
}
