// The about panel: what this is, which version, and, behind its link, what it is built on. Main thread only.
#pragma once

#include "app/state/Outlets.h"
#include "ui/windows/ToolPanel.h"

class QStackedWidget;

namespace qm {

class AboutPanel : public ToolPanel {
    Q_OBJECT

public:
    AboutPanel(Outlets& outlets, QWidget* mainWindow);

protected:
    void build() override;
    void hideEvent(QHideEvent* event) override;

private:
    QWidget* makeFirstPage();
    QWidget* makeAcknowledgements();

    QStackedWidget* m_pages = nullptr;
};

}  // namespace qm
