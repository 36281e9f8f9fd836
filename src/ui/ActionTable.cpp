#include "ui/ActionTable.h"

#include <QAbstractButton>
#include <QAction>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QStyleOptionMenuItem>
#include <QThread>
#include <algorithm>

#include "engine/api/Log.h"
#include "ui/controls/Slider.h"

namespace qm {

namespace {

constexpr char kShownKey[] = "shownKey";

// Shows keys that the menu only mentions where the others stand. In the item's text, where the toolkit would look for
// them, assistive tools would read them as part of its name.
class KeyMenu : public QMenu {
public:
    using QMenu::QMenu;

protected:
    void initStyleOption(QStyleOptionMenuItem* option, const QAction* action) const override {
        QMenu::initStyleOption(option, action);
        const QString key = action->property(kShownKey).toString();
        if (!key.isEmpty()) option->text += u'\t' + key;
    }
};

void describe(QWidget* control, ActionId id) {
    const ActionRow& row = actionRow(id);
    control->setToolTip(ActionTable::tr(row.tooltip));
    control->setAccessibleName(ActionTable::tr(row.accessibleName));
}

}  // namespace

const ActionRow& actionRow(ActionId id) {
    const auto& rows = actionRows();
    const auto found = std::find_if(rows.begin(), rows.end(), [id](const ActionRow& row) { return row.id == id; });
    Q_ASSERT(found != rows.end());
    return *found;
}

ActionTable::ActionTable(QMainWindow* window) : QObject(window), m_window(window) {}

void ActionTable::buildMenus() {
    for (const ActionRow& row : actionRows()) {
        if (*row.menu == '\0') continue;
        QMenu* menu = menuFor(row);
        if (row.separatorBefore) menu->addSeparator();
        menu->addAction(makeAction(row));
    }
}

QMenu* ActionTable::menuFor(const ActionRow& row) {
    QMenu*& menu = m_menus[QString::fromUtf8(row.menu)];
    if (!menu) {
        menu = new KeyMenu(u'&' + tr(row.menu), m_window->menuBar());
        m_window->menuBar()->addMenu(menu);
    }
    if (*row.submenu == '\0') return menu;
    QMenu*& submenu = m_menus[QString::fromUtf8(row.menu) + u'/' + QString::fromUtf8(row.submenu)];
    if (!submenu) submenu = menu->addMenu(tr(row.submenu));
    return submenu;
}

QAction* ActionTable::makeAction(const ActionRow& row) {
    auto* action = new QAction(tr(row.text), this);
    action->setProperty(kShownKey, QString::fromUtf8(row.shownKey));
    action->setObjectName(actionName(row.id));
    action->setShortcuts(QList<QKeySequence>(row.keys.begin(), row.keys.end()));
    action->setShortcutContext(row.inListOnly ? Qt::WidgetShortcut : Qt::WindowShortcut);
    action->setAutoRepeat(row.repeats);
    connect(action, &QAction::triggered, this, [this, id = row.id] { send(id); });
    m_actions.emplace(row.id, action);
    return action;
}

// Its items only show the keys, which belong to the items of the menu bar.
QMenu* ActionTable::makeContextMenu(std::initializer_list<std::optional<ActionId>> ids, QWidget* parent) {
    auto* menu = new QMenu(parent);
    for (const std::optional<ActionId> id : ids) {
        if (!id) {
            menu->addSeparator();
            continue;
        }
        const ActionRow& row = actionRow(*id);
        QAction* item = menu->addAction(tr(row.text));
        item->setObjectName(actionName(row.id));
        item->setShortcut(row.keys.empty() ? QKeySequence(QString::fromLatin1(row.shownKey)) : row.keys[0]);
        item->setShortcutContext(Qt::WidgetShortcut);
        connect(item, &QAction::triggered, this, [this, id] { send(*id); });
    }
    return menu;
}

QAction* ActionTable::action(ActionId id) const {
    const auto found = m_actions.find(id);
    return found == m_actions.end() ? nullptr : found->second;
}

void ActionTable::giveKeysToList(QWidget* list) {
    for (const ActionRow& row : actionRows())
        if (row.inListOnly) list->addAction(action(row.id));
}

void ActionTable::bind(QAbstractButton* button, ActionId id) {
    describe(button, id);
    connect(button, &QAbstractButton::clicked, this, [this, id] { send(id); });
}

void ActionTable::bind(Slider* slider, ActionId id) {
    describe(slider, id);
    connect(slider, &Slider::action, this, [this, id](double value) { perform(m_sliderActs, id, value); });
}

void ActionTable::send(ActionId id) {
    perform(m_acts, id);
}

template <typename Act, typename... Value>
void ActionTable::perform(const Acts<Act>& acts, ActionId id, Value... value) {
    Q_ASSERT(QThread::currentThread() == thread());
    const auto preparations = m_preparations.find(id);
    if (preparations != m_preparations.end())
        for (const auto& prepare : preparations->second)
            if (!prepare()) return;
    const auto act = acts.find(id);
    if (act == acts.end()) {
        qmLog("nobody does the action " + actionName(id).toStdString());
        return;
    }
    act->second(value...);
    emit sent(id);
}

}  // namespace qm
