// A time whose digits stand in fixed cells, so that nothing jitters when it changes ten times a second.
// Main thread only.
#pragma once

#include <QColor>
#include <QString>
#include <QWidget>

namespace qm {

class TimeLabel : public QWidget {
    Q_OBJECT
    Q_PROPERTY(QString text READ text WRITE setText)

public:
    explicit TimeLabel(const QString& text = {}, QWidget* parent = nullptr);

    void setText(const QString& text);
    QString text() const { return m_text; }

    void setTextFont(const QFont& font, int lineHeight);  // lineHeight in pixels
    void setTextColor(const QColor& color);
    QColor textColor() const { return m_color; }
    void setTextAlignment(Qt::Alignment alignment);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent*) override;

private:
    QString m_text;
    QColor m_color;
    Qt::Alignment m_alignment = Qt::AlignLeft;
    int m_lineHeight = 18;
};

}  // namespace qm
