#include "ui/windows/TrackInfoPanel.h"

#include <QGridLayout>
#include <QPainter>
#include <QScrollArea>
#include <QVBoxLayout>

#include "ui/controls/Card.h"
#include "ui/controls/FocusRing.h"
#include "ui/controls/Fonts.h"
#include "ui/controls/Tokens.h"
#include "ui/controls/ValueLabel.h"

namespace qm {

namespace {

// Lengths in pixels.
constexpr QSize kSize{440, 218}, kMinimumSize{320, 180};
constexpr int kSideMargin = 20, kTopMargin = 18;
constexpr int kCaptionWidth = 76, kColumnGap = 14, kRowGap = 9, kLineHeight = 18;
constexpr double kTextSize = 13;

}  // namespace

TrackInfoPanel::TrackInfoPanel(Outlets& outlets, QWidget* mainWindow) : ToolPanel(tr("Track Information"), mainWindow) {
    setObjectName(QStringLiteral("trackInfoWindow"));
    setMinimumSize(kMinimumSize);
    resize(kSize);

    auto* content = new QWidget;
    auto* rows = new QGridLayout(content);
    rows->setContentsMargins(kSideMargin, kTopMargin, kSideMargin, kTopMargin);
    rows->setHorizontalSpacing(kColumnGap);
    rows->setVerticalSpacing(kRowGap);
    rows->setColumnMinimumWidth(0, kCaptionWidth);
    rows->setColumnStretch(1, 1);
    outlets.movieName = addRow(rows, tr("Name"), "movieName");
    outlets.formatInInfo = addRow(rows, tr("Format"), "formatInInfo");
    outlets.duration = addRow(rows, tr("Duration"), "duration");
    outlets.movieSize = addRow(rows, tr("Size"), "movieSize");
    outlets.copyright = addRow(rows, tr("Copyright"), "copyright");
    rows->setRowStretch(rows->rowCount(), 1);

    auto* scroll = new QScrollArea(this);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidgetResizable(true);
    scroll->setFocusPolicy(Qt::NoFocus);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->viewport()->setAutoFillBackground(false);
    scroll->setWidget(content);
    content->setAutoFillBackground(false);
    auto* whole = new QVBoxLayout(this);
    whole->setContentsMargins(0, 0, 0, 0);
    whole->addWidget(scroll);
    new FocusRing(content);
    outlets.trackInfoWindow = this;
}

QLabel* TrackInfoPanel::addRow(QGridLayout* rows, const QString& caption, const char* name) {
    const int row = rows->rowCount();
    auto* title = new TextLabel(caption, uiFont(kTextSize), tokens::kText3);
    title->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    title->setFixedHeight(kLineHeight);
    auto* value = new ValueLabel(uiFont(kTextSize), tokens::kText, kLineHeight);
    value->setObjectName(QString::fromLatin1(name));
    value->setAccessibleName(caption);
    value->setText(QStringLiteral(" "));
    title->setBuddy(value);
    rows->addWidget(title, row, 0, Qt::AlignTop);
    rows->addWidget(value, row, 1);
    return value;
}

void TrackInfoPanel::paintEvent(QPaintEvent*) {
    QPainter(this).fillRect(rect(), Qt::black);
}

}  // namespace qm
