#include "ui/controls/PaneToolbar.h"

#include <QBoxLayout>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "ui/controls/Fonts.h"
#include "ui/controls/Tokens.h"

namespace qm {

namespace {

constexpr int kHeight = 50, kItemTop = 2, kItemHeight = 46, kItemGap = 4;
constexpr int kItemLeast = 92, kItemPadding = 10;
constexpr int kIcon = 24, kIconTop = 4, kLabelTop = 29, kLabelLine = 14;
constexpr double kLabelText = 11.5;
const QColor kGround{0x1F, 0x20, 0x22}, kLabelInk{0xD5, 0xDA, 0xDF};

class ItemButton : public ChoiceButton {
public:
    ItemButton(const ToolbarItem& item, QWidget* parent) : ChoiceButton(parent), m_image(item.image) {
        setText(item.label);
        setAccessibleName(item.label);
        setToolTip(item.toolTip);
        setObjectName(item.identifier);
        // As wide as with the heavier label, so that no item moves when another is selected.
        const double label = textWidth(uiFont(kLabelText, 500), item.label);
        setFixedSize(std::max(kItemLeast, static_cast<int>(std::ceil(label)) + 2 * kItemPadding), kItemHeight);
    }

    // Inside, for there is no room above.
    QPainterPath focusPath() const override {
        QPainterPath path;
        path.addRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), tokens::kChipRadius - 1, tokens::kChipRadius - 1);
        return path;
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setOpacity(drawingOpacity());
        painter.setPen(Qt::NoPen);
        if (isDown())
            painter.setBrush(tokens::kChipPressed);
        else if (isChecked())
            painter.setBrush(QColor(63, 210, 226, isHovered() ? 56 : 41));
        else
            painter.setBrush(isHovered() ? tokens::kChip : QColor(Qt::transparent));
        painter.drawRoundedRect(rect(), tokens::kChipRadius, tokens::kChipRadius);
        if (isDown()) painter.translate(0, 1);
        const double ratio = devicePixelRatioF();
        if (m_icon.isNull() || m_icon.devicePixelRatio() != ratio) scaleIcon(ratio);
        painter.drawPixmap(QPointF((width() - kIcon) / 2, kIconTop), m_icon);
        painter.setFont(uiFont(kLabelText, isChecked() ? 500 : 400));
        painter.setPen(isChecked() ? tokens::kWhite : kLabelInk);
        drawLine(painter, QRectF(0, kLabelTop, width(), kLabelLine), Qt::AlignHCenter, text());
    }

private:
    void scaleIcon(double ratio) {
        const int pixels = static_cast<int>(std::lround(kIcon * ratio));
        m_icon = QPixmap::fromImage(m_image.scaled(pixels, pixels, Qt::KeepAspectRatio, Qt::SmoothTransformation));
        m_icon.setDevicePixelRatio(ratio);
    }

    QImage m_image;
    QPixmap m_icon;
};

}  // namespace

PaneToolbar::PaneToolbar(QWidget* parent) : QWidget(parent) {
    setFixedHeight(kHeight);
    setContextMenuPolicy(Qt::PreventContextMenu);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, kItemTop, 0, 0);
    row->setSpacing(kItemGap);
    row->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
}

void PaneToolbar::addDefaultItems() {
    if (!m_delegate) return;
    const QStringList selectable = m_delegate->toolbarSelectableItemIdentifiers(this).value_or(QStringList());
    for (const QString& identifier : m_delegate->toolbarDefaultItemIdentifiers(this).value_or(QStringList())) {
        ToolbarItem* item = m_delegate->toolbarItemForItemIdentifier(this, identifier, true);
        if (!item || m_buttons.contains(identifier)) continue;
        m_delegate->toolbarWillAddItem(*item);
        addItem(*item, selectable.contains(identifier));
    }
    putFirstInTabOrder();
}

// The items were made last, but the user meets them before whatever else the window holds. The order is set for those
// too that Tab passes by at the moment.
void PaneToolbar::putFirstInTabOrder() {
    QWidgetList order{window()};
    for (const QString& identifier : m_order) order << m_buttons.value(identifier);
    for (QWidget* next = nextInFocusChain(); next != this; next = next->nextInFocusChain())
        if (qobject_cast<FaceButton*>(next) && !isAncestorOf(next)) order << next;
    QList<Qt::FocusPolicy> policies;
    for (QWidget* widget : order) {
        policies << widget->focusPolicy();
        widget->setFocusPolicy(Qt::TabFocus);
    }
    for (qsizetype i = 1; i < order.size(); ++i) setTabOrder(order[i - 1], order[i]);
    for (qsizetype i = 0; i < order.size(); ++i) order[i]->setFocusPolicy(policies[i]);
}

void PaneToolbar::addItem(const ToolbarItem& item, bool selectable) {
    auto* button = new ItemButton(item, this);
    button->setCheckable(selectable);
    layout()->addWidget(button);
    m_buttons.insert(item.identifier, button);
    m_order << item.identifier;
    connect(button, &QAbstractButton::clicked, this, [this, action = item.action] { emit itemChosen(action); });
}

void PaneToolbar::setSelectedItemIdentifier(const QString& identifier) {
    if (ChoiceButton* button = m_buttons.value(identifier)) button->setChecked(true);
}

QString PaneToolbar::selectedItemIdentifier() const {
    for (const QString& identifier : m_order)
        if (m_buttons.value(identifier)->isChecked()) return identifier;
    return {};
}

QAbstractButton* PaneToolbar::itemButton(const QString& identifier) const {
    return m_buttons.value(identifier);
}

void PaneToolbar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), kGround);
    painter.fillRect(QRect(0, height() - 1, width(), 1), Qt::black);
}

}  // namespace qm
