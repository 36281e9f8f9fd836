#include <QAbstractButton>
#include <QAction>

#include "support/widgets/PreferencesStage.h"

using namespace qm;

TEST_CASE_FIXTURE(PreferencesStage,
                  "each command to check for updates makes one more updater, wherever it comes from") {
    int made = 0;
    controller.setUpdaterMaker([&made] { ++made; });
    wakeUp();
    CHECK(made == 0);
    QAction* item = window.actions().action(ActionId::checkSoftwareUpdate);
    preferences.ensureBuilt();
    auto* button = preferences.findChild<QAbstractButton*>(QStringLiteral("checkSoftwareUpdate"));
    REQUIRE(item);
    REQUIRE(button);
    item->trigger();
    item->trigger();
    CHECK(made == 2);
    button->click();
    CHECK(made == 3);
}
