#include "ui/controls/EmptyListView.h"

#include <QBoxLayout>
#include <QLabel>
#include <QPainter>
#include <cmath>
#include <vector>

#include "ui/controls/Card.h"
#include "ui/controls/Fonts.h"
#include "ui/controls/Motion.h"
#include "ui/controls/NamedImage.h"
#include "ui/controls/Tokens.h"

namespace qm {

namespace {

constexpr int kPulseMs = 240;
constexpr int kPulses = 2;
constexpr int kInset = 10;
constexpr int kHintLine = 18;
constexpr double kFrameWidth = 1.5;
constexpr double kDash = 3, kDashGap = 2;  // in widths of the line
constexpr int kKeysGap = 5, kKeysHeight = 24;
constexpr int kCapDrop = 8;  // of a key cap below the top of the push button

QHBoxLayout* makeRow(QWidget* parent, int spacing) {
    auto* row = new QHBoxLayout(parent);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(spacing);
    return row;
}

// An icon that follows the sharpness of its screen.
class IconView : public QWidget {
public:
    IconView(const QString& name, int size, const QColor& color) : m_name(name), m_color(color) {
        setFixedSize(size, size);
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter(this).drawPixmap(0, 0, lineIcon(m_name, width(), m_color, devicePixelRatioF()));
    }

private:
    QString m_name;
    QColor m_color;
};

}  // namespace

EmptyListView::EmptyListView(QWidget* parent) : QWidget(parent), m_column(new QWidget(this)) {
    auto* column = new QVBoxLayout(m_column);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(makeHeadline(), 0, Qt::AlignHCenter);
    column->addSpacing(12);
    column->addWidget(makeOpenRow(), 0, Qt::AlignHCenter);
    column->addSpacing(20);
    column->addWidget(makeKeyHints(), 0, Qt::AlignHCenter);
    m_keys = new ChipButton(tr("All keys"), QString(), this);
    m_keys->setObjectName(QStringLiteral("allKeys"));
    m_keys->setQuiet(true);
    m_keys->setTextSize(12.5);
    m_pulse.setDuration(kPulseMs);
    m_pulse.setLoopCount(kPulses);
    m_pulse.setStartValue(0.0);
    m_pulse.setEndValue(1.0);
    connect(&m_pulse, &QVariantAnimation::valueChanged, this, [this] { update(); });
}

QWidget* EmptyListView::makeHeadline() {
    auto* widget = new QWidget;
    auto* row = makeRow(widget, 12);
    row->addWidget(new IconView(QStringLiteral("qm_drop.png"), 30, tokens::kAqua));
    row->addWidget(new TextLabel(tr("Drop audio or video files here"), uiFont(19, 600, -0.01), tokens::kText));
    return widget;
}

QWidget* EmptyListView::makeOpenRow() {
    auto* widget = new QWidget;
    auto* row = makeRow(widget, 4);
    m_open = new PushButton(tr("Open…"), true);
    row->addWidget(m_open);
    row->addSpacing(6);
    row->addWidget(new TextLabel(tr("or press"), uiFont(13), tokens::kText2));
    auto* caps = new QWidget;  // on the words' baseline
    auto* capRow = makeRow(caps, 4);
    capRow->setContentsMargins(0, kCapDrop, 0, 0);
    for (const QString& key : {tr("Ctrl"), QStringLiteral("O")}) capRow->addWidget(new KeyCap(key), 0, Qt::AlignTop);
    row->addWidget(caps, 0, Qt::AlignTop);
    return widget;
}

QWidget* EmptyListView::makeKeyHints() {
    struct Hint {
        std::vector<QString> keys;
        QString text;
    };
    const std::vector<Hint> hints = {{{tr("Space")}, tr("play")},
                                     {{QStringLiteral("["), QStringLiteral("]")}, tr("mark A and B")},
                                     {{QStringLiteral("L")}, tr("loop")},
                                     {{QStringLiteral("−"), QStringLiteral("+")}, tr("slower, faster")}};
    auto* widget = new QWidget;
    auto* row = makeRow(widget, 22);
    for (const Hint& hint : hints) {
        auto* group = new QHBoxLayout;
        group->setSpacing(7);
        for (const QString& key : hint.keys) group->addWidget(new KeyCap(key));
        auto* words = new TextLabel(hint.text, uiFont(12.5), tokens::kHintText);
        words->setFixedHeight(kHintLine);
        group->addWidget(words, 0, Qt::AlignTop);
        row->addLayout(group);
    }
    return widget;
}

void EmptyListView::resizeEvent(QResizeEvent*) {
    const QSize size = m_column->sizeHint();
    // The key caps' shadow does not count.
    const int top = (height() - size.height() + 1) / 2;
    m_column->setGeometry((width() - size.width() + 1) / 2, top, size.width(), size.height());
    placeKeysButton();
}

// Below the hints where there is room, else in the corner beside them.
void EmptyListView::placeKeysButton() {
    const QSize size(m_keys->sizeHint().width(), kKeysHeight);
    const QPoint below((width() - size.width()) / 2, m_column->geometry().bottom() + 1 + kKeysGap);
    const bool hasRoom = below.y() + size.height() <= height() - kInset - 2;
    const QPoint corner(width() - kInset - size.width() - kKeysGap, kInset + kKeysGap);
    m_keys->setGeometry(QRect(hasRoom ? below : corner, size));
}

void EmptyListView::pulse() {
    if (motionIsWanted(*this)) m_pulse.start();
}

void EmptyListView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const bool pulsing = m_pulse.state() == QAbstractAnimation::Running;
    const double glow = pulsing ? std::sin(m_pulse.currentValue().toDouble() * M_PI) : 0;
    const double line = std::floor(kFrameWidth * devicePixelRatioF()) / devicePixelRatioF();
    const double inset = kInset + line / 2;
    const QRectF frame = QRectF(rect()).adjusted(inset, inset, -inset, -inset);
    if (pulsing) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor(63, 210, 226, static_cast<int>(40 * glow)));
        painter.drawRoundedRect(frame, tokens::kCardRadius, tokens::kCardRadius);
    }
    QColor color(255, 255, 255, 66);
    if (pulsing) color = QColor(63, 210, 226, static_cast<int>(66 + 160 * glow));
    QPen pen(color, line, Qt::CustomDashLine, Qt::FlatCap);
    pen.setDashPattern({kDash, kDashGap});
    painter.setPen(pen);
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(frame, tokens::kCardRadius - line / 2, tokens::kCardRadius - line / 2);
}

}  // namespace qm
