#include "ui/controls/NoticeLine.h"

#include <QAccessible>
#include <QApplication>
#include <QGraphicsOpacityEffect>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "ui/controls/ChipButton.h"
#include "ui/controls/Fonts.h"
#include "ui/controls/Motion.h"
#include "ui/controls/Tokens.h"
#include "ui/controls/ToolTipText.h"

namespace qm {

namespace {

constexpr double kText = 13, kActText = 12;
constexpr int kActGap = 10;
constexpr int kHeight = 20;
constexpr int kRestMs = 6000, kRestWithActMs = 12000;
constexpr int kHeldMs = 1000;  // between two looks whether the line is held
constexpr int kFadeMs = 400;

void sendEvent(QObject* object, QAccessible::Event type) {
    QAccessibleEvent event(object, type);
    QAccessible::updateAccessibility(&event);
}

}  // namespace

NoticeLine::NoticeLine(QWidget* parent) : QWidget(parent), m_button(new ChipButton(QString(), QString(), this)) {
    setFont(uiFont(kText));
    m_button->setTextSize(kActText);
    m_button->setObjectName(QStringLiteral("messageButton"));
    m_button->hide();
    m_rest.setSingleShot(true);
    m_fade.setDuration(kFadeMs);
    m_fade.setStartValue(1.0);
    m_fade.setEndValue(0.0);
    connect(m_button, &QAbstractButton::clicked, this, &NoticeLine::acted);
    connect(&m_rest, &QTimer::timeout, this, &NoticeLine::leave);
    connect(&m_fade, &QVariantAnimation::finished, this, &NoticeLine::end);
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget* before, QWidget* now) {
        if (now == m_button && before) m_focusBefore = before;
    });
    hide();
}

void NoticeLine::tell(const QString& text, const QString& actText, bool stays) {
    put(text, actText);
    if (!stays) m_rest.start(offersAct() ? kRestWithActMs : kRestMs);
    announce();
}

void NoticeLine::bringBack(const QString& text, const QString& actText) {
    put(text, actText);
}

void NoticeLine::clear() {
    put({}, {});
}

void NoticeLine::put(const QString& text, const QString& actText) {
    m_rest.stop();
    m_fade.stop();
    setGraphicsEffect(nullptr);
    m_text = text.simplified();
    const bool losesKeys = m_button->hasFocus() && actText.isEmpty();
    m_button->setText(actText);
    m_button->setVisible(!actText.isEmpty());
    if (losesKeys && m_focusBefore) m_focusBefore->setFocus(Qt::OtherFocusReason);
    setVisible(!m_text.isEmpty());
    updateGeometry();
    emit changed();
    layOut();  // also where the size has not changed
    update();
}

// Screen readers speak a notice when it appears, so a line that is shown already is hidden and shown again.
void NoticeLine::announce() {
    if (!QAccessible::isActive() || m_text.isEmpty()) return;
    sendEvent(this, QAccessible::NameChanged);
    sendEvent(this, QAccessible::ObjectHide);
    sendEvent(this, QAccessible::ObjectShow);
}

bool NoticeLine::offersAct() const {
    return !m_button->isHidden();
}

void NoticeLine::act() {
    if (offersAct()) emit acted();
}

bool NoticeLine::isHeld() const {
    return underMouse() || m_button->hasFocus();
}

void NoticeLine::leave() {
    if (isHeld()) {
        m_rest.start(kHeldMs);
        return;
    }
    if (!motionIsWanted(*this)) return end();
    auto* effect = new QGraphicsOpacityEffect(this);
    effect->setOpacity(1);
    setGraphicsEffect(effect);
    connect(&m_fade, &QVariantAnimation::valueChanged, effect,
            [effect](const QVariant& opacity) { effect->setOpacity(opacity.toDouble()); });
    m_fade.start();
}

void NoticeLine::end() {
    clear();
    emit gone();
}

QSize NoticeLine::sizeHint() const {
    const int words = static_cast<int>(std::ceil(textWidth(font(), m_text)));
    return {offersAct() ? words + kActGap + m_button->sizeHint().width() : words, kHeight};
}

// The button follows the words, which are cut where both have no room.
void NoticeLine::layOut() {
    const int buttonWidth = offersAct() ? std::min(m_button->sizeHint().width(), width()) : 0;
    const int room = offersAct() ? std::max(0, width() - kActGap - buttonWidth) : width();
    m_shown = elidedInMiddle(font(), m_text, room);
    const int words = static_cast<int>(std::ceil(textWidth(font(), m_shown)));
    m_button->setGeometry(std::min(words + kActGap, width() - buttonWidth), 0, buttonWidth, height());
    const QString tip = m_shown == m_text ? QString() : plainToolTip(m_text);
    if (toolTip() != tip) setToolTip(tip);
}

void NoticeLine::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setFont(font());
    painter.setPen(tokens::kText);
    drawLine(painter, rect(), Qt::AlignLeft, m_shown, Qt::LeftToRight);  // a sentence, whatever name it begins with
}

}  // namespace qm
