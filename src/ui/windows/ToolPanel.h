// A panel that floats above the main window: shown again where it was left, closed with Esc or Ctrl+W. Closing it only
// hides it. What is in it, as far as nobody asks for it before, is built when it is first shown or furnished. Main
// thread only.
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

    void furnish();  // now, so that showing it takes no time later
    bool isFurnished() const { return m_furnished; }

    // Between these two it is not shown: it only keeps in mind whether it is to be.
    void hold() { m_held = true; }
    void release();

    void setVisible(bool visible) override;

protected:
    virtual void build() {}  // called once
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

    virtual QPoint firstPlace() const;

private:
    const ToolPanel* panelAt(const QRect& place) const;

    bool m_furnished = false;
    bool m_held = false;
    bool m_isToBeShown = false;     // while it is held
    std::optional<QPoint> m_place;  // where it was when it was last hidden
};

}  // namespace qm
