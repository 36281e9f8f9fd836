#include "ui/controls/ValueLabel.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QLocale>
#include <QMenu>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "ui/controls/Fonts.h"
#include "ui/controls/Tokens.h"

namespace qm {

ValueLabel::ValueLabel(const QFont& font, const QColor& color, int lineHeight, QWidget* parent)
    : QLabel(parent), m_lineHeight(lineHeight) {
    setFont(font);
    QPalette colors = palette();
    colors.setColor(QPalette::WindowText, color);
    setPalette(colors);
    setTextFormat(Qt::PlainText);
    setCursor(Qt::IBeamCursor);
    setFocusPolicy(Qt::StrongFocus);
    QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Minimum);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
}

QString ValueLabel::value() const {
    QString text = this->text();
    while (text.endsWith(u'\n')) text.chop(1);
    return text;
}

int ValueLabel::heightForWidth(int width) const {
    return m_lineHeight * static_cast<int>(wrappedText(font(), value(), width).size());
}

QSize ValueLabel::sizeHint() const {
    return {static_cast<int>(std::ceil(textWidth(font(), value()))), m_lineHeight};
}

QPainterPath ValueLabel::focusPath() const {
    QPainterPath path;
    path.addRoundedRect(QRectF(rect()).adjusted(-3, -1, 3, 1), 4, 4);
    return path;
}

void ValueLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setFont(font());
    painter.setPen(palette().color(QPalette::WindowText));
    const auto [first, last] = std::minmax(m_anchor, m_end);
    int begin = 0, top = 0;
    for (const QString& line : lines()) {
        const int end = begin + static_cast<int>(line.size());
        if (first < end && last > begin) {
            const int from = std::max(first - begin, 0), to = std::min(last, end) - begin;
            for (const auto& [left, right] : spansInLine(font(), line, from, to))
                painter.fillRect(QRectF(left, top, right - left, m_lineHeight), tokens::kSelection);
        }
        drawLine(painter, QRectF(0, top, width(), m_lineHeight), Qt::AlignLeft, line);
        begin = end;
        top += m_lineHeight;
    }
}

// The character boundary nearest to the point.
int ValueLabel::placeAt(const QPoint& point) const {
    const QStringList all = lines();
    const auto row = std::clamp<qsizetype>(point.y() / m_lineHeight, 0, all.size() - 1);
    int begin = 0;
    for (qsizetype i = 0; i < row; ++i) begin += static_cast<int>(all[i].size());
    return begin + placeInLine(font(), all[row], point.x());
}

void ValueLabel::select(int anchor, int end) {
    m_anchor = anchor;
    m_end = end;
    update();
}

void ValueLabel::selectAll() {
    select(0, static_cast<int>(lines().join(QString()).size()));
}

QString ValueLabel::selectedValue() const {
    const auto [first, last] = std::minmax(m_anchor, m_end);
    const QString flowing = lines().join(QString());
    if (first == 0 && last >= flowing.size()) return value();
    return flowing.mid(first, last - first);
}

// A field with a number format gives its whole number in that format.
void ValueLabel::copy() const {
    const QString selected = selectedValue();
    if (selected.isEmpty()) return;
    bool isNumber = false;
    const qint64 number = selected.toLongLong(&isNumber);
    const bool formatted = isNumber && property("numberFormat").isValid() && selected == value();
    QApplication::clipboard()->setText(formatted ? QLocale(QLocale::English).toString(number) : selected);
}

void ValueLabel::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return;
    const int place = placeAt(event->pos());
    select(place, place);
}

void ValueLabel::mouseMoveEvent(QMouseEvent* event) {
    if (event->buttons() & Qt::LeftButton) select(m_anchor, placeAt(event->pos()));
}

void ValueLabel::mouseDoubleClickEvent(QMouseEvent*) {
    selectAll();
}

void ValueLabel::contextMenuEvent(QContextMenuEvent* event) {
    QMenu menu(this);
    QAction* copyAction = menu.addAction(tr("Copy"), this, &ValueLabel::copy);
    copyAction->setEnabled(m_anchor != m_end);
    menu.addAction(tr("Select All"), this, &ValueLabel::selectAll);
    menu.exec(event->globalPos());
}

void ValueLabel::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Copy)) {
        copy();
    } else if (event->matches(QKeySequence::SelectAll)) {
        selectAll();
    } else {
        QLabel::keyPressEvent(event);
    }
}

void ValueLabel::focusOutEvent(QFocusEvent* event) {
    if (event->reason() != Qt::PopupFocusReason && event->reason() != Qt::ActiveWindowFocusReason) select(0, 0);
    QLabel::focusOutEvent(event);
}

}  // namespace qm
