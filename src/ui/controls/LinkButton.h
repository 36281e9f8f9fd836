// A word that can be pressed, underlined under the pointer. For light grounds. Main thread only.
#pragma once

#include "ui/controls/FaceButton.h"

namespace qm {

class LinkButton : public FaceButton {
    Q_OBJECT

public:
    explicit LinkButton(const QString& text, QWidget* parent = nullptr);
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent*) override;
};

}  // namespace qm
