// The Video panel: a movie view on black and nothing else. It fills the screen when it is double-clicked; a further
// double click, Esc and Ctrl+W bring it back, and so does the end of the film's track. Main thread only.
#pragma once

#include "ui/controls/Outlets.h"
#include "ui/windows/ToolPanel.h"

namespace qm {

class VideoPanel : public ToolPanel {
    Q_OBJECT

public:
    VideoPanel(Outlets& outlets, QWidget* mainWindow);

    void toggleFullScreen();  // also of a panel that is hidden

protected:
    QList<QSize> firstSizes() const override;
    void resizeEvent(QResizeEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    MovieView* m_view;
    QSize m_sizeBefore;  // it filled the screen
};

}  // namespace qm
