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

TrackInfoPanel::TrackInfoPanel(Outlets& outlets, QWidget* mainWindow)
    : ToolPanel(tr("Track Information"), mainWindow), m_content(new QWidget(this)) {
    setObjectName(QStringLiteral("trackInfoWindow"));
    setMinimumSize(kMinimumSize);
    resize(kSize);
    outlets.movieName = makeField(tr("Name"), "movieName");
    outlets.formatInInfo = makeField(tr("Format"), "formatInInfo");
    outlets.duration = makeField(tr("Duration"), "duration");
    outlets.movieSize = makeField(tr("Size"), "movieSize");
    outlets.copyright = makeField(tr("Copyright"), "copyright");
    outlets.trackInfoWindow = this;
}

QLabel* TrackInfoPanel::makeField(const QString& caption, const char* name) {
    auto* field = new ValueLabel(uiFont(kTextSize), tokens::kText, kLineHeight, m_content);
    field->setObjectName(QString::fromLatin1(name));
    field->setAccessibleName(caption);
    field->setText(QStringLiteral(" "));
    return field;
}

void TrackInfoPanel::build() {
    const QList<ValueLabel*> fields = m_content->findChildren<ValueLabel*>();
    auto* rows = new QGridLayout(m_content);
    rows->setContentsMargins(kSideMargin, kTopMargin, kSideMargin, kTopMargin);
    rows->setHorizontalSpacing(kColumnGap);
    rows->setVerticalSpacing(kRowGap);
    rows->setColumnMinimumWidth(0, kCaptionWidth);
    rows->setColumnStretch(1, 1);
    for (ValueLabel* field : fields) addRow(rows, field);
    rows->setRowStretch(rows->rowCount(), 1);

    auto* scroll = new QScrollArea(this);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidgetResizable(true);
    scroll->setFocusPolicy(Qt::NoFocus);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->viewport()->setAutoFillBackground(false);
    scroll->setWidget(m_content);
    m_content->setAutoFillBackground(false);
    auto* whole = new QVBoxLayout(this);
    whole->setContentsMargins(0, 0, 0, 0);
    whole->addWidget(scroll);
    new FocusRing(m_content);
}

void TrackInfoPanel::addRow(QGridLayout* rows, QLabel* field) {
    const int row = rows->rowCount();
    auto* title = new TextLabel(field->accessibleName(), uiFont(kTextSize), tokens::kText3);
    title->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    title->setFixedHeight(kLineHeight);
    title->setBuddy(field);
    rows->addWidget(title, row, 0, Qt::AlignTop);
    rows->addWidget(field, row, 1);
}

void TrackInfoPanel::paintEvent(QPaintEvent*) {
    QPainter(this).fillRect(rect(), Qt::black);
}

}  // namespace qm
