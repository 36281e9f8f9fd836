// A button that is its picture: a face with a transparent margin, drawn with a wash for hover and press and a ring for
// keyboard focus. The image name is kept as a property, so that it can be read back. Main thread only.
#pragma once

#include <QString>

#include "ui/controls/FaceButton.h"

namespace qm {

class ImageButton : public FaceButton {
    Q_OBJECT
    Q_PROPERTY(QString imageName READ imageName WRITE setImageName)

public:
    explicit ImageButton(const QString& imageName = {}, QWidget* parent = nullptr);

    void setImageName(const QString& name);
    QString imageName() const { return m_imageName; }

    std::optional<bool> onState() const override;  // by the name of its picture, if there is one for on and one for off

    QPainterPath focusPath() const override;
    QSize sizeHint() const override { return m_canvas; }
    QSize minimumSizeHint() const override { return m_canvas; }

protected:
    void paintEvent(QPaintEvent*) override;
    bool hitButton(const QPoint& position) const override;

private:
    QPainterPath facePath(double grow) const;  // the face, larger by `grow` pixels on each side

    QString m_imageName;
    QSize m_canvas;
};

}  // namespace qm
