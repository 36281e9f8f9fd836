#include "ui/windows/ShortcutsPanel.h"

#include <QBoxLayout>
#include <QKeyEvent>
#include <QLinearGradient>
#include <QPainter>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>

#include "ui/KeyList.h"
#include "ui/controls/Card.h"
#include "ui/controls/Fonts.h"
#include "ui/controls/Tokens.h"

namespace qm {

namespace {

constexpr int kMargin = 20, kColumns = 3, kColumnGap = 32, kGroupGap = 16;
constexpr int kHeadingHeight = 24, kRowHeight = 24, kCapGap = 4, kWordGap = 24;
constexpr int kScreenMargin = 48;  // for the window's frame, in pixels

QLabel* makeText(const QString& text, double size, int weight, const QColor& color) {
    return new TextLabel(text, uiFont(size, weight), color);
}

QWidget* makeRow(const KeyLine& row) {
    auto* line = new QWidget;
    line->setFixedHeight(kRowHeight);
    auto* layout = new QHBoxLayout(line);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(kCapGap);
    QLabel* words = makeText(row.words, 13, 400, tokens::kText);
    layout->addWidget(words);
    layout->addSpacing(kWordGap - kCapGap);
    layout->addStretch();
    QStringList spoken;
    for (const QStringList& caps : row.keys) {
        if (!spoken.isEmpty()) layout->addWidget(makeText(ShortcutsPanel::tr("or"), 11.5, 400, tokens::kText3));
        for (const QString& cap : caps) layout->addWidget(new KeyCap(cap));
        spoken << caps.join(u' ');
    }
    words->setAccessibleName(row.words + QStringLiteral(", ") + spoken.join(ShortcutsPanel::tr(" or ")));
    return line;
}

void addGroup(QVBoxLayout* column, const KeyGroup& group) {
    if (column->count() > 0) column->addSpacing(kGroupGap);
    QLabel* heading = makeText(group.title, 13, 600, tokens::kAqua);
    heading->setFixedHeight(kHeadingHeight);
    column->addWidget(heading);
    for (const KeyLine& line : group.lines) column->addWidget(makeRow(line));
}

int heightOf(const KeyGroup& group) {
    return kHeadingHeight + kGroupGap + static_cast<int>(group.lines.size()) * kRowHeight;
}

// The groups in their order, a column ending where its share of the whole height is reached.
QWidget* makeContent() {
    const QList<KeyGroup> groups = keyGroups();
    int whole = 0;
    for (const KeyGroup& group : groups) whole += heightOf(group);
    auto* content = new QWidget;
    auto* row = new QHBoxLayout(content);
    row->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    row->setSpacing(kColumnGap);
    QVBoxLayout* column = nullptr;
    int filled = 0, columns = 0;
    for (const KeyGroup& group : groups) {
        const bool full = filled + heightOf(group) / 2 > whole * columns / kColumns;
        if (!column || (full && columns < kColumns)) {
            if (column) column->addStretch();
            column = new QVBoxLayout;
            column->setSpacing(0);
            row->addLayout(column);
            ++columns;
        }
        addGroup(column, group);
        filled += heightOf(group);
    }
    if (column) column->addStretch();
    return content;
}

}  // namespace

ShortcutsPanel::ShortcutsPanel(QWidget* mainWindow)
    : ToolPanel(tr("Keyboard Shortcuts"), mainWindow), m_scroll(new QScrollArea) {
    setObjectName(QStringLiteral("shortcutsPanel"));
    setAttribute(Qt::WA_ShowWithoutActivating, false);
    QWidget* content = makeContent();
    content->setAutoFillBackground(false);
    m_scroll->setFrameShape(QFrame::NoFrame);
    m_scroll->setFocusPolicy(Qt::NoFocus);
    m_scroll->setWidgetResizable(true);
    m_scroll->setWidget(content);
    m_scroll->viewport()->setAutoFillBackground(false);
    content->setAutoFillBackground(false);
    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(0, 0, 0, 0);
    all->addWidget(m_scroll);
    const QSize room = mainWindow->screen()->availableSize() - QSize(kScreenMargin, kScreenMargin);
    resize(content->sizeHint().boundedTo(room));
}

// The scroll bar is told what to do instead of being sent the key: a key that it does not know would come back here.
void ShortcutsPanel::keyPressEvent(QKeyEvent* event) {
    QScrollBar& bar = *m_scroll->verticalScrollBar();
    switch (event->key()) {
        case Qt::Key_Up:
            return bar.triggerAction(QAbstractSlider::SliderSingleStepSub);
        case Qt::Key_Down:
            return bar.triggerAction(QAbstractSlider::SliderSingleStepAdd);
        case Qt::Key_PageUp:
            return bar.triggerAction(QAbstractSlider::SliderPageStepSub);
        case Qt::Key_PageDown:
            return bar.triggerAction(QAbstractSlider::SliderPageStepAdd);
        default:
            return ToolPanel::keyPressEvent(event);
    }
}

void ShortcutsPanel::paintEvent(QPaintEvent*) {
    QLinearGradient ground(0, 0, 0, height());
    ground.setColorAt(0, tokens::kBar);
    ground.setColorAt(1, tokens::kPanelHigh);
    QPainter(this).fillRect(rect(), ground);
}

}  // namespace qm
