// The Level Meters panel: the bars and the average power of both channels, set from outside. Main thread
// only.
#pragma once

#include "ui/controls/Outlets.h"
#include "ui/windows/ToolPanel.h"

namespace qm {

class LevelMetersPanel : public ToolPanel {
    Q_OBJECT

public:
    LevelMetersPanel(Outlets& outlets, QWidget* mainWindow);

protected:
    void paintEvent(QPaintEvent*) override;

private:
    struct Column;
    void build(const Column& column);

    RoundedBox* m_box;
};

}  // namespace qm
