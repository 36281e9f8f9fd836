#include "ui/windows/MainWindow.h"

#include <QAction>
#include <QBoxLayout>
#include <QDragEnterEvent>
#include <QMenuBar>
#include <QShortcut>
#include <algorithm>
#include <utility>

#include "ui/controls/FocusRing.h"
#include "ui/controls/ImageButton.h"
#include "ui/controls/PlayListView.h"
#include "ui/controls/Slider.h"
#include "ui/controls/TitleButton.h"
#include "ui/windows/Decks.h"
#include "ui/windows/HeroView.h"
#include "ui/windows/MainToolbar.h"
#include "ui/windows/PlayListCard.h"
#include "ui/windows/ShortcutsPanel.h"
#include "ui/windows/SoundCards.h"

namespace qm {

namespace {

// The window's measures in pixels; heights of the content do not count the menu bar.
constexpr int kWidth = 980, kHeight = 624, kMinimumHeight = 566;
constexpr int kMenuBarHeight = 26, kToolbarHeight = 42;
constexpr int kSide = 16, kTop = 10, kBottom = 12, kGap = 12;
constexpr int kRowHeight = 288, kRoomyRowHeight = 336;
constexpr int kRoomyWidth = 1200, kRoomyHeight = 704;
constexpr int kRightWidth = 304, kRightMaximum = 400;
constexpr int kDecksHeight = 120, kLoopWidth = 270;
constexpr int kToneMaximum = 236, kBarHeight = 54;

}  // namespace

MainGrid::MainGrid(Outlets& outlets, ActionTable& actions, QWidget* parent)
    : BackgroundViewBlack(parent),
      hero(new HeroView(outlets, this)),
      transport(new TransportDeck(outlets, actions, this)),
      loop(new LoopDeck(outlets, actions, this)),
      playList(new PlayListCard(outlets, actions, this)),
      speed(new SpeedCard(outlets, actions, this)),
      pitch(new PitchCard(outlets, actions, this)),
      tone(new ToneCard(outlets, actions, this)),
      bar(new RecordBar(outlets, actions, this)) {
    actions.bind(outlets.cueSlider, QStringLiteral("cueUpdate"));
}

void MainGrid::resizeEvent(QResizeEvent*) {
    // The window as a whole decides, so that hiding the toolbar does not change the layout.
    const bool roomy = width() >= kRoomyWidth && window()->height() >= kRoomyHeight + kMenuBarHeight;
    const int rowHeight = roomy ? kRoomyRowHeight : kRowHeight;
    const int right = std::clamp(kRightWidth + (width() - kWidth) / 4, kRightWidth, kRightMaximum);
    const int left = width() - 2 * kSide - kGap - right;
    hero->setRoomy(roomy);
    speed->setRoomy(roomy);
    pitch->setRoomy(roomy);
    layOutLeft(left, rowHeight);
    layOutRight(kSide + left + kGap, right, rowHeight);
}

void MainGrid::layOutLeft(int leftWidth, int rowHeight) {
    const int decksTop = kTop + rowHeight - kDecksHeight;
    hero->setGeometry(kSide, kTop, leftWidth, decksTop - kTop);
    transport->setGeometry(kSide, decksTop, leftWidth - kGap - kLoopWidth, kDecksHeight);
    loop->setGeometry(kSide + leftWidth - kLoopWidth, decksTop, kLoopWidth, kDecksHeight);
    const int listTop = kTop + rowHeight + kGap;
    playList->setGeometry(kSide, listTop, leftWidth, height() - listTop - kBottom);
}

void MainGrid::layOutRight(int x, int rightWidth, int rowHeight) {
    const int cardHeight = (rowHeight - kGap) / 2;
    speed->setGeometry(x, kTop, rightWidth, cardHeight);
    pitch->setGeometry(x, kTop + rowHeight - cardHeight, rightWidth, cardHeight);
    const int toneTop = kTop + rowHeight + kGap;
    const int barTop = height() - kBottom - kBarHeight;
    tone->setGeometry(x, toneTop, rightWidth, std::min(kToneMaximum, barTop - kGap - toneTop));
    bar->setGeometry(x, barTop, rightWidth, kBarHeight);
}

MainWindow::MainWindow(Outlets& outlets, QObject* controller)
    : m_actions(new ActionTable(this, controller)), m_outlets(outlets) {
    setObjectName(QStringLiteral("mainWindow"));
    setWindowTitle(QStringLiteral("Quillmere"));
    m_actions->buildMenus();
    menuBar()->setAccessibleName(tr("Menus"));
    auto* content = new QWidget;
    auto* column = new QVBoxLayout(content);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    m_tools = new MainToolbar(*m_actions);
    m_grid = new MainGrid(outlets, *m_actions);
    column->addWidget(m_tools);
    column->addWidget(m_grid, 1);
    setCentralWidget(content);
    outlets.mainWindow = this;
    outlets.toolbar = m_tools;

    const bool menuInside = !menuBar()->isNativeMenuBar();
    if (menuInside) menuBar()->setFixedHeight(kMenuBarHeight);
    const int menuHeight = menuInside ? kMenuBarHeight : 0;
    setMinimumSize(kWidth, kMinimumHeight + menuHeight);
    resize(kWidth, kHeight + menuHeight);
    new FocusRing(this);
    for (const char* slot : {"toggleToolbar", "displayLevels", "displayInfo", "displayTrackFormat", "openPrefsWindow"})
        m_actions->action(QString::fromLatin1(slot))->setCheckable(true);
    m_actions->action(QStringLiteral("toggleToolbar"))->setChecked(true);
    m_actions->giveKeysToList(outlets.playList);
    showUndo({});
    const auto pulse = [this](const QString& slot) {
        if (slot == u"playForward" || slot == u"toggleStartStop") m_grid->playList->pulseDropArea();
    };
    connect(m_actions, &ActionTable::sent, this, pulse);
    setAcceptDrops(true);
    setTabOrderOfAreas();
    openMenuByKey();
    followNoticeLine();
}

void MainWindow::setTabOrderOfAreas() {
    QWidget* last = m_tools;
    const auto chain = [&last](QWidget* next) {
        setTabOrder(last, next);
        last = next;
    };
    const auto chainChildren = [&](QWidget* area) {
        for (FaceButton* button : area->findChildren<FaceButton*>()) chain(button);
    };
    chainChildren(m_tools);
    chain(m_outlets.playList);
    chainChildren(m_grid->playList);
    chainChildren(m_grid->transport);
    for (QWidget* control : {static_cast<QWidget*>(m_outlets.markAButton), static_cast<QWidget*>(m_outlets.loopButton),
                             static_cast<QWidget*>(m_outlets.markBButton), m_outlets.resetMarksButton})
        chain(control);
    chain(m_outlets.cueSlider);
    chain(m_outlets.speedResetButton);
    chain(m_outlets.speedSlider);
    for (const char* slot : {"speedDown", "speed05", "speed075", "speed150", "speed20", "speedUp"})
        chain(m_grid->speed->findChild<ChipButton*>(QString::fromLatin1(slot)));
    chain(m_outlets.pitchResetButton);
    chain(m_outlets.pitchSlider);
    for (const char* slot : {"semiToneDown", "semiToneUp"})
        chain(m_grid->pitch->findChild<ChipButton*>(QString::fromLatin1(slot)));
    struct ToneOrder {
        const char* less;
        Slider* slider;
        const char* more;
        TitleButton* reset;
    };
    for (const ToneOrder& row :
         {ToneOrder{"volumeMin", m_outlets.gainSlider, "volumeMax", m_outlets.gainResetButton},
          ToneOrder{"balanceLeftMax", m_outlets.balanceSlider, "balanceRightMax", m_outlets.balanceResetButton},
          ToneOrder{"bassMin", m_outlets.bassSlider, "bassMax", m_outlets.bassResetButton},
          ToneOrder{"trebleMin", m_outlets.trebleSlider, "trebleMax", m_outlets.trebleResetButton}}) {
        chain(m_grid->tone->findChild<ChipButton*>(QString::fromLatin1(row.less)));
        chain(row.slider);
        chain(m_grid->tone->findChild<ChipButton*>(QString::fromLatin1(row.more)));
        chain(row.reset);
    }
    chainChildren(m_grid->bar);
    chain(m_grid->hero->noticeLine().button());
}

// Its button has a key and a menu item while there is one.
void MainWindow::followNoticeLine() {
    const QString slot = QStringLiteral("useMessageButton");
    NoticeLine& line = m_grid->hero->noticeLine();
    const auto offer = [this, slot, &line] { m_actions->action(slot)->setEnabled(line.offersAct()); };
    line.button()->setToolTip(tr(actionRow(slot)->tooltip));
    connect(&line, &NoticeLine::changed, this, offer);
    offer();
}

void MainWindow::useMessageButton() {
    m_grid->hero->noticeLine().act();
}

// As on other desktops; Alt alone would take the player's keys away whenever it is touched.
void MainWindow::openMenuByKey() {
    auto* key = new QShortcut(QKeySequence(Qt::Key_F10), this);
    connect(key, &QShortcut::activated, this, [this] {
        QAction* first = menuBar()->actions().value(0);
        if (!first || menuBar()->isNativeMenuBar()) return;
        menuBar()->setActiveAction(first);
    });
}

void MainWindow::toggleToolbar() {
    m_tools->setVisible(m_tools->isHidden());
    m_actions->action(QStringLiteral("toggleToolbar"))->setChecked(!m_tools->isHidden());
}

void MainWindow::showUndo(const QString& act) {
    QAction* undo = m_actions->action(QStringLiteral("undo"));
    undo->setText(act.isEmpty() ? tr("Undo") : tr("Undo %1").arg(act));
    undo->setEnabled(!act.isEmpty());
}

void MainWindow::displayVideo() {
    if (!m_outlets.videoPanel) return;
    m_outlets.videoPanel->show();
    m_outlets.videoPanel->raise();
}

void MainWindow::displayShortcuts() {
    if (!m_shortcuts) m_shortcuts = new ShortcutsPanel(this);
    m_shortcuts->show();
    m_shortcuts->raise();
    m_shortcuts->activateWindow();
}

void MainWindow::showEvent(QShowEvent* event) {
    FadingWindow::showEvent(event);
    if (!focusWidget()) m_outlets.playList->setFocus(Qt::OtherFocusReason);
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
    m_outlets.playList->offerDrag(event);
}

void MainWindow::dragMoveEvent(QDragMoveEvent* event) {
    m_outlets.playList->offerDrag(event);
}

void MainWindow::dragLeaveEvent(QDragLeaveEvent*) {
    m_outlets.playList->endDrag();
}

void MainWindow::dropEvent(QDropEvent* event) {
    m_outlets.playList->dropFiles(event);
}

void MainWindow::paintEvent(QPaintEvent* event) {
    FadingWindow::paintEvent(event);
    if (!std::exchange(m_wasPainted, true)) emit painted();
}

}  // namespace qm
