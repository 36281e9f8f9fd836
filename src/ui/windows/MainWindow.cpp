#include "ui/windows/MainWindow.h"

#include <QAction>
#include <QApplication>
#include <QBoxLayout>
#include <QDragEnterEvent>
#include <QHeaderView>
#include <QMenuBar>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QShortcut>
#include <QTimer>
#include <QWindow>
#include <QWindowStateChangeEvent>
#include <algorithm>
#include <chrono>
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
#include "ui/windows/VideoPanel.h"

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

// From this width of the left column on the decks keep their measure and the strip becomes higher, one pixel for so
// many more, while the play list keeps this height.
constexpr int kWideLeft = 1000, kWideTransport = 560;
constexpr int kPixelsPerGrowth = 8, kMostGrowth = 108, kListKept = 320;

constexpr QSize kSmallest{480, 320};  // on a screen that is too small
constexpr QSize kFrame{8, 40};        // more than most desktops draw round a window
constexpr int kScrollMargin = 24, kEnoughOfList = 80;
constexpr std::chrono::milliseconds kPlaceSettles{200};

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
    actions.bind(outlets.cueSlider, ActionId::cueUpdate);
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
    const int grown = rowHeight + stripGrowth(leftWidth, rowHeight);
    const int decksTop = kTop + grown - kDecksHeight;
    hero->setGeometry(kSide, kTop, leftWidth, decksTop - kTop);
    layOutDecks(leftWidth, decksTop);
    const int listTop = kTop + grown + kGap;
    playList->setGeometry(kSide, listTop, leftWidth, height() - listTop - kBottom);
}

// Side by side as wide as the column, and in its middle where that would leave them empty.
void MainGrid::layOutDecks(int leftWidth, int top) {
    const bool wide = leftWidth >= kWideLeft;
    const int transportWidth = wide ? kWideTransport : leftWidth - kGap - kLoopWidth;
    const int x = kSide + (leftWidth - transportWidth - kGap - kLoopWidth) / 2;
    transport->setGeometry(x, top, transportWidth, kDecksHeight);
    loop->setGeometry(x + transportWidth + kGap, top, kLoopWidth, kDecksHeight);
}

int MainGrid::stripGrowth(int leftWidth, int rowHeight) const {
    const int spare = height() - kTop - rowHeight - kGap - kBottom - kListKept;
    const int wanted = std::min(kMostGrowth, (leftWidth - kWideLeft) / kPixelsPerGrowth);
    return std::clamp(wanted, 0, std::max(0, spare));
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

MainWindow::MainWindow(Outlets& outlets) : m_actions(new ActionTable(this)), m_outlets(outlets) {
    setObjectName(QStringLiteral("mainWindow"));
    setWindowTitle(QStringLiteral("Quillmere"));
    receiveActions();
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
    m_ring = new FocusRing(this);
    for (const ActionId id : {ActionId::toggleToolbar, ActionId::displayLevels, ActionId::displayInfo,
                              ActionId::displayTrackFormat, ActionId::openPrefsWindow})
        m_actions->action(id)->setCheckable(true);
    m_actions->action(ActionId::toggleToolbar)->setChecked(true);
    m_actions->giveKeysToList(outlets.playList);
    showUndo({});
    const auto pulse = [this](ActionId id) {
        if (id == ActionId::playForward || id == ActionId::toggleStartStop) m_grid->playList->pulseDropArea();
    };
    connect(m_actions, &ActionTable::sent, this, pulse);
    setAcceptDrops(true);
    setTabOrderOfAreas();
    openMenuByKey();
    followNoticeLine();
}

void MainWindow::receiveActions() {
    m_actions->setReceiver(ActionId::quit, *this, &MainWindow::quitRequested);
    m_actions->setReceiver(ActionId::displayGuide, *this, &MainWindow::guideRequested);
    m_actions->setReceiver(ActionId::toggleToolbar, *this, &MainWindow::toggleToolbar);
    m_actions->setReceiver(ActionId::displayVideo, *this, &MainWindow::displayVideo);
    m_actions->setReceiver(ActionId::fillScreenWithVideo, *this, &MainWindow::fillScreenWithVideo);
    m_actions->setReceiver(ActionId::displayShortcuts, *this, &MainWindow::displayShortcuts);
    m_actions->setReceiver(ActionId::useMessageButton, *this, &MainWindow::useMessageButton);
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
    for (const ActionId id : {ActionId::speedDown, ActionId::speed05, ActionId::speed075, ActionId::speed150,
                              ActionId::speed20, ActionId::speedUp})
        chain(m_grid->speed->findChild<ChipButton*>(actionName(id)));
    chain(m_outlets.pitchResetButton);
    chain(m_outlets.pitchSlider);
    for (const ActionId id : {ActionId::semiToneDown, ActionId::semiToneUp})
        chain(m_grid->pitch->findChild<ChipButton*>(actionName(id)));
    struct ToneOrder {
        ActionId less;
        Slider* slider;
        ActionId more;
        TitleButton* reset;
    };
    for (const ToneOrder& row :
         {ToneOrder{ActionId::volumeMin, m_outlets.gainSlider, ActionId::volumeMax, m_outlets.gainResetButton},
          ToneOrder{ActionId::balanceLeftMax, m_outlets.balanceSlider, ActionId::balanceRightMax,
                    m_outlets.balanceResetButton},
          ToneOrder{ActionId::bassMin, m_outlets.bassSlider, ActionId::bassMax, m_outlets.bassResetButton},
          ToneOrder{ActionId::trebleMin, m_outlets.trebleSlider, ActionId::trebleMax, m_outlets.trebleResetButton}}) {
        chain(m_grid->tone->findChild<ChipButton*>(actionName(row.less)));
        chain(row.slider);
        chain(m_grid->tone->findChild<ChipButton*>(actionName(row.more)));
        chain(row.reset);
    }
    chainChildren(m_grid->bar);
    chain(m_grid->hero->noticeLine().button());
}

// Its button has a key and a menu item while there is one.
void MainWindow::followNoticeLine() {
    QAction* item = m_actions->action(ActionId::useMessageButton);
    NoticeLine& line = m_grid->hero->noticeLine();
    const auto offer = [item, &line] { item->setEnabled(line.offersAct()); };
    line.button()->setToolTip(tr(actionRow(ActionId::useMessageButton).tooltip));
    connect(&line, &NoticeLine::changed, this, offer);
    offer();
}

void MainWindow::useMessageButton() {
    m_grid->hero->noticeLine().act();
}

// F10 opens the menu bar. Alt alone does not, because it would take the keys away from the player.
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
    m_actions->action(ActionId::toggleToolbar)->setChecked(!m_tools->isHidden());
}

void MainWindow::showUndo(const QString& act) {
    QAction* undo = m_actions->action(ActionId::undo);
    undo->setText(act.isEmpty() ? tr("Undo") : tr("Undo %1").arg(act));
    undo->setEnabled(!act.isEmpty());
}

void MainWindow::displayVideo() {
    if (!m_outlets.videoPanel) return;
    m_outlets.videoPanel->show();
    m_outlets.videoPanel->raise();
}

void MainWindow::fillScreenWithVideo() {
    if (auto* panel = qobject_cast<VideoPanel*>(m_outlets.videoPanel)) panel->toggleFullScreen();
}

void MainWindow::displayShortcuts() {
    if (!m_shortcuts) m_shortcuts = new ShortcutsPanel(this);
    m_shortcuts->show();
    m_shortcuts->raise();
    m_shortcuts->activateWindow();
}

void MainWindow::showEvent(QShowEvent* event) {
    FadingWindow::showEvent(event);
    if (windowHandle())
        connect(windowHandle(), &QWindow::screenChanged, this, &MainWindow::fitScreen, Qt::UniqueConnection);
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

// --- its place on the screen -----------------------------------------------------------------------------------------

void MainWindow::standOn(const QRect& screen, QSize panel) {
    fitInto(screen.size() - kFrame);
    resize(size().boundedTo(screen.size() - kFrame));
    if (m_scroll) return setWindowState(windowState() | Qt::WindowMaximized);
    if (const auto place = placeWithRoomBeside(size() + kFrame, panel + kFrame, screen)) move(*place);
}

void MainWindow::fitInto(QSize room) {
    const int menuHeight = menuBar()->isNativeMenuBar() ? 0 : kMenuBarHeight;
    const QSize whole(kWidth, kMinimumHeight + menuHeight);
    const bool fits = whole == whole.boundedTo(room);
    if (!fits && !m_scroll) makeScrollable();
    setMinimumSize(fits ? whole : kSmallest.boundedTo(room));
}

void MainWindow::makeScrollable() {
    m_grid->setMinimumSize(kWidth, kMinimumHeight - kToolbarHeight);
    m_scroll = new QScrollArea(centralWidget());
    m_scroll->setFrameShape(QFrame::NoFrame);
    m_scroll->setFocusPolicy(Qt::NoFocus);
    m_scroll->setWidgetResizable(true);
    m_scroll->viewport()->setAutoFillBackground(false);
    centralWidget()->layout()->replaceWidget(m_grid, m_scroll);
    m_scroll->setWidget(m_grid);
    m_scroll->show();
    m_grid->show();
    for (QScrollBar* bar : {m_scroll->horizontalScrollBar(), m_scroll->verticalScrollBar()})
        connect(bar, &QScrollBar::valueChanged, m_ring, &FocusRing::place);
    connect(qApp, &QApplication::focusChanged, m_scroll, [this](QWidget*, QWidget* now) {
        if (!now || !m_grid->isAncestorOf(now)) return;
        // The play list may be as high as the screen, so only its first rows count.
        const bool isSeen = now == m_outlets.playList && now->visibleRegion().boundingRect().height() >= kEnoughOfList;
        if (!isSeen) m_scroll->ensureWidgetVisible(now, kScrollMargin, kScrollMargin);
    });
}

// Fits the window again when it comes to a smaller screen.
void MainWindow::fitScreen(QScreen* screen) {
    fitInto(screen->availableSize() - kFrame);
}

// Later, because the desktop tells the window's place after its state.
void MainWindow::changeEvent(QEvent* event) {
    FadingWindow::changeEvent(event);
    if (event->type() != QEvent::WindowStateChange) return;
    const auto changed = static_cast<QWindowStateChangeEvent*>(event)->oldState() ^ windowState();
    if (!(changed & (Qt::WindowMaximized | Qt::WindowFullScreen))) return;
    QTimer::singleShot(kPlaceSettles, this, [this] {
        for (ToolPanel* panel : findChildren<ToolPanel*>(Qt::FindDirectChildrenOnly)) panel->standAnew();
    });
}

QList<QRect> MainWindow::vitalParts() const {
    const auto onDesktop = [](const QWidget& part) { return QRect(part.mapToGlobal(QPoint(0, 0)), part.size()); };
    const QRect frame = frameGeometry();
    const QWidget& shown = m_scroll ? static_cast<const QWidget&>(*m_scroll) : *m_grid;
    QList<QRect> parts{QRect(frame.topLeft(), QPoint(frame.right(), onDesktop(shown).top() - 1))};
    for (const QWidget* part : std::initializer_list<const QWidget*>{
             m_grid->hero, m_grid->transport, m_grid->loop, m_grid->speed, m_grid->pitch, m_grid->tone, m_grid->bar})
        parts.append(onDesktop(*part));
    return parts;
}

// The rows that there are, or what stands there as long as there are none, and the foot of the list.
QList<QRect> MainWindow::usefulParts() const {
    const PlayListView& list = *m_outlets.playList;
    const int rows = list.verticalHeader()->length();
    const int filled = list.horizontalHeader()->height() + rows;
    const QSize size(list.width(), rows > 0 ? std::min(filled, list.height()) : list.height());
    const QRect whole(list.mapToGlobal(QPoint(0, 0)), list.size());
    const QPoint end = m_grid->playList->mapToGlobal(m_grid->playList->rect().bottomRight());
    return {QRect(whole.topLeft(), size), QRect(QPoint(whole.left(), whole.bottom() + 1), end)};
}

}  // namespace qm
