// A check box with its words. A click or Space turns it at once; who owns the setting may set it again. Main thread
// only.
#pragma once

#include "ui/controls/FaceButton.h"

namespace qm {

class CheckBox : public FaceButton {
    Q_OBJECT

public:
    explicit CheckBox(const QString& text, QWidget* parent = nullptr);

    void setState(bool on) { setChecked(on); }  // sends nothing
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent*) override;
    void keyPressEvent(QKeyEvent*) override;
};

}  // namespace qm
