// The quiet parts of the look: the rounded well that holds controls, a pill that states a fact, a key cap, and a text
// field. Main thread only.
#pragma once

#include <QLabel>
#include <QWidget>

namespace qm {

class Card : public QWidget {
    Q_OBJECT

public:
    using QWidget::QWidget;

protected:
    void paintEvent(QPaintEvent*) override;

private:
    void paintGround(QPainter& painter) const;
};

class StateTag : public QWidget {
    Q_OBJECT

public:
    explicit StateTag(bool amber, QWidget* parent = nullptr);
    void setText(const QString& text);  // an empty text hides the tag
    void setMeasures(double textSize, int height);
    QString text() const { return m_text; }
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent*) override;

private:
    QString m_text;
    bool m_amber;
    int m_height = 18;
};

class KeyCap : public QWidget {
    Q_OBJECT

public:
    explicit KeyCap(const QString& key, QWidget* parent = nullptr);
    QString text() const { return m_key; }
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent*) override;

private:
    QString m_key;
};

// A text field of one line: line breaks are shown as " · ", and what does not fit is cut at the end, the whole text in
// the tooltip.
class TextLabel : public QLabel {
    Q_OBJECT

public:
    TextLabel(const QString& text, const QFont& font, const QColor& color, QWidget* parent = nullptr);
    void setLeftShift(double pixels);  // of the text, a fraction that the label's own place cannot have
    QSize minimumSizeHint() const override { return {0, sizeHint().height()}; }
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent*) override;

private:
    QString oneLine() const;

    double m_leftShift = 0;
};

void setLabelColor(QLabel& label, const QColor& color);

}  // namespace qm
