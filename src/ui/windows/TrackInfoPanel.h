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
    void build() override;
    void paintEvent(QPaintEvent*) override;

private:
    QLabel* makeField(const QString& caption, const char* name);
    void addRow(QGridLayout* rows, QLabel* field);

    QWidget* m_content;  // with the fields, whose texts are set before the panel is shown
};

}  // namespace qm
