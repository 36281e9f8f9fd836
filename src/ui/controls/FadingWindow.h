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
    void setAlphaValue(double alpha);
    void makeKeyAndOrderFront();

    bool keyWindow = false;           // makeKeyAndOrderFront() was called
    std::function<void()> willClose;  // called once as the window closes, before it is hidden

signals:
    void madeKey();  // makeKeyAndOrderFront() was called

protected:
    void closeEvent(QCloseEvent*) override;

private:
    double m_alphaValue = 1.0;
};

}  // namespace qm
