#include <QApplication>
#include <QDir>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QMetaMethod>
#include <QMouseEvent>
#include <QScrollBar>
#include <QTimer>

#include "app/WindowPosition.h"
#include "support/widgets/ControllerFixture.h"

using namespace qm;

namespace {

void writeFile(const QString& path, const QByteArray& bytes) {
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    REQUIRE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

const char kOneTrack[] =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<plist version=\"1.0\"><array><dict>"
    "<key>track</key><string>/music/kept.wav</string><key>displayName</key><string>Kept</string>"
    "<key>duration</key><integer>60000</integer><key>timescale</key><integer>600</integer>"
    "<key>bass</key><integer>1</integer><key>treble</key><integer>2</integer>"
    "</dict></array></plist>\n";

void sendMouse(QWidget* widget, QEvent::Type type, QPoint at) {
    QMouseEvent event(type, at, widget->mapToGlobal(at), Qt::LeftButton,
                      type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(widget, &event);
}

void doubleClick(QWidget* widget, QPoint at) {
    for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease, QEvent::MouseButtonDblClick,
                            QEvent::MouseButtonRelease}) {
        sendMouse(widget, type, at);
    }
}

std::vector<QLabel*> colouredLabels(const Outlets& o) {
    return {o.audioLevelLeft,  o.audioLevelRight, o.speedTitle,    o.speed_2,    o.speed_1,     o.speedMinDown,
            o.speedMinDotDown, o.speed0,          o.speedMinDotUp, o.speedMinUp, o.speed1,      o.speed2,
            o.speedNormal,     o.pitchTitle,      o.pitch_1200,    o.pitch_100,  o.pitchMinDot, o.pitch0,
            o.pitchMaxDot,     o.pitch100,        o.pitch1200};
}

}  // namespace

TEST_CASE_FIXTURE(
    ControllerFixture,
    "the first step of start-up loads the icons, reads the play list, then gives the meters their default") {
    writeFile(home.supportFolder() + "/Quillmere.xml", "damaged");
    init();
    const Events events = log.take();
    REQUIRE(events.size() == 6);
    CHECK(events[0] == "image type_AAC.png");
    CHECK(events[1] == "image type_aiff.png");
    CHECK(events[2] == "image type_VIDEO");
    CHECK(events[3].starts_with("log loadPlayList"));
    CHECK(events[4] == "contains AudioLevels");
    CHECK(events[5] == "store AudioLevels true");
}

TEST_CASE_FIXTURE(ControllerFixture, "the first step of start-up is finished before the second begins") {
    writeFile(home.supportFolder() + "/Quillmere.xml", kOneTrack);
    init();
    CHECK(controller->trackArray == std::vector<QString>{"/music/kept.wav"});
    CHECK(prefs.boolForKey("AudioLevels"));
    CHECK(controller->controlColorAttributes.color == QColor(Qt::white));
    CHECK(controller->mainWindow == nullptr);
    CHECK(controller->fadeInTimer == nullptr);
}

TEST_CASE_FIXTURE(ControllerFixture, "the flags are off and no row was ever selected at the start") {
    init();
    CHECK_FALSE(controller->isRecording);
    CHECK_FALSE(controller->audioLevelIndicatorsState);
    CHECK_FALSE(controller->isLooping);
    CHECK_FALSE(controller->isPlaying);
    CHECK_FALSE(controller->markBset);
    CHECK(controller->mostRecentlySelected == -1);
}

TEST_CASE_FIXTURE(ControllerFixture,
                  "speed, gain, pitch, balance, treble and bass have their start values before the windows are there") {
    prefs.setFloat("DefaultAudioLevel", 0.25f);
    init();
    CHECK(controller->rate == 1.0f);
    CHECK(controller->gain == 0.5f);
    CHECK(controller->pitch == 0.0f);
    CHECK(controller->balance == 0.0f);
    CHECK(controller->treble == 128);
    CHECK(controller->bass == 128);
}

TEST_CASE_FIXTURE(ControllerFixture, "there is no movie, no path, no clock and no mark time at the start") {
    init();
    CHECK(controller->qtMovie == nullptr);
    CHECK(controller->quickTimeMovie == 0);
    CHECK(controller->loadedPath.isNull());
    CHECK(controller->movieTimer == nullptr);
    CHECK(controller->timeA == QTTime{});
    CHECK(controller->timeB == QTTime{});
    CHECK(controller->slashCharacter == QChar('/'));
}

TEST_CASE_FIXTURE(ControllerFixture, "the ten arrays start empty with room for ten") {
    init();
    const auto startsEmpty = [](const auto& array) { return array.empty() && array.capacity() >= 10; };
    CHECK(startsEmpty(controller->trackArray));
    CHECK(startsEmpty(controller->artistArray));
    CHECK(startsEmpty(controller->albumArray));
    CHECK(startsEmpty(controller->displayNamesArray));
    CHECK(startsEmpty(controller->durations));
    CHECK(startsEmpty(controller->timescaleArray));
    CHECK(startsEmpty(controller->bassArray));
    CHECK(startsEmpty(controller->trebleArray));
    CHECK(startsEmpty(controller->markAarray));
    CHECK(startsEmpty(controller->markBarray));
}

TEST_CASE_FIXTURE(ControllerFixture, "each icon is the image of its name") {
    init();
    CHECK(controller->trackIcon.text("name") == "type_AAC.png");
    CHECK(controller->nonM4aIcon.text("name") == "type_aiff.png");
    CHECK(controller->videoIcon.text("name") == "type_VIDEO");
}

TEST_CASE_FIXTURE(ControllerFixture, "level meters that were switched off stay off") {
    prefs.setBool("AudioLevels", false);
    log.take();
    init();
    CHECK(log.count("store") == 0);
    CHECK_FALSE(prefs.boolForKey("AudioLevels"));
}

TEST_CASE_FIXTURE(ControllerFixture, "level meters that were switched on are not stored again") {
    prefs.setBool("AudioLevels", true);
    log.take();
    init();
    CHECK(log.count("store") == 0);
    CHECK(prefs.boolForKey("AudioLevels"));
}

TEST_CASE_FIXTURE(ControllerFixture, "value titles are drawn white at thirteen points in the font of the controls") {
    init();
    CHECK(controller->controlColorAttributes.font.pointSizeF() == 13.0);
    CHECK(controller->controlColorAttributes.font.family() == QApplication::font().family());
    CHECK(controller->controlColorAttributes.color == QColor(255, 255, 255));
}

TEST_CASE_FIXTURE(ControllerFixture,
                  "the main window starts transparent and its fade repeats every twentieth of a second") {
    start();
    CHECK(outlets.mainWindow->alphaValue() == 0.0);
    REQUIRE(controller->fadeInTimer);
    CHECK(controller->fadeInTimer->isActive());
    CHECK(controller->fadeInTimer->interval() == 50);
    CHECK_FALSE(controller->fadeInTimer->isSingleShot());
}

TEST_CASE_FIXTURE(ControllerFixture, "the window fades in and becomes the key window on the twenty-second step") {
    start();
    fire(controller->fadeInTimer.get());
    CHECK(outlets.mainWindow->alphaValue() == doctest::Approx(0.05));
    CHECK(outlets.mainWindow->isVisible());
    for (int step = 2; step <= 21; ++step) fire(controller->fadeInTimer.get());
    CHECK(outlets.mainWindow->alphaValue() == doctest::Approx(1.05));
    CHECK_FALSE(outlets.mainWindow->keyWindow);
    CHECK(controller->fadeInTimer->isActive());
    fire(controller->fadeInTimer.get());
    CHECK(outlets.mainWindow->alphaValue() == doctest::Approx(1.05));
    CHECK(outlets.mainWindow->keyWindow);
    CHECK_FALSE(controller->fadeInTimer->isActive());
}

TEST_CASE_FIXTURE(
    ControllerFixture,
    "a double-click on a row plays it once, a single click and a double-click beside the rows do nothing") {
    startWithRows({"/music/one.wav", "/music/two.wav"});
    outlets.playList->resize(600, 300);
    QWidget* viewport = outlets.playList->viewport();
    const QPoint row = outlets.playList->visualRect(outlets.playList->model()->index(1, 1)).center();
    sendMouse(viewport, QEvent::MouseButtonPress, row);
    sendMouse(viewport, QEvent::MouseButtonRelease, row);
    CHECK(outlets.playList->selectedRow() == 1);
    CHECK(log.events() == Events{});
    doubleClick(viewport, {row.x(), viewport->height() - 2});
    CHECK(log.count("open") == 0);
    doubleClick(viewport, row);
    CHECK(log.count("open /music/two.wav") == 1);
    CHECK(log.count("open") == 1);
    CHECK(controller->isPlaying);
}

TEST_CASE_FIXTURE(ControllerFixture, "return on a selected row plays it") {
    startWithRows({"/music/one.wav"});
    QKeyEvent key(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
    QApplication::sendEvent(outlets.playList, &key);
    CHECK(log.count("open") == 0);
    outlets.playList->selectRowIndex(0);
    QApplication::sendEvent(outlets.playList, &key);
    CHECK(log.count("open /music/one.wav") == 1);
    CHECK(controller->isPlaying);
}

TEST_CASE_FIXTURE(ControllerFixture, "a stored window position is restored") {
    writeFile(windowPositionPath(), "40 50 500 400 0 0 800 800 ");
    start();
    CHECK(outlets.mainWindow->size() == QSize(500, 400));
    CHECK(outlets.mainWindow->pos() == QPoint(40, outlets.mainWindow->screen()->geometry().height() - 50 - 400));
}

TEST_CASE_FIXTURE(ControllerFixture,
                  "a missing, foreign or unreadable position file keeps the layout's frame and shows nothing") {
    outlets.mainWindow->setGeometry(12, 34, 560, 430);
    SUBCASE("missing") {}
    SUBCASE("words") {
        writeFile(windowPositionPath(), "abc");
    }
    SUBCASE("not text") {
        writeFile(windowPositionPath(), "10 10 500 400 \xff\xfe");
    }
    SUBCASE("a folder") {
        QDir().mkpath(windowPositionPath());
    }
    start();
    CHECK(outlets.mainWindow->geometry() == QRect(12, 34, 560, 430));
    CHECK(QApplication::activeModalWidget() == nullptr);
}

TEST_CASE_FIXTURE(ControllerFixture, "the play list is dressed, takes files and can scroll") {
    start();
    CHECK(outlets.playList->verticalScrollBar()->property("controlTint") == "graphite");
    CHECK(outlets.playList->property("selectionHighlightStyle") == "sourceList");
    CHECK(outlets.playList->acceptDrops());
    CHECK(outlets.playList->verticalScrollBarPolicy() != Qt::ScrollBarAlwaysOff);
}

TEST_CASE_FIXTURE(ControllerFixture, "the size field groups the thousands of numbers and shows no decimals") {
    start();
    CHECK(outlets.movieSize->property("numberFormat") == "#,###");
    CHECK(outlets.movieSize->property("allowsDecimals") == false);
}

TEST_CASE_FIXTURE(ControllerFixture, "start-up leaves the second column as wide as it was laid out") {
    startWithRows({"/music/one.wav"});
    outlets.playList->resize(900, 300);
    outlets.mainWindow->show();
    const int column = outlets.playList->horizontalHeader()->logicalIndex(1);
    const int before = outlets.playList->columnWidth(column);
    REQUIRE(before > 1);
    std::vector<int> widths;
    QObject::connect(outlets.playList->horizontalHeader(), &QHeaderView::sectionResized,
                     [&](int section, int, int width) {
                         if (section == column) widths.push_back(width);
                     });
    awakeWith(*controller, outlets);
    REQUIRE_FALSE(widths.empty());
    CHECK(outlets.playList->columnWidth(column) == before);
    CHECK(std::count(widths.begin(), widths.end(), before - 1) > 0);
}

TEST_CASE_FIXTURE(
    ControllerFixture,
    "the stored text colour is given to the read-outs and the scale labels, and an unknown one is green") {
    const std::pair<int, QColor> colours[] = {{0, QColor(0, 255, 255)}, {1, QColor(255, 255, 255)},
                                              {2, QColor(255, 128, 0)}, {3, QColor(0, 255, 0)},
                                              {7, QColor(0, 255, 0)},   {-1, QColor(0, 255, 0)}};
    for (const auto& [choice, colour] : colours) {
        CAPTURE(choice);
        prefs.setInteger("TextColor", choice);
        start();
        for (const QLabel* label : colouredLabels(outlets)) {
            CHECK(label->palette().color(QPalette::WindowText) == colour);
        }
    }
}

TEST_CASE_FIXTURE(ControllerFixture, "labels are cyan when no colour was ever chosen") {
    start();
    for (const QLabel* label : colouredLabels(outlets)) {
        CHECK(label->palette().color(QPalette::WindowText) == QColor(0, 255, 255));
    }
}

TEST_CASE_FIXTURE(ControllerFixture,
                  "without a default level, or with a stored zero, the gain is a half and its title as laid out") {
    SUBCASE("never set") {}
    SUBCASE("stored zero") {
        prefs.setFloat("DefaultAudioLevel", 0.0f);
    }
    outlets.gainSlider->setValue(0.9);
    start();
    CHECK(outlets.gainSlider->value() == 0.5);
    CHECK(controller->gain == 0.5f);
    CHECK(outlets.gainResetButton->title() == "as laid out");
    CHECK_FALSE(outlets.gainResetButton->titleAttributes());
}

TEST_CASE_FIXTURE(ControllerFixture, "a stored default level is on the slider, in the gain and in the title") {
    prefs.setFloat("DefaultAudioLevel", 0.25f);
    start();
    CHECK(outlets.gainSlider->value() == 0.25);
    CHECK(controller->gain == 0.25f);
    CHECK(outlets.gainResetButton->title() == "0.25");
    CHECK(outlets.gainResetButton->titleAttributes() == controller->controlColorAttributes);
}

TEST_CASE_FIXTURE(ControllerFixture, "the start gain reaches no movie before the first load") {
    prefs.setFloat("DefaultAudioLevel", 0.25f);
    writeFile(home.supportFolder() + "/Quillmere.xml", kOneTrack);
    start();
    CHECK(log.count("open") == 0);
    CHECK(log.count("setVolume") == 0);
    outlets.playList->selectRowIndex(0);
    controller->playForward();
    CHECK(log.count("setVolume 0.25") == 1);
}

TEST_CASE_FIXTURE(ControllerFixture, "start-up with a full list loads no track and selects no row") {
    writeFile(home.supportFolder() + "/Quillmere.xml", kOneTrack);
    start();
    CHECK(outlets.playList->model()->rowCount() == 1);
    CHECK(outlets.trackTotal->text() == "1 Track");
    CHECK(outlets.playList->selectedRow() == -1);
    CHECK(controller->qtMovie == nullptr);
    CHECK(log.count("open") == 0);
    CHECK(controller->movieTimer == nullptr);
}

TEST_CASE_FIXTURE(ControllerFixture, "the level panel is shown or hidden as the preference says") {
    start();
    CHECK(outlets.audioLevelsPanel->isVisible());
    prefs.setBool("AudioLevels", false);
    start();
    CHECK_FALSE(outlets.audioLevelsPanel->isVisible());
}

TEST_CASE_FIXTURE(ControllerFixture, "a stored closed toolbar does not hide the toolbar at the next start") {
    prefs.setBool("ToolbarOpen", false);
    start();
    CHECK_FALSE(outlets.toolbar->isHidden());
}

TEST_CASE_FIXTURE(ControllerFixture, "files dropped on the play list are added") {
    const QString path = home.path() + "/song.wav";
    writeFile(path, "sound");
    start();
    REQUIRE(outlets.playList->acceptDrop);
    CHECK(outlets.playList->acceptDrop({QUrl::fromLocalFile(path)}));
    CHECK(controller->trackArray == std::vector<QString>{path});
}

TEST_CASE_FIXTURE(ControllerFixture, "without any control every action is harmless") {
    init();
    controller->awakeFromNib();
    controller->loadFileAdd("/music/one.wav", true);
    const QMetaObject& meta = QMController::staticMetaObject;
    int actions = 0;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        if (meta.method(i).methodType() != QMetaMethod::Slot) continue;
        CAPTURE(meta.method(i).name().toStdString());
        const bool takesValue = meta.method(i).parameterCount() == 1;
        CHECK(takesValue ? meta.method(i).invoke(controller.get(), Q_ARG(double, 0.5))
                         : meta.method(i).invoke(controller.get()));
        ++actions;
    }
    CHECK(actions > 40);
    controller->applicationWillTerminate();
    controller->windowWillClose(nullptr);
    CHECK(log.count("exit") == 0);
}
