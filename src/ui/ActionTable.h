// The one table of what the user can do: each action's menu, words and keys, its tool and what its controls say. Menus,
// keys, tooltips and accessible names all come from here; a new action is a new row. Who does an action is told to the
// table once, so that windows know no controller. Main thread only; an action that nobody does leaves a log line.
#pragma once

#include <QKeySequence>
#include <QObject>
#include <QString>
#include <functional>
#include <initializer_list>
#include <map>
#include <optional>
#include <type_traits>
#include <utility>
#include <vector>

#include "ui/ActionId.h"

class QAbstractButton;
class QAction;
class QMainWindow;
class QMenu;
class QWidget;

namespace qm {

class Slider;

struct ActionRow {
    ActionId id;
    const char* menu;                // "" for those that are only controls
    const char* submenu;             // "" for items of the menu itself
    const char* text;                // in the menu
    std::vector<QKeySequence> keys;  // the first is shown in the menu
    bool repeats;                    // while the key is held down
    const char* tooltip;             // "" for none
    const char* accessibleName;      // of the control that sends it
    const char* shownKey = "";       // a key that the menu only mentions, because a control owns it
    bool separatorBefore = false;
    bool inListOnly = false;  // its keys count while the play list has the keyboard
};

const std::vector<ActionRow>& actionRows();  // one for each id, in the order of the menus
const ActionRow& actionRow(ActionId id);

class ActionTable : public QObject {
    Q_OBJECT

public:
    explicit ActionTable(QMainWindow* window);

    // Who does the action; once for each. A slider's action takes the slider's value. The receiver has to live as long
    // as the table is used.
    template <typename Receiver>
    void setReceiver(ActionId id, Receiver& receiver, void (Receiver::*act)()) {
        add(m_acts, id, [&receiver, act] { (receiver.*act)(); });
    }
    template <typename Receiver>
    void setReceiver(ActionId id, Receiver& receiver, void (Receiver::*act)(double value)) {
        add(m_sliderActs, id, [&receiver, act](double value) { (receiver.*act)(value); });
    }
    bool hasReceiver(ActionId id) const { return m_acts.contains(id) || m_sliderActs.contains(id); }

    // What a key or a control of this action does before it sends it, after what was said before; false sends nothing.
    void setPreparation(ActionId id, std::function<bool()> prepare) {
        m_preparations[id].push_back(std::move(prepare));
    }

    void buildMenus();
    void giveKeysToList(QWidget* list);               // those of the rows whose keys are the play list's
    void bind(QAbstractButton* button, ActionId id);  // sends it when clicked
    void bind(Slider* slider, ActionId id);           // sends it with the value whenever the user moves the slider
    void send(ActionId id);                           // one without a value

    // A menu of these actions with their words and keys, for a place of the window; none is a separator.
    QMenu* makeContextMenu(std::initializer_list<std::optional<ActionId>> ids, QWidget* parent);

    QAction* action(ActionId id) const;  // of the menu; null if there is none

signals:
    void sent(qm::ActionId id);  // after the action has been done

private:
    template <typename Act>
    using Acts = std::map<ActionId, std::function<Act>>;

    template <typename Act>
    static void add(Acts<Act>& acts, ActionId id, std::type_identity_t<std::function<Act>> act) {
        [[maybe_unused]] const bool isFirst = acts.emplace(id, std::move(act)).second;
        Q_ASSERT(isFirst);
    }
    template <typename Act, typename... Value>
    void perform(const Acts<Act>& acts, ActionId id, Value... value);

    QMenu* menuFor(const ActionRow& row);
    QAction* makeAction(const ActionRow& row);

    QMainWindow* m_window;
    Acts<void()> m_acts;
    Acts<void(double)> m_sliderActs;
    std::map<ActionId, std::vector<std::function<bool()>>> m_preparations;
    std::map<ActionId, QAction*> m_actions;
    std::map<QString, QMenu*> m_menus;
};

}  // namespace qm
