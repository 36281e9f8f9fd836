// The panel that shows every key of the program, made from the action table and grouped as the menus are. It scrolls
// where the screen is too small for it. Main thread only.
#pragma once

#include "ui/windows/ToolPanel.h"

class QScrollArea;

namespace qm {

class ShortcutsPanel : public ToolPanel {
    Q_OBJECT

public:
    explicit ShortcutsPanel(QWidget* mainWindow);

protected:
    void paintEvent(QPaintEvent*) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    QScrollArea* m_scroll;
};

}  // namespace qm
