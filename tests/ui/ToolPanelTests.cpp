#include "ui/windows/ToolPanel.h"

#include <doctest/doctest.h>

#include <QCoreApplication>

using namespace qm;

namespace {

class CountingPanel : public ToolPanel {
public:
    explicit CountingPanel(QWidget* mainWindow) : ToolPanel(QStringLiteral("Panel"), mainWindow) {}

    int built = 0;

protected:
    void build() override {
        ++built;
        CHECK_FALSE(isVisible());
    }
};

struct PanelStage {
    QWidget window;
    CountingPanel panel{&window};
};

}  // namespace

TEST_CASE_FIXTURE(PanelStage, "what is in a panel is built once, when it is first shown") {
    CHECK(panel.built == 0);
    panel.hide();
    CHECK(panel.built == 0);
    panel.show();
    CHECK(panel.built == 1);
    CHECK(panel.isVisible());
    panel.hide();
    panel.show();
    CHECK(panel.built == 1);
}

TEST_CASE_FIXTURE(PanelStage, "a panel that was built before is only shown") {
    panel.ensureBuilt();
    CHECK(panel.built == 1);
    CHECK(panel.isBuilt());
    CHECK_FALSE(panel.isVisible());
    panel.show();
    CHECK(panel.built == 1);
}

TEST_CASE_FIXTURE(PanelStage, "a panel that is held is shown when it is released") {
    panel.hold();
    panel.show();
    CHECK_FALSE(panel.isVisible());
    CHECK(panel.built == 0);
    panel.release();
    CHECK(panel.isVisible());
    panel.hide();
    panel.release();
    CHECK_FALSE(panel.isVisible());
}

TEST_CASE_FIXTURE(PanelStage, "a panel that was hidden again while it was held stays hidden") {
    panel.hold();
    SUBCASE("hidden again") {
        panel.show();
        panel.hide();
    }
    SUBCASE("never shown") {}
    panel.release();
    CHECK_FALSE(panel.isVisible());
}
