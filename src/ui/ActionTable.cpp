#include "ui/ActionTable.h"

#include <QAbstractButton>
#include <QAction>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QMetaMethod>
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

}  // namespace

const ActionRow* actionRow(const QString& slot) {
    const auto& rows = actionRows();
    const auto found =
        std::find_if(rows.begin(), rows.end(), [&](const ActionRow& row) { return slot == QLatin1String(row.slot); });
    return found == rows.end() ? nullptr : &*found;
}

ActionTable::ActionTable(QMainWindow* window, QObject* controller)
    : QObject(window),
      m_window(window),
      m_receivers{{ActionRow::Window, window}, {ActionRow::Controller, controller}} {}

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
    action->setObjectName(QString::fromLatin1(row.slot));
    action->setShortcuts(QList<QKeySequence>(row.keys.begin(), row.keys.end()));
    action->setShortcutContext(row.inListOnly ? Qt::WidgetShortcut : Qt::WindowShortcut);
    action->setAutoRepeat(row.repeats);
    const QString slot = QString::fromLatin1(row.slot);
    connect(action, &QAction::triggered, this, [this, slot] { send(slot); });
    m_actions.insert(slot, action);
    return action;
}

// Its items only show the keys, which belong to the items of the menu bar.
QMenu* ActionTable::makeContextMenu(const QStringList& names, QWidget* parent) {
    auto* menu = new QMenu(parent);
    for (const QString& slot : names) {
        const ActionRow* row = actionRow(slot);
        if (!row) {
            menu->addSeparator();
            continue;
        }
        QAction* item = menu->addAction(tr(row->text));
        item->setObjectName(slot);
        item->setShortcut(row->keys.empty() ? QKeySequence(QString::fromLatin1(row->shownKey)) : row->keys[0]);
        item->setShortcutContext(Qt::WidgetShortcut);
        connect(item, &QAction::triggered, this, [this, slot] { send(slot); });
    }
    return menu;
}

void ActionTable::giveKeysToList(QWidget* list) {
    for (const ActionRow& row : actionRows())
        if (row.inListOnly) list->addAction(action(QString::fromLatin1(row.slot)));
}

void ActionTable::describe(QWidget* control, const QString& slot) const {
    const ActionRow* row = actionRow(slot);
    if (!row) return;
    control->setToolTip(tr(row->tooltip));
    control->setAccessibleName(tr(row->accessibleName));
}

void ActionTable::bind(QAbstractButton* button, const QString& slot) {
    describe(button, slot);
    connect(button, &QAbstractButton::clicked, this, [this, slot] { send(slot); });
}

void ActionTable::bind(Slider* slider, const QString& slot) {
    describe(slider, slot);
    connect(slider, &Slider::action, this, [this, slot] { send(slot); });
}

void ActionTable::send(const QString& slot) {
    Q_ASSERT(QThread::currentThread() == thread());
    for (const auto& prepare : m_preparations.value(slot))
        if (!prepare()) return;
    const ActionRow* row = actionRow(slot);
    const auto receiver = row ? m_receivers.find(row->owner) : m_receivers.end();
    QObject* target = receiver == m_receivers.end() ? nullptr : receiver->second;
    const int method = row && target ? target->metaObject()->indexOfSlot(QByteArray(row->slot).append("()")) : -1;
    if (method < 0 || !target->metaObject()->method(method).invoke(target, Qt::DirectConnection)) {
        qmLog("no action named " + slot.toStdString());
        return;
    }
    emit sent(slot);
}

}  // namespace qm
