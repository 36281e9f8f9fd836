// A text of several lines, broken between words. Main thread only.
#pragma once

#include <QLabel>

namespace qm {

class TextBlock : public QLabel {
    Q_OBJECT

public:
    // `line` is the height of a line in pixels.
    TextBlock(const QString& text, const QFont& font, const QColor& color, int line, QWidget* parent = nullptr);

    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return {0, m_line}; }

    QStringList linesFor(double width) const;

protected:
    void paintEvent(QPaintEvent*) override;

private:
    int m_line;
};

}  // namespace qm
