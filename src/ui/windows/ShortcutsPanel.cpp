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
#include "ui/controls/FoldedText.h"
#include "ui/controls/Fonts.h"
#include "ui/controls/SearchField.h"
#include "ui/controls/Tokens.h"

namespace qm {

namespace {

constexpr int kMargin = 20, kColumns = 3, kColumnGap = 32, kGroupGap = 16;
constexpr int kHeadingHeight = 24, kRowHeight = 24, kCapGap = 4, kWordGap = 24;
constexpr int kSearchTop = 16, kSearchWidth = 280, kSearchGap = 14;
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

QString everythingIn(const QString& title, const KeyLine& line) {
    QString text = title + u' ' + line.words;
    for (const QStringList& caps : line.keys) text += u' ' + caps.join(u'+') + u' ' + caps.join(u' ');
    return text;
}

int heightOf(const KeyGroup& group) {
    return kHeadingHeight + kGroupGap + static_cast<int>(group.lines.size()) * kRowHeight;
}

}  // namespace

void ShortcutsPanel::addGroup(QVBoxLayout* column, const KeyGroup& group) {
    Group added{makeText(group.title, 13, 600, tokens::kAqua), nullptr, {}};
    added.heading->setFixedHeight(kHeadingHeight);
    if (column->count() > 0) {
        added.gap = new QWidget;
        added.gap->setFixedHeight(kGroupGap);
        column->addWidget(added.gap);
    }
    column->addWidget(added.heading);
    for (const KeyLine& line : group.lines) {
        QWidget* row = makeRow(line);
        column->addWidget(row);
        added.rows.emplace_back(row, everythingIn(group.title, line));
    }
    m_groups.push_back(std::move(added));
}

// The groups in their order, a column ending where its share of the whole height is reached.
QWidget* ShortcutsPanel::makeContent() {
    const QList<KeyGroup> groups = keyGroups();
    int whole = 0;
    for (const KeyGroup& group : groups) whole += heightOf(group);
    auto* content = new QWidget;
    auto* row = new QHBoxLayout(content);
    row->setContentsMargins(kMargin, 0, kMargin, kMargin);
    row->setSpacing(kColumnGap);
    QVBoxLayout* column = nullptr;
    int filled = 0, columns = 0;
    for (const KeyGroup& group : groups) {
        const bool full = filled + heightOf(group) / 2 > whole * columns / kColumns;
        if (!column || (full && columns < kColumns)) {
            if (column) column->addStretch();
            auto* place = new QWidget;
            column = new QVBoxLayout(place);
            column->setContentsMargins(0, 0, 0, 0);
            column->setSpacing(0);
            row->addWidget(place);
            ++columns;
        }
        addGroup(column, group);
        filled += heightOf(group);
    }
    if (column) column->addStretch();
    // The columns stay where they are, whichever rows are left.
    for (int i = 0; i < row->count(); ++i)
        row->itemAt(i)->widget()->setMinimumWidth(row->itemAt(i)->sizeHint().width());
    return content;
}

QWidget* ShortcutsPanel::makeSearchLine() {
    auto* line = new QWidget;
    auto* row = new QHBoxLayout(line);
    row->setContentsMargins(kMargin, kSearchTop, kMargin, kSearchGap);
    row->setSpacing(kSearchGap);
    m_field->setObjectName(QStringLiteral("keySearch"));
    m_field->setFixedWidth(kSearchWidth);
    row->addWidget(m_field);
    row->addWidget(m_none);
    row->addStretch();
    connect(m_field, &QLineEdit::textChanged, this, &ShortcutsPanel::showOnly);
    return line;
}

ShortcutsPanel::ShortcutsPanel(QWidget* mainWindow)
    : ToolPanel(tr("Keyboard Shortcuts"), mainWindow),
      m_field(new SearchField(tr("Find a key or what it does"))),
      m_none(new TextLabel(QString(), uiFont(12.5), tokens::kText2)),
      m_scroll(new QScrollArea) {
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
    all->setSpacing(0);
    QWidget* searchLine = makeSearchLine();
    all->addWidget(searchLine);
    all->addWidget(m_scroll, 1);
    const QSize room = mainWindow->screen()->availableSize() - QSize(kScreenMargin, kScreenMargin);
    QSize wanted = content->sizeHint() + QSize(0, searchLine->sizeHint().height());
    if (wanted.height() > room.height()) wanted.rwidth() += m_scroll->verticalScrollBar()->sizeHint().width();
    resize(wanted.boundedTo(room));
}

void ShortcutsPanel::showOnly(const QString& typed) {
    const SearchWords words(typed);
    int shown = 0;
    for (const Group& group : m_groups) {
        bool isAny = false;
        for (const auto& [row, text] : group.rows) {
            const bool fits = words.areIn({text});
            row->setVisible(fits);
            isAny = isAny || fits;
            shown += fits ? 1 : 0;
        }
        group.heading->setVisible(isAny);
        if (group.gap) group.gap->setVisible(isAny);
    }
    m_none->setText(shown > 0 ? QString() : tr("No key for that; some actions are in the menus only"));
    m_none->updateGeometry();
    const QString said = words.isEmpty() ? QString() : tr("%1 found").arg(shown);
    m_field->setAccessibleDescription(said);
}

// The search begins anew whenever the panel is shown.
void ShortcutsPanel::showEvent(QShowEvent* event) {
    if (!event->spontaneous()) {
        m_field->clear();
        m_field->setFocus(Qt::OtherFocusReason);
    }
    ToolPanel::showEvent(event);
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
