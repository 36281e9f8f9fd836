// A picture of the program by its name, which is kept as a property so that it can be read back. Main thread only.
#pragma once

#include <QString>
#include <QWidget>

namespace qm {

class ImageView : public QWidget {
    Q_OBJECT
    Q_PROPERTY(QString imageName READ imageName WRITE setImageName)

public:
    explicit ImageView(const QString& imageName, QWidget* parent = nullptr);

    void setImageName(const QString& name);  // of the same size as the first
    QString imageName() const { return m_imageName; }

protected:
    void paintEvent(QPaintEvent*) override;

private:
    QString m_imageName;
};

}  // namespace qm
