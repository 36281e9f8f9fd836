// The panel of an export that takes a while: what is written and how much of it is done. Player keys work in it; Esc
// and closing it cancel. It only shows what it is told. Main thread only.
#pragma once

#include "app/state/Outlets.h"
#include "ui/actions/ActionTable.h"
#include "ui/windows/ToolPanel.h"

namespace qm {

class TextLabel;

class ExportPanel : public ToolPanel {
    Q_OBJECT

public:
    ExportPanel(Outlets& outlets, ActionTable& actions, QWidget* mainWindow);

    // What becomes of the program when the export is done.
    void setQuitsAfterwards(bool quits);

protected:
    QPoint wishedPlace(const QRect& window, QSize frame) const override;
    void closeEvent(QCloseEvent* event) override;
    void paintEvent(QPaintEvent*) override;

private:
    ActionTable& m_actions;
    TextLabel* m_hint;
};

}  // namespace qm
