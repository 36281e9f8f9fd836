#include "ui/windows/PreferencesWindow.h"

#include <QAction>
#include <QBoxLayout>
#include <QLinearGradient>
#include <QPainter>

#include "player/Numbers.h"
#include "ui/controls/Card.h"
#include "ui/controls/CheckBox.h"
#include "ui/controls/ChipButton.h"
#include "ui/controls/FocusRing.h"
#include "ui/controls/Fonts.h"
#include "ui/controls/PaneToolbar.h"
#include "ui/controls/RadioTiles.h"
#include "ui/controls/ScaleSample.h"
#include "ui/controls/Slider.h"
#include "ui/controls/TextBlock.h"
#include "ui/controls/Tokens.h"
#include "update/CurrentVersion.h"

namespace qm {

namespace {

constexpr int kWidth = 480, kGeneralHeight = 270, kUpdateHeight = 152, kVolumeHeight = 190;
constexpr int kSide = 24, kTop = 20, kLine = 18;
constexpr int kHelpGap = 4, kHelpIndent = 28;
constexpr double kHelpText = 12.5;
constexpr int kGainMilliseconds = 100;
const QColor kPaneTop{0x16, 0x17, 0x18}, kPaneBottom{0x2A, 0x2B, 0x2D};

QWidget* makePane(QWidget* parent, const char* name, int height) {
    auto* pane = new QWidget(parent);
    pane->setObjectName(QString::fromLatin1(name));
    pane->setFixedSize(kWidth, height);
    pane->hide();
    return pane;
}

QVBoxLayout* makeColumn(QWidget* pane) {
    auto* column = new QVBoxLayout(pane);
    column->setContentsMargins(kSide, kTop, kSide, 0);
    column->setSpacing(0);
    return column;
}

TextLabel* makeLine(const QString& text, const QFont& font, const QColor& color) {
    auto* line = new TextLabel(text, font, color);
    line->setFixedHeight(kLine);
    return line;
}

class Rule : public QWidget {
public:
    Rule() { setFixedHeight(1); }

protected:
    void paintEvent(QPaintEvent*) override { QPainter(this).fillRect(rect(), tokens::kLine); }
};

CheckBox* makeCheckBox(QWidget* pane, const char* name, const QString& text, const QString& help) {
    auto* box = new CheckBox(text, pane);
    box->setObjectName(QString::fromLatin1(name));
    box->setAccessibleDescription(help);
    return box;
}

void addCheckBox(QVBoxLayout* column, CheckBox* box) {
    column->addWidget(box, 0, Qt::AlignLeft);
    column->addSpacing(kHelpGap);
    auto* line = makeLine(box->accessibleDescription(), uiFont(kHelpText), tokens::kText2);
    auto* indented = new QHBoxLayout;
    indented->setContentsMargins(kHelpIndent, 0, 0, 0);
    indented->addWidget(line);
    column->addLayout(indented);
}

}  // namespace

PreferencesWindow::PreferencesWindow(Outlets& outlets, ActionTable& actions, QWidget* mainWindow)
    : ToolPanel(tr("Preferences"), mainWindow, Keys::Own),
      m_outlets(outlets),
      m_actions(actions),
      m_content(new QWidget(this)) {
    setObjectName(QStringLiteral("prefsWindow"));
    auto* toolbar = new PaneToolbar(this);
    toolbar->setObjectName(QStringLiteral("prefsToolbar"));
    connect(toolbar, &PaneToolbar::itemChosen, &actions, [&actions](const QString& action) {
        if (const auto id = actionNamed(action)) actions.send(*id);
    });
    auto* container = new QWidget(m_content);
    container->setObjectName(QStringLiteral("activePrefContentView"));
    outlets.prefsWindow = this;
    outlets.prefsToolbar = toolbar;
    outlets.activePrefContentView = container;
    outlets.generalPrefView = makePane(this, "generalPrefView", kGeneralHeight);
    outlets.updatePrefView = makePane(this, "updatePrefView", kUpdateHeight);
    outlets.audioDefaultPrefView = makePane(this, "audioDefaultPrefView", kVolumeHeight);
    makeOutlets();
    setFixedSize(kWidth, toolbar->height() + kGeneralHeight);
    if (QAction* close = actions.action(ActionId::openPrefsWindow)) addAction(close);
    m_gainTimer.setObjectName(QStringLiteral("gainTimer"));
    m_gainTimer.setInterval(kGainMilliseconds);
    connect(&m_gainTimer, &QTimer::timeout, this, &PreferencesWindow::showGain);
}

// The controls whose values are set at start-up, before the window is shown.
void PreferencesWindow::makeOutlets() {
    m_outlets.audioLevelsPref = makeCheckBox(m_outlets.generalPrefView, "audioLevelsPref", tr("Show level indicators"),
                                             tr("Meters follow the sound while a track is loaded."));
    m_actions.bind(m_outlets.audioLevelsPref, ActionId::toggleAudioLevelsPref);
    m_outlets.autoCheckForUpdatesPref =
        makeCheckBox(m_outlets.updatePrefView, "autoCheckForUpdatesPref", tr("Check for updates when Quillmere starts"),
                     tr("You hear about it only when there is a newer version."));
    m_actions.bind(m_outlets.autoCheckForUpdatesPref, ActionId::toggleSoftwareUpdateCheck);
    auto* tiles = new RadioTiles(m_outlets.generalPrefView);
    tiles->setObjectName(QStringLiteral("colorMatrix"));
    tiles->setAccessibleName(tr("Colour of scale labels"));
    tiles->addTile(tr("Cyan"), tokens::kScaleCyan, 0)->setChecked(true);
    tiles->addTile(tr("White"), tokens::kScaleWhite, 1);
    tiles->addTile(tr("Orange"), tokens::kScaleOrange, 2);
    tiles->addTile(tr("Green"), tokens::kScaleGreen, 3);
    connect(tiles, &RadioTiles::action, &m_actions, [this] { m_actions.send(ActionId::toggleTextColor); });
    m_outlets.colorMatrix = tiles;
    m_outlets.scaleSample = new ScaleSample(m_outlets.generalPrefView);
}

void PreferencesWindow::build() {
    buildGeneralPane();
    buildUpdatePane();
    buildVolumePane();
    new FocusRing(this);
}

void PreferencesWindow::buildGeneralPane() {
    QVBoxLayout* column = makeColumn(m_outlets.generalPrefView);
    addCheckBox(column, m_outlets.audioLevelsPref);
    column->addSpacing(18);
    column->addWidget(new Rule);
    column->addSpacing(16);
    column->addWidget(makeLine(m_outlets.colorMatrix->accessibleName(), uiFont(13, 600), tokens::kText));
    column->addSpacing(10);
    column->addWidget(m_outlets.colorMatrix);
    column->addSpacing(12);
    column->addWidget(m_outlets.scaleSample);
    column->addStretch();
}

void PreferencesWindow::buildUpdatePane() {
    QVBoxLayout* column = makeColumn(m_outlets.updatePrefView);
    addCheckBox(column, m_outlets.autoCheckForUpdatesPref);
    column->addSpacing(18);
    column->addWidget(new Rule);
    column->addSpacing(14);
    auto* row = new QHBoxLayout;
    row->addWidget(makeLine(tr("This is version %1.").arg(currentVersionText()), uiFont(kHelpText), tokens::kText2), 1);
    auto* button = new PushButton(tr("Check Now"));
    button->setObjectName(actionName(ActionId::checkSoftwareUpdate));
    m_actions.bind(button, ActionId::checkSoftwareUpdate);
    row->addWidget(button);
    column->addLayout(row);
    column->addStretch();
}

void PreferencesWindow::buildVolumePane() {
    QVBoxLayout* column = makeColumn(m_outlets.audioDefaultPrefView);
    column->addWidget(makeLine(tr("Start-up level"), uiFont(13, 600), tokens::kText));
    column->addSpacing(kHelpGap);
    column->addWidget(new TextBlock(
        tr("Set the gain slider in the main window to a level you like, then keep it for the next start."),
        uiFont(kHelpText), tokens::kText2, kLine));
    column->addSpacing(18);
    auto* row = new QHBoxLayout;
    row->setSpacing(12);
    row->addWidget(makeLine(tr("Gain now"), uiFont(13), tokens::kText2));
    m_gain = makeLine(QString(), uiFont(22, 500), tokens::kText);
    m_gain->setObjectName(QStringLiteral("gainNow"));
    m_gain->setAccessibleName(tr("Gain now"));
    m_gain->setFixedHeight(32);
    row->addWidget(m_gain, 1);
    auto* button = new PushButton(tr("Use Current Gain"), true);
    button->setObjectName(actionName(ActionId::updateDefaultAudioPref));
    m_actions.bind(button, ActionId::updateDefaultAudioPref);
    row->addWidget(button);
    column->addLayout(row);
    column->addSpacing(14);
    column->addWidget(
        makeLine(tr("A gain of 0 counts as not set: the next start is at 0.5."), uiFont(kHelpText), tokens::kText3));
    column->addStretch();
}

void PreferencesWindow::showGain() {
    if (m_outlets.gainSlider) m_gain->setText(fixedText(m_outlets.gainSlider->value(), 2));
}

void PreferencesWindow::paintEvent(QPaintEvent*) {
    QLinearGradient ground(0, m_content->y(), 0, height());
    ground.setColorAt(0, kPaneTop);
    ground.setColorAt(1, kPaneBottom);
    QPainter(this).fillRect(rect(), ground);
}

void PreferencesWindow::resizeEvent(QResizeEvent*) {
    const int below = m_outlets.prefsToolbar->height();
    m_outlets.prefsToolbar->setGeometry(0, 0, width(), below);
    m_content->setGeometry(0, below, width(), height() - below);
}

void PreferencesWindow::showEvent(QShowEvent* event) {
    showGain();
    m_gainTimer.start();
    ToolPanel::showEvent(event);
}

void PreferencesWindow::hideEvent(QHideEvent* event) {
    m_gainTimer.stop();
    ToolPanel::hideEvent(event);
}

}  // namespace qm
