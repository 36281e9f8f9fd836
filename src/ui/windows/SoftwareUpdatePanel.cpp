#include "ui/windows/SoftwareUpdatePanel.h"

#include <QBoxLayout>
#include <QLinearGradient>
#include <QPainter>

#include "ui/controls/ChipButton.h"
#include "ui/controls/FocusRing.h"
#include "ui/controls/Fonts.h"
#include "ui/controls/NamedImage.h"
#include "ui/controls/ProgressIndicator.h"
#include "ui/controls/TextBlock.h"
#include "ui/controls/Tokens.h"
#include "update/CurrentVersion.h"

namespace qm {

namespace {

// Lengths in pixels.
constexpr int kWidth = 480, kHeight = 174;
constexpr int kSide = 20, kTop = 20, kBottom = 16;
constexpr int kIcon = 56, kIconGap = 16;
constexpr int kMessageTop = 5, kMessageLine = 21, kVersionGap = 3, kVersionLine = 18;
constexpr int kProgressTop = 98, kButtonTop = 126, kButtonHeight = 32, kButtonGap = 8;

}  // namespace

SoftwareUpdatePanel::SoftwareUpdatePanel(UpdateOutlets& outlets, QWidget* mainWindow)
    : ToolPanel(tr("Software Update"), mainWindow, Keys::Own) {
    setObjectName(QStringLiteral("softwareUpdatePanel"));
    setFixedSize(kWidth, kHeight);
    buildTexts(outlets);
    buildButtons(outlets);
    new FocusRing(this);
    outlets.softwareUpdatePanel = this;
}

void SoftwareUpdatePanel::buildTexts(UpdateOutlets& outlets) {
    auto* column = new QVBoxLayout;
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(kVersionGap);
    auto* message = new TextBlock(QStringLiteral(" "), uiFont(15, 600), tokens::kText, kMessageLine);
    message->setObjectName(QStringLiteral("updateMsg"));
    column->addWidget(message);
    column->addWidget(new TextBlock(tr("You are using version %1.").arg(currentVersionText()), uiFont(13),
                                    tokens::kText2, kVersionLine));
    column->addStretch();
    auto* texts = new QWidget(this);
    texts->setLayout(column);
    const int left = kSide + kIcon + kIconGap, top = kTop + kMessageTop;
    texts->setGeometry(left, top, kWidth - kSide - left, kProgressTop - top);
    outlets.updateMsg = message;

    auto* progress = new ProgressIndicator(this);
    progress->setObjectName(QStringLiteral("updateProgress"));
    progress->setAccessibleName(tr("Downloading"));
    progress->setGeometry(kSide, kProgressTop, kWidth - 2 * kSide, progress->height());
    progress->hide();
    outlets.updateProgress = progress;
}

void SoftwareUpdatePanel::buildButtons(UpdateOutlets& outlets) {
    auto* visit = new PushButton(tr("Visit Web Site"), false, this);
    auto* close = new PushButton(tr("Close"), false, this);
    auto* download = new PushButton(tr("Download"), true, this);
    visit->setObjectName(QStringLiteral("softwareUpdateVisitHalvixButton"));
    close->setObjectName(QStringLiteral("closeButton"));
    download->setObjectName(QStringLiteral("softwareUpdateDownloadButton"));
    download->setEnabled(false);

    auto* row = new QHBoxLayout;
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(kButtonGap);
    row->addWidget(visit);
    row->addStretch();
    row->addWidget(close);
    row->addWidget(download);
    auto* buttons = new QWidget(this);
    buttons->setLayout(row);
    buttons->setGeometry(kSide, kButtonTop, kWidth - 2 * kSide, kButtonHeight);
    setTabOrder(download, close);  // takes the focus when Download is disabled
    setTabOrder(close, visit);
    static_assert(kButtonTop + kButtonHeight + kBottom == kHeight);

    outlets.softwareUpdateVisitHalvixButton = visit;
    m_download = outlets.softwareUpdateDownloadButton = download;
    m_close = outlets.closeButton = close;
}

// Return presses the default button, whichever control has the focus.
void SoftwareUpdatePanel::showEvent(QShowEvent* event) {
    ToolPanel::showEvent(event);
    (m_download->isEnabled() ? m_download : m_close)->setFocus(Qt::OtherFocusReason);
}

QPixmap SoftwareUpdatePanel::icon() {
    const double scale = devicePixelRatioF();
    if (m_icon.isNull() || m_icon.devicePixelRatio() != scale) {
        const int side = qRound(kIcon * scale);
        m_icon = QPixmap::fromImage(namedImage(QStringLiteral("app_quillmere_256.png"))
                                        .scaled(side, side, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
        m_icon.setDevicePixelRatio(scale);
    }
    return m_icon;
}

void SoftwareUpdatePanel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    QLinearGradient ground(0, 0, 0, height());
    ground.setColorAt(0, tokens::kBar);
    ground.setColorAt(1, tokens::kPanelHigh);
    painter.fillRect(rect(), ground);
    painter.drawPixmap(kSide, kTop, icon());
}

}  // namespace qm
