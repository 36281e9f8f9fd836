#include "ui/windows/AboutPanel.h"

#include <QAction>
#include <QLabel>

#include "support/widgets/PreferencesStage.h"
#include "ui/controls/LinkButton.h"
#include "update/CurrentVersion.h"

using namespace qm;

namespace {

QStringList visibleTexts(const QWidget& panel) {
    QStringList texts;
    for (const QLabel* label : panel.findChildren<QLabel*>())
        if (label->isVisible()) texts << label->text();
    return texts;
}

LinkButton* visibleLink(const QWidget& panel) {
    for (LinkButton* link : panel.findChildren<LinkButton*>())
        if (link->isVisible()) return link;
    return nullptr;
}

}  // namespace

TEST_CASE("the version is 5.91.82") {
    CHECK(kCurrentMajorVersion == 5);
    CHECK(kCurrentMinorVersion == 91);
    CHECK(kCurrentBuildVersion == 82);
    CHECK(currentVersionText() == "5.91.82");
}

TEST_CASE_FIXTURE(PreferencesStage, "the about command shows the panel, on white, with the version") {
    wakeUp();
    CHECK_FALSE(about.isVisible());
    QAction* item = window.actions().action(ActionId::displayAboutPanel);
    REQUIRE(item);
    item->trigger();
    CHECK(about.isVisible());
    CHECK(keyWindow() == &about);
    controller.openPrefsWindow();
    REQUIRE(keyWindow() == &preferences);
    item->trigger();
    CHECK(about.isVisible());
    CHECK(keyWindow() == &about);
    CHECK(about.property("backgroundColor").value<QColor>() == QColor(Qt::white));
    CHECK(about.palette().color(QPalette::Window) == QColor(Qt::white));
    CHECK(about.grab().toImage().pixelColor(5, 5) == QColor(Qt::white));
    CHECK(visibleTexts(about) ==
          QStringList{"Quillmere", "Version 5.91.82", "Slow it down. Loop it. Learn it by ear."});
}

TEST_CASE_FIXTURE(PreferencesStage, "start-up puts the track information on black") {
    QWidget information;
    outlets.trackInfoWindow = &information;
    wakeUp();
    CHECK(information.property("backgroundColor").value<QColor>() == QColor(Qt::black));
    CHECK(information.grab().toImage().pixelColor(5, 5) == QColor(Qt::black));
}

TEST_CASE_FIXTURE(PreferencesStage, "the link leads to the acknowledgements and back, and closing leads back too") {
    wakeUp();
    controller.displayAboutPanel();
    visibleLink(about)->click();
    CHECK(visibleTexts(about).first() == "Acknowledgements");
    REQUIRE(visibleLink(about));
    visibleLink(about)->click();
    CHECK(visibleTexts(about).first() == "Quillmere");
    visibleLink(about)->click();
    about.close();
    CHECK(log.count("exit") == 0);
    controller.displayAboutPanel();
    CHECK(visibleTexts(about).first() == "Quillmere");
}
