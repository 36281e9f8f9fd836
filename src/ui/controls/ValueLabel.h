// A text field whose value is wrapped at its width, anywhere if there is no better place, and can be selected and
// copied: by dragging, with a double click for all of it, with Ctrl+A and Ctrl+C. Main thread only.
#pragma once

#include <QLabel>
#include <QStringList>

#include "ui/controls/FocusRing.h"
#include "ui/controls/Fonts.h"

namespace qm {

class ValueLabel : public QLabel, public FocusShape {
    Q_OBJECT

public:
    ValueLabel(const QFont& font, const QColor& color, int lineHeight, QWidget* parent = nullptr);

    QString selectedValue() const;  // what would be copied
    void selectAll();
    void copy() const;

    QPainterPath focusPath() const override;
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return {0, m_lineHeight}; }

protected:
    void paintEvent(QPaintEvent*) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    QString value() const;  // without the line feeds that end it
    QStringList lines() const { return wrappedText(font(), value(), width()); }
    int placeAt(const QPoint& point) const;
    void select(int anchor, int end);

    int m_lineHeight;
    int m_anchor = 0;  // the selection, in characters of the lines together
    int m_end = 0;
};

}  // namespace qm
