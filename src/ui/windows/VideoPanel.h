// The Video panel: a movie view on black and nothing else. Main thread only.
#pragma once

#include "ui/controls/Outlets.h"
#include "ui/windows/ToolPanel.h"

namespace qm {

class VideoPanel : public ToolPanel {
    Q_OBJECT

public:
    VideoPanel(Outlets& outlets, QWidget* mainWindow);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    MovieView* m_view;
};

}  // namespace qm
