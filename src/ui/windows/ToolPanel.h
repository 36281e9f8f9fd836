// A panel that floats above the main window: shown again where it was left, closed with Esc or Ctrl+W. The keys of the
// main window's menus work in it too. Closing it only hides it. Main thread only.
#pragma once

#include <QPoint>
#include <QWidget>
#include <optional>

namespace qm {

class ToolPanel : public QWidget {
    Q_OBJECT

public:
    ToolPanel(const QString& title, QWidget* mainWindow);

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    QPoint firstPlace() const;

    std::optional<QPoint> m_place;  // where it was when it was last hidden
};

}  // namespace qm
