// The one table of what the user can do: the action's name on the controller, its menu, words and keys, its tool and
// what its controls say. Menus, keys, tooltips and accessible names all come from here; a new action is a new row.
// Actions are sent by name, so that windows know no controller. Main thread only; an unknown name leaves a log line.
#pragma once

#include <QHash>
#include <QKeySequence>
#include <QObject>
#include <QString>
#include <functional>
#include <map>
#include <utility>
#include <vector>

class QAbstractButton;
class QAction;
class QMainWindow;
class QMenu;
class QWidget;

namespace qm {

class Slider;

struct ActionRow {
    enum Owner { Controller, Window, Recorder, Keys, List };

    const char* slot;                // the action's name
    const char* menu;                // "" for those that are only controls
    const char* submenu;             // "" for items of the menu itself
    const char* text;                // in the menu
    std::vector<QKeySequence> keys;  // the first is shown in the menu
    bool repeats;                    // while the key is held down
    const char* tooltip;             // "" for none
    const char* accessibleName;      // of the control that sends it
    Owner owner = Controller;
    const char* shownKey = "";  // a key that the menu only mentions, because a control owns it
    bool separatorBefore = false;
    bool inListOnly = false;  // its keys count while the play list has the keyboard
};

const std::vector<ActionRow>& actionRows();
const ActionRow* actionRow(const QString& slot);  // null if there is none

class ActionTable : public QObject {
    Q_OBJECT

public:
    // Rows of the window's own actions are sent to `window`, those of the controller to `controller`.
    ActionTable(QMainWindow* window, QObject* controller);

    // Who gets the rows of another owner.
    void setReceiver(ActionRow::Owner owner, QObject* receiver) { m_receivers[owner] = receiver; }

    // What a key or a control of this action does before it sends it, after what was said before; false sends nothing.
    void setPreparation(const QString& slot, std::function<bool()> prepare) {
        m_preparations[slot].push_back(std::move(prepare));
    }

    void buildMenus();
    void giveKeysToList(QWidget* list);                       // those of the rows whose keys are the play list's
    void bind(QAbstractButton* button, const QString& slot);  // sends it when clicked
    void bind(Slider* slider, const QString& slot);           // sends it whenever the user moves the slider
    void send(const QString& slot);

    // A menu of these actions with their words and keys, for a place of the window; an empty name is a separator.
    QMenu* makeContextMenu(const QStringList& names, QWidget* parent);

    QAction* action(const QString& slot) const { return m_actions.value(slot); }  // of the menu; null if there is none

signals:
    void sent(const QString& slot);  // after the action has been done

private:
    QMenu* menuFor(const ActionRow& row);
    QAction* makeAction(const ActionRow& row);
    void describe(QWidget* control, const QString& slot) const;

    QMainWindow* m_window;
    std::map<ActionRow::Owner, QObject*> m_receivers;
    QHash<QString, std::vector<std::function<bool()>>> m_preparations;
    QHash<QString, QAction*> m_actions;
    QHash<QString, QMenu*> m_menus;
};

}  // namespace qm
