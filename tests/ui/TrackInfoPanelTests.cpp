#include "ui/windows/TrackInfoPanel.h"

#include <doctest/doctest.h>

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QMouseEvent>

#include "app/ActionReceivers.h"
#include "support/widgets/ControllerFixture.h"
#include "ui/controls/ChipButton.h"
#include "ui/controls/Fonts.h"
#include "ui/controls/ValueLabel.h"
#include "ui/windows/MainToolbar.h"
#include "ui/windows/MainWindow.h"
#include "ui/windows/MainWindowState.h"

using namespace qm;

namespace {

struct InfoWindow {
    ControllerFixture fixture;
    QMController& controller = fixture.init();
    Outlets outlets;
    MainWindow window{outlets};
    TrackInfoPanel panel{outlets, &window};
    MainWindowState state{window, controller, controller, controller.abLoop(), outlets};

    InfoWindow() {
        receiveActions(window.actions(), controller);
        fixture.addRow("/music/one.m4a");
        awakeWith(controller, outlets);
        window.show();
        outlets.playList->selectRowIndex(0);
    }
};

void mouse(QWidget& widget, QEvent::Type type, QPoint at) {
    QMouseEvent event(type, at, widget.mapToGlobal(at), Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&widget, &event);
}

}  // namespace

TEST_CASE_FIXTURE(InfoWindow, "the panel and its fields have the names of their outlets") {
    CHECK(panel.objectName() == "trackInfoWindow");
    CHECK(outlets.trackInfoWindow == &panel);
    CHECK(panel.findChild<QLabel*>("movieName") == outlets.movieName);
    CHECK(panel.findChild<QLabel*>("formatInInfo") == outlets.formatInInfo);
    CHECK(panel.findChild<QLabel*>("duration") == outlets.duration);
    CHECK(panel.findChild<QLabel*>("movieSize") == outlets.movieSize);
    CHECK(panel.findChild<QLabel*>("copyright") == outlets.copyright);
}

TEST_CASE_FIXTURE(InfoWindow, "the panel's tool is lit and its menu item checked while it is shown") {
    QAction* item = window.actions().action(ActionId::displayInfo);
    ToolButton* tool = window.tools().tool(ActionId::displayInfo);
    REQUIRE(item);
    REQUIRE(tool);
    CHECK(item->shortcuts() == QList<QKeySequence>{QKeySequence("Ctrl+2"), QKeySequence("Ctrl+I")});
    tool->click();
    CHECK(panel.isVisible());
    CHECK(item->isChecked());
    CHECK(tool->isOn());
    item->trigger();
    CHECK_FALSE(panel.isVisible());
    CHECK_FALSE(item->isChecked());
    CHECK_FALSE(tool->isOn());
}

TEST_CASE_FIXTURE(InfoWindow, "the menu item of the track format is checked while the format is shown") {
    QAction* item = window.actions().action(ActionId::displayTrackFormat);
    REQUIRE(item);
    state.refresh();
    CHECK(item->isChecked());
    item->trigger();
    CHECK(outlets.format->isHidden());
    CHECK_FALSE(item->isChecked());
}

TEST_CASE_FIXTURE(InfoWindow, "a long value takes the lines that it needs and pushes the others down") {
    panel.show();
    QCoreApplication::processEvents();
    const int before = outlets.duration->y();
    outlets.movieName->setText("/music/" + QString(200, u'x') + ".m4a");
    QCoreApplication::processEvents();
    CHECK(outlets.movieName->height() >= 4 * 18);
    CHECK(outlets.movieName->height() % 18 == 0);
    CHECK(outlets.duration->y() > before);
    CHECK(outlets.movieName->geometry().right() <= panel.width());
}

TEST_CASE("lines are broken at their feeds, behind spaces and slashes, and within a word only if it is too long") {
    const QFont font = uiFont(13);
    const double width = textWidth(font, "/music/and more");
    CHECK(wrappedText(font, "one\ntwo", width) == QStringList{"one", "two"});
    CHECK(wrappedText(font, "/music/and more/songs", width) == QStringList{"/music/and ", "more/songs"});
    CHECK(wrappedText(font, "", width) == QStringList{""});
    const QString longWord(60, u'm');
    const QStringList broken = wrappedText(font, longWord, width);
    CHECK(broken.size() > 1);
    CHECK(broken.join(QString()) == longWord);
    for (const QString& line : broken) CHECK(textWidth(font, line) <= width);
    CHECK(wrappedText(font, "x", 0) == QStringList{"x"});
    CHECK(wrappedText(font, "\U0001F600\U0001F600", 1) == QStringList{"\U0001F600", "\U0001F600"});
}

TEST_CASE("a value is selected by dragging and by a double click, and copied") {
    ValueLabel label(uiFont(13), Qt::white, 18);
    label.setText("one two\n");
    label.resize(200, 18);
    const int end = static_cast<int>(textWidth(label.font(), "one"));
    mouse(label, QEvent::MouseButtonPress, {0, 9});
    mouse(label, QEvent::MouseMove, {end, 9});
    CHECK(label.selectedValue() == "one");
    label.copy();
    CHECK(QApplication::clipboard()->text() == "one");
    mouse(label, QEvent::MouseButtonDblClick, {0, 9});
    CHECK(label.selectedValue() == "one two");
}

TEST_CASE("a wrapped path is copied as it is") {
    const QString path = "/music/" + QString(60, u'x') + "/a song.m4a";
    ValueLabel label(uiFont(13), Qt::white, 18);
    label.setText(path);
    label.resize(150, 200);
    label.selectAll();
    CHECK(label.selectedValue() == path);
}

TEST_CASE("a number is shown plain and copied in the field's format") {
    ValueLabel label(uiFont(13), Qt::white, 18);
    label.setProperty("numberFormat", QStringLiteral("#,###"));
    label.setText("9834112");
    label.resize(150, 18);
    label.selectAll();
    label.copy();
    CHECK(label.text() == "9834112");
    CHECK(QApplication::clipboard()->text() == "9,834,112");
}
