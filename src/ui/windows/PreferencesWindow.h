// The preferences window: its toolbar, the three panes and their controls. Which pane is shown, and how large the
// window is, is decided by PreferencePanes, which fills `activePrefContentView`. Main thread only.
#pragma once

#include <QTimer>

#include "ui/ActionTable.h"
#include "ui/controls/Outlets.h"
#include "ui/windows/ToolPanel.h"

class QVBoxLayout;

namespace qm {

class TextLabel;

class PreferencesWindow : public ToolPanel {
    Q_OBJECT

public:
    PreferencesWindow(Outlets& outlets, ActionTable& actions, QWidget* mainWindow);

protected:
    void build() override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void makeOutlets();
    void buildGeneralPane();
    void buildUpdatePane();
    void buildVolumePane();
    void showGain();

    Outlets& m_outlets;
    ActionTable& m_actions;
    QWidget* m_content;  // everything below the toolbar
    TextLabel* m_gain = nullptr;
    QTimer m_gainTimer{this};
};

}  // namespace qm
