#include "ui/windows/ExportPanel.h"

#include <QCloseEvent>
#include <QLinearGradient>
#include <QPainter>

#include "ui/controls/Card.h"
#include "ui/controls/ChipButton.h"
#include "ui/controls/FocusRing.h"
#include "ui/controls/Fonts.h"
#include "ui/controls/ProgressBar.h"
#include "ui/controls/Tokens.h"

namespace qm {

namespace {

// Lengths in pixels.
constexpr int kWidth = 420, kHeight = 154;
constexpr int kSide = 20, kInside = kWidth - 2 * kSide;
constexpr int kNameTop = 20, kNameHeight = 21, kHintTop = 44, kHintHeight = 18;
constexpr int kBarTop = 78, kButtonTop = 106;
constexpr int kAboveBottom = 56;  // of the main window

}  // namespace

ExportPanel::ExportPanel(Outlets& outlets, ActionTable& actions, QWidget* mainWindow)
    : ToolPanel(tr("Export"), mainWindow), m_actions(actions) {
    setObjectName(QStringLiteral("exportPanel"));
    setFixedSize(kWidth, kHeight);
    setAttribute(Qt::WA_ShowWithoutActivating, false);  // so that Esc reaches it
    auto* name = new TextLabel({}, uiFont(15, 600), tokens::kText, this);
    name->setObjectName(QStringLiteral("exportName"));
    name->setGeometry(kSide, kNameTop, kInside, kNameHeight);
    m_hint = new TextLabel({}, uiFont(13), tokens::kText2, this);
    m_hint->setObjectName(QStringLiteral("exportHint"));
    setQuitsAfterwards(false);
    m_hint->setGeometry(kSide, kHintTop, kInside, kHintHeight);
    auto* bar = new ProgressBar(this);
    bar->setObjectName(QStringLiteral("exportProgress"));
    bar->setAccessibleName(tr("Exported"));
    bar->setGeometry(kSide, kBarTop, kInside, bar->height());
    auto* cancel = new PushButton(tr("Cancel"), false, this);
    cancel->setObjectName(actionName(ActionId::cancelExport));
    cancel->resize(cancel->sizeHint());
    cancel->move(kWidth - kSide - cancel->width(), kButtonTop);
    actions.bind(cancel, ActionId::cancelExport);
    new FocusRing(this);
    outlets.exportPanel = this;
    outlets.exportName = name;
    outlets.exportProgress = bar;
}

void ExportPanel::setQuitsAfterwards(bool quits) {
    m_hint->setText(quits ? tr("Quillmere quits when it is done.") : tr("You can go on playing."));
}

// Over the play list, because nothing there changes while a track plays.
QPoint ExportPanel::wishedPlace(const QRect& window, QSize frame) const {
    return {window.center().x() - frame.width() / 2, window.bottom() + 1 - kAboveBottom - frame.height()};
}

void ExportPanel::closeEvent(QCloseEvent* event) {
    ToolPanel::closeEvent(event);
    m_actions.send(ActionId::cancelExport);
}

void ExportPanel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    QLinearGradient ground(0, 0, 0, height());
    ground.setColorAt(0, tokens::kBar);
    ground.setColorAt(1, tokens::kPanelHigh);
    painter.fillRect(rect(), ground);
}

}  // namespace qm
