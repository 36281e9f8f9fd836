// While one exists nobody can act on the windows, though they go on being drawn: keys, clicks, wheel turns and drops
// are lost, and a request to close a window is granted when the block ends. Main thread only.
#pragma once

#include <QList>
#include <QObject>
#include <QPointer>
#include <QWindow>

namespace qm {

class InputBlock : public QObject {
    Q_OBJECT

public:
    InputBlock();
    ~InputBlock() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QList<QPointer<QWindow>> m_closing;
};

}  // namespace qm
