// A window that keeps the opacity it is given, also above 1, while the system gets at most 1; and that remembers being
// made the key window, which a desktop may refuse. Main thread only.
#pragma once

#include <QMainWindow>
#include <functional>

namespace qm {

class FadingWindow : public QMainWindow {
    Q_OBJECT

public:
    using QMainWindow::QMainWindow;

    double alphaValue() const { return m_alphaValue; }
    void setAlphaValue(double alpha);  // seen at once, however much there is to do besides

    // A panel that waits for its answer stays in front and keeps the keyboard.
    void makeKeyAndOrderFront();

    // A window that refuses the keyboard is shown in front and does not get it, until it is made the key window.
    void refuseKeys() { setAcceptsKeys(false); }

    bool keyWindow = false;           // makeKeyAndOrderFront() was called
    std::function<bool()> mayClose;   // asked before; false keeps the window open
    std::function<void()> willClose;  // called once as the window closes, before it is hidden

signals:
    void madeKey();  // makeKeyAndOrderFront() was called

protected:
    void closeEvent(QCloseEvent*) override;

private:
    void setAcceptsKeys(bool accepts);

    double m_alphaValue = 1.0;
};

}  // namespace qm
