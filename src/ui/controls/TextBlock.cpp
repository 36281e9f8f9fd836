#include "ui/controls/TextBlock.h"

#include <QPainter>
#include <cmath>

#include "ui/controls/Card.h"
#include "ui/controls/Fonts.h"

namespace qm {

TextBlock::TextBlock(const QString& text, const QFont& font, const QColor& color, int line, QWidget* parent)
    : QLabel(text, parent), m_line(line) {
    setFont(font);
    setLabelColor(*this, color);
    setTextFormat(Qt::PlainText);
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
}

QStringList TextBlock::linesFor(double width) const {
    QStringList lines = wrappedText(font(), text(), width);
    for (QString& line : lines) line = line.trimmed();
    return lines;
}

int TextBlock::heightForWidth(int width) const {
    return m_line * static_cast<int>(linesFor(width).size());
}

QSize TextBlock::sizeHint() const {
    return {static_cast<int>(std::ceil(textWidth(font(), text()))), m_line};
}

void TextBlock::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setFont(font());
    painter.setPen(palette().color(QPalette::WindowText));
    int top = 0;
    for (const QString& line : linesFor(width())) {
        drawLine(painter, QRectF(0, top, width(), m_line), alignment(), elidedText(font(), line, width()));
        top += m_line;
    }
}

}  // namespace qm
