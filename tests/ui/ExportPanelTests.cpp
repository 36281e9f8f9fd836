#include <QAbstractButton>
#include <QApplication>

#include "support/widgets/Gestures.h"
#include "support/widgets/TestText.h"
#include "ui/controls/ProgressBar.h"
#include "ui/windows/ExportPanel.h"
#include "ui/windows/MainWindow.h"

using namespace qm;

namespace {

// Stands for the controller.
struct Canceller {
    int cancelled = 0;

    void cancelExport() { ++cancelled; }
};

struct PanelFixture {
    PanelFixture() {
        window.actions().setReceiver(ActionId::cancelExport, controller, &Canceller::cancelExport);
        panel.show();
    }

    QAbstractButton* button() { return panel.findChild<QAbstractButton*>("cancelExport"); }

    Outlets outlets;
    Canceller controller;
    MainWindow window{outlets};
    ExportPanel panel{outlets, window.actions(), &window};
};

QColor pixel(QWidget& widget, double x) {
    const QImage image = widget.grab().toImage();
    return image.pixelColor(static_cast<int>(x * image.width()), image.height() / 2);
}

}  // namespace

TEST_CASE_FIXTURE(PanelFixture, "the panel fills its outlets and says what its button and bar are") {
    CHECK(outlets.exportPanel == &panel);
    CHECK(outlets.exportName != nullptr);
    CHECK(outlets.exportProgress->accessibleName() == "Exported");
    CHECK(button()->accessibleName() == "Cancel");
}

TEST_CASE_FIXTURE(PanelFixture, "its button cancels the export") {
    clickMouse(*button(), button()->rect().center());
    CHECK(controller.cancelled == 1);
}

TEST_CASE_FIXTURE(PanelFixture, "closing it cancels the export, hiding it does not") {
    panel.hide();
    CHECK(controller.cancelled == 0);
    panel.show();
    panel.close();
    CHECK(controller.cancelled == 1);
}

TEST_CASE("the bar fills from the left with what is done") {
    ProgressBar bar;
    bar.resize(200, bar.height());
    bar.setFraction(0.5);
    CHECK(pixel(bar, 0.25) == QColor(0x3F, 0xD2, 0xE2));
    CHECK(pixel(bar, 0.75) != QColor(0x3F, 0xD2, 0xE2));
    bar.setFraction(7);
    CHECK(bar.value() == bar.maximum());
    bar.setFraction(-1);
    CHECK(bar.value() == 0);
}
