#include "ui/controls/FindBar.h"

#include <QBoxLayout>
#include <QKeyEvent>
#include <QPainter>

#include "ui/controls/Card.h"
#include "ui/controls/ChipButton.h"
#include "ui/controls/Fonts.h"
#include "ui/controls/SearchField.h"
#include "ui/controls/Tokens.h"

namespace qm {

namespace {

constexpr int kHeight = 36, kSide = 8, kGap = 10, kFieldWidth = 300;

}  // namespace

FindBar::FindBar(QWidget* parent)
    : QWidget(parent),
      m_field(new SearchField(tr("Find title, artist or album"))),
      m_count(new TextLabel(QString(), uiFont(12), tokens::kText2)) {
    setFixedHeight(kHeight);
    m_field->setObjectName(QStringLiteral("findField"));
    m_field->setMaximumWidth(kFieldWidth);
    m_count->setObjectName(QStringLiteral("findCount"));
    m_count->setAccessibleName(tr("Tracks found"));
    auto* done = new ChipButton(tr("Show All"));
    done->setObjectName(QStringLiteral("findDone"));
    done->setAccessibleName(tr("Show all tracks"));
    done->setToolTip(tr("Show all tracks again [Esc]"));
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(kSide, 1, kSide, 0);
    row->setSpacing(kGap);
    row->addWidget(m_field, 1);
    row->addWidget(m_count);
    row->addStretch();
    row->addWidget(done);
    connect(m_field, &QLineEdit::textChanged, this, &FindBar::typed);
    connect(m_field, &QLineEdit::returnPressed, this, &FindBar::chosen);
    connect(done, &QAbstractButton::clicked, this, &FindBar::left);
}

void FindBar::begin() {
    show();
    m_field->selectAll();
    m_field->setFocus(Qt::ShortcutFocusReason);
}

void FindBar::showCount(int found, int all) {
    m_count->setText(tr("%1 of %2").arg(found).arg(all));
    m_count->updateGeometry();
}

QString FindBar::text() const {
    return m_field->text();
}

QString FindBar::countText() const {
    return m_count->text();
}

void FindBar::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape) return emit left();
    if (event->key() == Qt::Key_Down) return emit goneDown();
    QWidget::keyPressEvent(event);
}

void FindBar::paintEvent(QPaintEvent*) {
    QPainter(this).fillRect(QRect(0, 0, width(), 1), tokens::kLine);
}

}  // namespace qm
