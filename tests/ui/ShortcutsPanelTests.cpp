#include "ui/windows/ShortcutsPanel.h"

#include <doctest/doctest.h>

#include <QKeyEvent>
#include <QSet>

#include "support/widgets/TestText.h"
#include "ui/ActionTable.h"
#include "ui/KeyList.h"
#include "ui/controls/Card.h"

using namespace qm;

namespace {

QStringList spokenRows(const QWidget& panel) {
    QStringList rows;
    for (const TextLabel* label : panel.findChildren<TextLabel*>())
        if (!label->accessibleName().isEmpty()) rows << label->accessibleName();
    return rows;
}

}  // namespace

TEST_CASE("the shortcuts panel shows every action that has a key, and no other") {
    QWidget main;
    const ShortcutsPanel panel(&main);
    int withKey = 0;
    for (const ActionRow& row : actionRows())
        if (*row.menu != '\0' && (!row.keys.empty() || *row.shownKey != '\0')) ++withKey;
    CHECK(spokenRows(panel).size() == withKey);
    CHECK(spokenRows(panel).contains("Play or Pause, Space"));
    CHECK(spokenRows(panel).contains("Faster, = or +"));
    CHECK(spokenRows(panel).contains("Slower, −"));
    CHECK(spokenRows(panel).contains("Skip Forward: 5 Minutes, Ctrl Shift Right"));
    CHECK(spokenRows(panel).contains("Play Selected Track, Return"));
    CHECK(spokenRows(panel).contains("Clear List, Ctrl Shift Del"));
}

TEST_CASE("its groups are the menus, in their order") {
    QWidget main;
    const ShortcutsPanel panel(&main);
    QStringList menus, headings;
    for (const ActionRow& row : actionRows()) {
        const QString menu = QString::fromUtf8(row.menu);
        if (!menu.isEmpty() && (menus.isEmpty() || menus.last() != menu)) menus << menu;
    }
    const QSet<QString> names(menus.begin(), menus.end());
    for (const TextLabel* label : panel.findChildren<TextLabel*>())
        if (names.contains(label->text()) && label->accessibleName().isEmpty()) headings << label->text();
    CHECK(headings == menus);
}

TEST_CASE("a key is shown as its caps") {
    CHECK(capsOf(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Delete)) == QStringList{"Ctrl", "Shift", "Del"});
    CHECK(capsOf(QKeySequence(Qt::Key_Plus)) == QStringList{"+"});
    CHECK(capsOf(QKeySequence(Qt::Key_Minus)) == QStringList{"−"});
    CHECK(capsOf(QKeySequence()).isEmpty());
}
