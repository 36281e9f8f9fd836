// The Software Update panel: a message, the version in use, a bar while something is downloaded, and three buttons. It
// takes the keyboard and keeps it. It only shows what it is told. Main thread only.
#pragma once

#include <QPixmap>

#include "app/state/UpdateOutlets.h"
#include "ui/windows/ToolPanel.h"

namespace qm {

class SoftwareUpdatePanel : public ToolPanel {
    Q_OBJECT

public:
    SoftwareUpdatePanel(UpdateOutlets& outlets, QWidget* mainWindow);

protected:
    void paintEvent(QPaintEvent*) override;
    void showEvent(QShowEvent* event) override;

private:
    void buildTexts(UpdateOutlets& outlets);
    void buildButtons(UpdateOutlets& outlets);
    QPixmap icon();

    QPixmap m_icon;
    QWidget* m_download = nullptr;
    QWidget* m_close = nullptr;
};

}  // namespace qm
