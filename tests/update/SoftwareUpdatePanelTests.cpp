#include "ui/windows/SoftwareUpdatePanel.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLabel>
#include <QShortcut>

#include "support/widgets/TestText.h"
#include "ui/controls/FadingWindow.h"
#include "ui/controls/ProgressIndicator.h"
#include "ui/controls/TextBlock.h"

using namespace qm;

namespace {

struct Panel {
    FadingWindow mainWindow;
    UpdateOutlets outlets;
    SoftwareUpdatePanel panel{outlets, &mainWindow};

    QRect place(QWidget* widget) { return {widget->mapTo(&panel, QPoint(0, 0)), widget->size()}; }
};

}  // namespace

TEST_CASE_FIXTURE(Panel, "the panel's outlets are controls of their names") {
    CHECK(outlets.softwareUpdatePanel == &panel);
    CHECK(panel.objectName() == "softwareUpdatePanel");
    CHECK(panel.windowTitle() == "Software Update");
    CHECK(panel.size() == QSize(480, 174));
    CHECK(panel.findChild<QLabel*>("updateMsg") == outlets.updateMsg);
    CHECK(panel.findChild<QWidget*>("updateProgress") == outlets.updateProgress);
    CHECK(panel.findChild<QAbstractButton*>("softwareUpdateDownloadButton") == outlets.softwareUpdateDownloadButton);
    CHECK(panel.findChild<QAbstractButton*>("softwareUpdateVisitHalvixButton") ==
          outlets.softwareUpdateVisitHalvixButton);
    CHECK(outlets.softwareUpdateDownloadButton->text() == "Download");
    CHECK(outlets.softwareUpdateVisitHalvixButton->text() == "Visit Web Site");
    CHECK(outlets.closeButton->text() == "Close");
}

TEST_CASE_FIXTURE(Panel, "at first the message is blank, nothing runs, and there is nothing to download") {
    CHECK(outlets.updateMsg->text() == " ");
    CHECK(outlets.updateProgress->isHidden());
    CHECK_FALSE(outlets.updateProgress->isAnimating());
    CHECK_FALSE(outlets.softwareUpdateDownloadButton->isEnabled());
}

TEST_CASE_FIXTURE(Panel, "the longest message has two lines, and nothing lies over anything else") {
    auto& message = static_cast<TextBlock&>(*outlets.updateMsg);
    message.setText("A disc image containing the new version of Quillmere has been downloaded to your desktop.");
    outlets.updateProgress->show();
    panel.show();
    QApplication::processEvents();
    CHECK(message.linesFor(message.width()).size() == 2);
    CHECK(message.height() >= 42);
    QList<QRect> places{QRect(20, 20, 56, 56)};
    for (TextBlock* text : panel.findChildren<TextBlock*>()) places << place(text);
    for (QWidget* control : {static_cast<QWidget*>(outlets.updateProgress), static_cast<QWidget*>(outlets.closeButton),
                             static_cast<QWidget*>(outlets.softwareUpdateDownloadButton),
                             static_cast<QWidget*>(outlets.softwareUpdateVisitHalvixButton)})
        places << place(control);
    CHECK(places.size() == 7);
    for (qsizetype one = 0; one < places.size(); ++one) {
        CAPTURE(one);
        CHECK(panel.rect().contains(places[one]));
        for (qsizetype other = 0; other < one; ++other) CHECK_FALSE(places[one].intersects(places[other]));
    }
}

TEST_CASE_FIXTURE(Panel, "the panel takes the keyboard: Return downloads if there is something, and closes otherwise") {
    panel.show();
    CHECK(panel.focusWidget() == outlets.closeButton);
    panel.hide();
    outlets.softwareUpdateDownloadButton->setEnabled(true);
    panel.show();
    CHECK(panel.focusWidget() == outlets.softwareUpdateDownloadButton);
    outlets.softwareUpdateDownloadButton->setEnabled(false);
    CHECK(panel.focusWidget() == outlets.closeButton);
    CHECK(panel.windowType() == Qt::Dialog);
    CHECK_FALSE(panel.testAttribute(Qt::WA_ShowWithoutActivating));
}

TEST_CASE("the light of a started bar is drawn, and none of a stopped one") {
    ProgressIndicator bar;
    bar.resize(440, bar.height());
    const auto bright = [&bar] {
        QImage picture(bar.size(), QImage::Format_RGB32);
        picture.fill(Qt::black);
        bar.render(&picture, {}, {}, QWidget::RenderFlags());
        int count = 0;
        for (int x = 0; x < picture.width(); ++x) count += picture.pixelColor(x, 3).green() > 100 ? 1 : 0;
        return count;
    };
    CHECK(bright() == 0);
    bar.startAnimation();
    while (bright() == 0) QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    CHECK(bright() < bar.width() / 2);
    bar.stopAnimation();
    CHECK(bright() == 0);
}
