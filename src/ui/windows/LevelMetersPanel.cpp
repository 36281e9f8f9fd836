#include "ui/windows/LevelMetersPanel.h"

#include <QPainter>
#include <cmath>

#include "ui/controls/Card.h"
#include "ui/controls/Fonts.h"
#include "ui/controls/MeterView.h"
#include "ui/controls/RoundedBox.h"
#include "ui/controls/Tokens.h"

namespace qm {

namespace {

// Lengths in pixels; those within a column count from the box's own corner.
constexpr int kWidth = 248, kHeight = 264, kMargin = 10;
constexpr double kColumnWidth = 113.5;
constexpr int kNameTop = 8, kBarsTop = 32, kEndsTop = 194, kReadOutTop = 212;
constexpr double kBarsWidth = 83;
const QColor kGround{0x10, 0x11, 0x12};

// The line between the columns, on a whole pixel of the screen.
class Divider : public QWidget {
public:
    using QWidget::QWidget;

protected:
    void paintEvent(QPaintEvent*) override {
        const double ratio = devicePixelRatioF();
        const double x = std::round(kColumnWidth * ratio) / ratio - std::floor(kColumnWidth);
        QPainter(this).fillRect(QRectF(x, 0, 1, height()), tokens::kLine);
    }
};

// A line of text that begins, ends or is centred at a fraction of a pixel.
TextLabel* addText(QWidget* box, const QString& text, const QFont& font, const QColor& color, QRectF place,
                   Qt::Alignment alignment) {
    auto* label = new TextLabel(text, font, color, box);
    const QRect whole(static_cast<int>(place.left()), static_cast<int>(place.top()),
                      static_cast<int>(std::lround(place.width())), static_cast<int>(place.height()));
    label->setGeometry(whole);
    label->setAlignment(alignment);
    double shift = place.left() - whole.left();
    if (alignment & Qt::AlignRight) shift = place.right() - (whole.left() + whole.width());
    if (alignment & Qt::AlignHCenter) shift = place.center().x() - (whole.left() + whole.width() / 2.0);
    label->setLeftShift(shift);
    return label;
}

}  // namespace

struct LevelMetersPanel::Column {
    QString name;
    double left;
    const char* viewName;
    MeterView** view;
    const char* readOutName;
    QLabel** readOut;
};

LevelMetersPanel::LevelMetersPanel(Outlets& outlets, QWidget* mainWindow)
    : ToolPanel(tr("Level Meters"), mainWindow), m_box(new RoundedBox(this)) {
    setObjectName(QStringLiteral("audioLevelsPanel"));
    setFixedSize(kWidth, kHeight);
    m_box->setObjectName(QStringLiteral("levelsBox"));
    m_box->setGeometry(rect().adjusted(kMargin, kMargin, -kMargin, -kMargin));
    build({tr("Left"), 0, "meterView1", &outlets.meterView1, "audioLevelLeft", &outlets.audioLevelLeft});
    build({tr("Right"), kColumnWidth + 1, "meterView2", &outlets.meterView2, "audioLevelRight",
           &outlets.audioLevelRight});
    auto* divider = new Divider(m_box);
    divider->setGeometry(static_cast<int>(kColumnWidth), kMargin, 2, m_box->height() - 2 * kMargin);
    outlets.levelsBox = m_box;
    outlets.audioLevelsPanel = this;
}

void LevelMetersPanel::build(const Column& column) {
    const QRectF whole(column.left, 0, kColumnWidth, m_box->height());
    const QRectF bars(column.left + (kColumnWidth - kBarsWidth) / 2, kBarsTop, kBarsWidth, 0);
    const auto line = [](QRectF place, int top, int height) {
        place.moveTop(top);
        place.setHeight(height);
        return place;
    };
    addText(m_box, column.name, uiFont(12, 600), tokens::kText2, line(whole, kNameTop, 16), Qt::AlignHCenter);

    auto* view = new MeterView(m_box);
    view->setObjectName(QString::fromLatin1(column.viewName));
    view->setAccessibleName(tr("%1 level bars").arg(column.name));
    view->move(static_cast<int>(std::lround(bars.left() - 0.1)), kBarsTop);
    *column.view = view;

    const QRectF ends = line(bars, kEndsTop, 14);
    addText(m_box, tr("Low"), uiFont(11), tokens::kText3, ends, Qt::AlignLeft);
    addText(m_box, tr("High"), uiFont(11), tokens::kText3, ends, Qt::AlignRight);

    auto* readOut = addText(m_box, QStringLiteral("dB"), uiFont(18, 500), tokens::kScaleCyan,
                            line(whole, kReadOutTop, 22), Qt::AlignHCenter);
    readOut->setObjectName(QString::fromLatin1(column.readOutName));
    readOut->setAccessibleName(tr("%1 level in decibels").arg(column.name));
    *column.readOut = readOut;
}

void LevelMetersPanel::paintEvent(QPaintEvent*) {
    QPainter(this).fillRect(rect(), kGround);
}

}  // namespace qm
