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

    void showState(const QString& imageName, bool on);  // the picture of what it stands for, and whether that is on
    std::optional<bool> onState() const override { return m_on; }

    QPainterPath focusPath() const override;
    QSize sizeHint() const override { return m_canvas; }
    QSize minimumSizeHint() const override { return m_canvas; }

protected:
    void paintEvent(QPaintEvent*) override;
    bool hitButton(const QPoint& position) const override;

private:
    QPainterPath facePath(double grow) const;  // the face, larger by `grow` pixels on each side

    void setImage(const QString& name, std::optional<bool> on);

    QString m_imageName;
    std::optional<bool> m_on;  // none for one that only does something
    QSize m_canvas;
};

}  // namespace qm
