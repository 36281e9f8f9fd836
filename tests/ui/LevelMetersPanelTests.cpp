#include "ui/windows/LevelMetersPanel.h"

#include <doctest/doctest.h>

#include <QAction>
#include <QCoreApplication>
#include <QLabel>
#include <QPainter>
#include <QShortcut>

#include "app/ActionReceivers.h"
#include "support/widgets/ControllerFixture.h"
#include "ui/controls/ChipButton.h"
#include "ui/controls/MeterView.h"
#include "ui/controls/RoundedBox.h"
#include "ui/controls/Tokens.h"
#include "ui/windows/MainToolbar.h"
#include "ui/windows/MainWindow.h"
#include "ui/windows/MainWindowState.h"

using namespace qm;

namespace {

const QColor kQuiet{0x2C, 0xB9, 0xCA};

// The cell's colour in the middle, counted from the bar's foot, of a bar that grows upward.
QColor cellColor(LevelIndicator& indicator, int cell) {
    QImage image(indicator.size(), QImage::Format_RGB32);
    image.fill(Qt::black);
    indicator.render(&image, {}, {}, QWidget::RenderFlags());
    return image.pixelColor(image.width() / 2, image.height() - 1 - (cell * 8 + 3));
}

struct MeteredWindow {
    ControllerFixture fixture;
    QMController& controller = fixture.init();
    Outlets outlets;
    MainWindow window{outlets};
    LevelMetersPanel panel{outlets, &window};
    MainWindowState state{window, controller, controller, controller.abLoop(), outlets};

    MeteredWindow() {
        receiveActions(window.actions(), controller);
        awakeWith(controller, outlets);
    }
};

}  // namespace

TEST_CASE("a bar lights one cell for each unit of its value, and none or all beyond its range") {
    MeterView view;
    LevelIndicator& bar = *view.viewWithTag(3);
    const std::pair<float, int> cases[] = {{0, 0},   {-3, 0},     {0.4f, 0}, {0.6f, 1},
                                           {12, 12}, {19.6f, 20}, {20, 20},  {1000, 20}};
    for (const auto& [value, cells] : cases) {
        CAPTURE(value);
        bar.setFloatValue(value);
        CHECK(bar.floatValue() == value);
        CHECK(bar.litCells() == cells);
    }
}

TEST_CASE("a bar is quiet up to thirteen cells, bright up to eighteen and red above") {
    MeterView view;
    view.setFrameRotation(90);
    LevelIndicator& bar = *view.viewWithTag(0);
    bar.setFloatValue(20);
    CHECK(cellColor(bar, 0) == kQuiet);
    CHECK(cellColor(bar, 12) == kQuiet);
    CHECK(cellColor(bar, 13) == tokens::kAquaHigh);
    CHECK(cellColor(bar, 17) == tokens::kAquaHigh);
    CHECK(cellColor(bar, 18) == tokens::kRed);
    CHECK(cellColor(bar, 19) == tokens::kRed);
    bar.setFloatValue(5);
    CHECK(cellColor(bar, 4) == kQuiet);
    CHECK(cellColor(bar, 5).value() < 40);
}

TEST_CASE("bars lie below one another until the view is turned, and then stand side by side in the same order") {
    MeterView view;
    CHECK(view.size() == QSize(158, 83));
    CHECK(view.viewWithTag(3)->geometry() == QRect(0, 0, 158, 17));
    CHECK(view.viewWithTag(0)->geometry() == QRect(0, 66, 158, 17));
    view.setFrameRotation(90);
    CHECK(view.property("frameRotation").toDouble() == 90);
    CHECK(view.size() == QSize(83, 158));
    for (int tag = 3; tag >= 0; --tag) CHECK(view.viewWithTag(tag)->geometry() == QRect((3 - tag) * 22, 0, 17, 158));
    view.setFrameRotation(0);
    CHECK(view.viewWithTag(0)->geometry() == QRect(0, 66, 158, 17));
    CHECK(view.viewWithTag(4) == nullptr);
}

TEST_CASE_FIXTURE(MeteredWindow, "the panel's outlets are controls of their names inside its box") {
    CHECK(outlets.audioLevelsPanel == &panel);
    CHECK(panel.objectName() == "audioLevelsPanel");
    CHECK(panel.size() == QSize(248, 264));
    CHECK(panel.windowTitle() == "Level Meters");
    CHECK(panel.windowType() == Qt::Tool);
    CHECK(panel.findChild<RoundedBox*>("levelsBox") == outlets.levelsBox);
    CHECK(outlets.levelsBox->cornerRadius() == 5);
    CHECK(outlets.levelsBox->findChild<MeterView*>("meterView1") == outlets.meterView1);
    CHECK(outlets.levelsBox->findChild<MeterView*>("meterView2") == outlets.meterView2);
    CHECK(outlets.levelsBox->findChild<QLabel*>("audioLevelLeft") == outlets.audioLevelLeft);
    CHECK(outlets.levelsBox->findChild<QLabel*>("audioLevelRight") == outlets.audioLevelRight);
    CHECK(outlets.audioLevelLeft->text() == "dB");
    CHECK(outlets.audioLevelRight->text() == "dB");
}

TEST_CASE_FIXTURE(MeteredWindow, "the bars fit between the panel's captions") {
    for (const MeterView* view : {outlets.meterView1, outlets.meterView2}) {
        CHECK(view->y() == 32);
        CHECK(outlets.levelsBox->rect().contains(view->geometry()));
    }
    CHECK(outlets.meterView1->geometry().right() < outlets.levelsBox->width() / 2);
    CHECK(outlets.meterView2->x() > outlets.levelsBox->width() / 2);
}

TEST_CASE_FIXTURE(MeteredWindow, "the meters' tool is lit and their menu item checked while the panel is shown") {
    QAction* item = window.actions().action(ActionId::displayLevels);
    ToolButton* tool = window.tools().tool(ActionId::displayLevels);
    REQUIRE(item);
    REQUIRE(tool);
    state.refresh();
    CHECK(panel.isVisible());
    CHECK(item->isChecked());
    CHECK(tool->isOn());
    tool->click();
    CHECK_FALSE(panel.isVisible());
    CHECK_FALSE(item->isChecked());
    CHECK_FALSE(tool->isOn());
    item->trigger();
    CHECK(panel.isVisible());
    CHECK(item->isChecked());
    CHECK(tool->isOn());
    panel.close();
    state.refresh();
    CHECK_FALSE(item->isChecked());
    CHECK_FALSE(tool->isOn());
}

TEST_CASE_FIXTURE(MeteredWindow, "the panel comes back where it was left") {
    panel.move(123, 45);
    controller.displayLevels();
    panel.move(0, 0);
    controller.displayLevels();
    CHECK(panel.pos() == QPoint(123, 45));
}

TEST_CASE_FIXTURE(MeteredWindow, "Escape and Ctrl+W hide the panel and end nothing") {
    window.show();
    QList<QKeySequence> keys;
    for (QShortcut* shortcut : panel.findChildren<QShortcut*>()) {
        panel.show();
        emit shortcut->activated();
        CHECK_FALSE(panel.isVisible());
        keys << shortcut->key();
    }
    CHECK(keys == QList<QKeySequence>{QKeySequence(Qt::Key_Escape), QKeySequence(Qt::CTRL | Qt::Key_W)});
    CHECK(window.isVisible());
    CHECK(fixture.log.count("exit") == 0);
}
