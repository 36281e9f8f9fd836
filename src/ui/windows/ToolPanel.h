// A panel that floats above the main window: shown first where it covers nothing that is needed, then where it was
// left, closed with Esc or Ctrl+W. Closing it only hides it. What is in it, as far as nobody asks for it before, is
// built when it is first shown or by ensureBuilt(). Main thread only.
#pragma once

#include <QList>
#include <QPoint>
#include <QRect>
#include <QSize>
#include <QWidget>
#include <optional>

namespace qm {

class ToolPanel : public QWidget {
    Q_OBJECT

public:
    enum class Keys {
        PassedOn,  // the main window's keys work here too, and showing the panel leaves them there
        Own        // and the panel would like to stand in front of the main window
    };

    ToolPanel(const QString& title, QWidget* mainWindow, Keys keys = Keys::PassedOn);

    void ensureBuilt();  // now, so that showing it takes no time later
    bool isBuilt() const { return m_isBuilt; }

    // Between these two it is not shown: it only keeps in mind whether it is to be.
    void hold() { m_held = true; }
    void release();

    void setVisible(bool visible) override;

    // The main window has become another one: what the user has not moved stands as if it was shown for the first time.
    void standAnew();

protected:
    virtual void build() {}  // called once
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

    // Where it would like to stand first, with its frame of that size; it stands there if it covers nothing that is
    // needed. The sizes are those without a frame that it may take for that, the best one first.
    virtual QPoint wishedPlace(const QRect& window, QSize frame) const;
    virtual QList<QSize> firstSizes() const { return {size()}; }
    void keepPlace() { m_place = pos(); }

private:
    void stand();
    QRect firstPlace(const QList<QSize>& sizes) const;
    void standFirst(const QList<QSize>& sizes);
    void moveFrame(QPoint place);
    bool fillsTheScreen() const;

    bool m_isBuilt = false;
    bool m_held = false;
    bool m_isToBeShown = false;          // while it is held
    std::optional<QPoint> m_place;       // where it is shown again
    std::optional<QPoint> m_firstPlace;  // where it was put, before the user moved it
};

}  // namespace qm
