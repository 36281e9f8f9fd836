// A panel that floats above the main window: shown again where it was left, closed with Esc or Ctrl+W. Closing it only
// hides it. Main thread only.
#pragma once

#include <QPoint>
#include <QRect>
#include <QWidget>
#include <optional>

namespace qm {

class ToolPanel : public QWidget {
    Q_OBJECT

public:
    enum class Keys {
        PassedOn,  // the main window's keys work here too, and showing the panel leaves them there
        Own        // and the panel first stands in front of the main window
    };

    ToolPanel(const QString& title, QWidget* mainWindow, Keys keys = Keys::PassedOn);

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

    virtual QPoint firstPlace() const;

private:
    const ToolPanel* panelAt(const QRect& place) const;

    std::optional<QPoint> m_place;  // where it was when it was last hidden
};

}  // namespace qm
