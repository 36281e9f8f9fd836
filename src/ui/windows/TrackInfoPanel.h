// The Track Information panel: what the loaded file says of itself, to be read and copied. It only shows what it is
// told. Main thread only.
#pragma once

#include "ui/controls/Outlets.h"
#include "ui/windows/ToolPanel.h"

class QGridLayout;

namespace qm {

class TrackInfoPanel : public ToolPanel {
    Q_OBJECT

public:
    TrackInfoPanel(Outlets& outlets, QWidget* mainWindow);

protected:
    void paintEvent(QPaintEvent*) override;

private:
    QLabel* addRow(QGridLayout* rows, const QString& caption, const char* name);
};

}  // namespace qm
