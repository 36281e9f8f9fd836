#include "ui/PreferencePanes.h"

#include <QEventLoop>
#include <QVariantAnimation>

#include "ui/ActionTable.h"
#include "ui/controls/FlippedRect.h"
#include "ui/controls/Motion.h"

namespace qm {

namespace {

constexpr int kTitleBar = 28, kAboveThePane = 78;  // title bar and toolbar
constexpr int kResizeMilliseconds = 180;
const QRect kCountedFromHere(0, 0, 0, 0);  // any line will do: only differences matter

const QString kGeneral = QStringLiteral("GeneralItem");
const QString kUpdate = QStringLiteral("UpdateItem");
const QString kVolume = QStringLiteral("VolumeItem");

// The toolkit gives the window's inside; the desktop's title bar counts with a height of our own choice.
QRect frameOf(const QWidget& window) {
    return flippedRect(window.geometry().adjusted(0, -kTitleBar, 0, 0), kCountedFromHere);
}

QRect insideOf(const QRect& frame) {
    return flippedRect(frame, kCountedFromHere).adjusted(0, kTitleBar, 0, 0);
}

// The top left corner of a window stays where it is when its size changes, so only the size has to be set.
void setFrame(QWidget& window, const QRect& frame, bool animate) {
    const QSize size = insideOf(frame).size();
    if (animate && window.isVisible() && size != window.size() && motionIsWanted(window)) {
        QVariantAnimation resize;
        resize.setDuration(kResizeMilliseconds);
        resize.setEasingCurve(QEasingCurve::InOutQuad);
        resize.setStartValue(window.size());
        resize.setEndValue(size);
        QEventLoop wait;
        QObject::connect(&resize, &QVariantAnimation::valueChanged, &window,
                         [&window](const QVariant& now) { window.setFixedSize(now.toSize()); });
        QObject::connect(&resize, &QVariantAnimation::finished, &wait, &QEventLoop::quit);
        resize.start();
        wait.exec(QEventLoop::ExcludeUserInputEvents);
    }
    window.setFixedSize(size);
}

QWidget* firstSubview(const QWidget& view) {
    for (QObject* child : view.children())
        if (child->isWidgetType()) return static_cast<QWidget*>(child);
    return nullptr;
}

}  // namespace

QRect frameForPane(const QRect& frame, QSize pane) {
    const int height = pane.height() + kAboveThePane;
    return {frame.x(), frame.y() + frame.height() - height, pane.width(), height};
}

PreferencePanes::PreferencePanes(Uses<const PreferencePaneOutlets, const PreferencesWindowOutlet> outlets,
                                 ImageProvider images)
    : m_outlets(outlets), m_prefsWindow(outlets), m_images(std::move(images)) {}

std::unique_ptr<ToolbarItem> PreferencePanes::makeItem(const char* identifier, const char* imageName,
                                                       const char* label) const {
    return std::make_unique<ToolbarItem>(ToolbarItem{QString::fromLatin1(identifier), QString::fromLatin1(label),
                                                     m_images(QString::fromLatin1(imageName))});
}

void PreferencePanes::buildToolbar() {
    generalToolbarItem = makeItem("GeneralItem", "preficon_general.png", "General");
    updateToolbarItem = makeItem("UpdateItem", "preficon_SWUpdate.png", "Software Update");
    audioDefaultToolbarItem = makeItem("VolumeItem", "default.tiff", "Volume");
    PaneToolbar* toolbar = m_outlets.prefsToolbar;
    if (!toolbar) return;
    toolbar->setIdentifier(QStringLiteral("prefs toolbar"));
    toolbar->setDelegate(this);
    toolbar->addDefaultItems();
    setActivePrefView(m_outlets.generalPrefView, false);
    toolbar->setSelectedItemIdentifier(kGeneral);
    if (m_prefsWindow.prefsWindow) m_prefsWindow.prefsWindow->setProperty("showsToolbarButton", false);
}

void PreferencePanes::toggleGeneralPreferenceView() {
    setActivePrefView(m_outlets.generalPrefView, true);
}

void PreferencePanes::toggleUpdatePreferenceView() {
    setActivePrefView(m_outlets.updatePrefView, true);
}

void PreferencePanes::toggleAudioDefaultPreferenceView() {
    setActivePrefView(m_outlets.audioDefaultPrefView, true);
}

void PreferencePanes::setActivePrefView(QWidget* view, bool animate) {
    QWidget* window = m_prefsWindow.prefsWindow;
    QWidget* container = m_outlets.activePrefContentView;
    if (!view || !window || !container) return;
    const QRect frame = frameForPane(frameOf(*window), view->size());
    if (QWidget* shownSoFar = firstSubview(*container)) shownSoFar->setParent(window);  // which hides it
    setFrame(*window, frame, animate);
    container->setGeometry(view->geometry());
    view->setParent(container);
    view->show();
}

std::optional<QStringList> PreferencePanes::identifiersFor(const PaneToolbar* toolbar) const {
    if (!toolbar || toolbar != m_outlets.prefsToolbar) return std::nullopt;
    return QStringList{kGeneral, kUpdate, kVolume};
}

std::optional<QStringList> PreferencePanes::toolbarDefaultItemIdentifiers(const PaneToolbar* toolbar) const {
    return identifiersFor(toolbar);
}

std::optional<QStringList> PreferencePanes::toolbarAllowedItemIdentifiers(const PaneToolbar* toolbar) const {
    return identifiersFor(toolbar);
}

std::optional<QStringList> PreferencePanes::toolbarSelectableItemIdentifiers(const PaneToolbar* toolbar) const {
    return identifiersFor(toolbar);
}

ToolbarItem* PreferencePanes::toolbarItemForItemIdentifier(const PaneToolbar* toolbar, const QString& identifier,
                                                           bool /*willBeInserted*/) const {
    if (!toolbar || toolbar != m_outlets.prefsToolbar) return nullptr;
    for (ToolbarItem* item : {generalToolbarItem.get(), updateToolbarItem.get(), audioDefaultToolbarItem.get()})
        if (item && item->identifier == identifier) return item;
    return nullptr;
}

void PreferencePanes::toolbarWillAddItem(ToolbarItem& item) const {
    std::optional<ActionId> id;
    if (item.identifier == kGeneral) id = ActionId::toggleGeneralPreferenceView;
    if (item.identifier == kUpdate) id = ActionId::toggleUpdatePreferenceView;
    if (item.identifier == kVolume) id = ActionId::toggleAudioDefaultPreferenceView;
    if (!id) return;
    item.toolTip = QString::fromUtf8(actionRow(*id).tooltip);
    item.action = actionName(*id);
}

}  // namespace qm
