#include "ui/windows/ShortcutsPanel.h"

#include <doctest/doctest.h>

#include <QCoreApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QSet>

#include "support/widgets/TestText.h"
#include "ui/actions/ActionTable.h"
#include "ui/actions/KeyList.h"
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

TEST_CASE("the search line leaves the keys that are looked for, by what they do, their menu or their caps") {
    QWidget main;
    ShortcutsPanel panel(&main);
    panel.show();
    const auto shown = [&] {
        QStringList rows;
        for (const TextLabel* label : panel.findChildren<TextLabel*>())
            if (!label->accessibleName().isEmpty() && label->isVisible()) rows << label->accessibleName();
        return rows;
    };
    const qsizetype all = shown().size();
    auto* field = panel.findChild<QLineEdit*>();
    REQUIRE(field);
    CHECK(panel.focusWidget() == field);
    const auto placeOf = [&](const char* row) {
        for (const TextLabel* label : panel.findChildren<TextLabel*>())
            if (label->accessibleName() == row) return label->mapTo(&panel, QPoint(0, 0)).x();
        return -1;
    };
    const int before = placeOf("Loop A–B, L");
    field->setText("loop a–b");
    QCoreApplication::processEvents();
    CHECK(placeOf("Loop A–B, L") == before);
    field->setText("PITCH orig");
    CHECK(shown() == QStringList{"Original Pitch, N"});
    field->setText("ctrl+shift+del");
    CHECK(shown() == QStringList{"Clear List, Ctrl Shift Del"});
    field->setText("loop mark");
    CHECK(shown().size() == 3);
    field->setText("no such thing");
    CHECK(shown().isEmpty());
    QStringList texts;
    for (const TextLabel* label : panel.findChildren<TextLabel*>())
        if (label->isVisible() && !label->text().isEmpty()) texts << label->text();
    CHECK(texts == QStringList{"No key for that; some actions are in the menus only"});
    panel.hide();
    panel.show();
    CHECK(field->text().isEmpty());
    CHECK(shown().size() == all);
}

TEST_CASE("a key is shown as its caps") {
    CHECK(capsOf(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Delete)) == QStringList{"Ctrl", "Shift", "Del"});
    CHECK(capsOf(QKeySequence(Qt::Key_Plus)) == QStringList{"+"});
    CHECK(capsOf(QKeySequence(Qt::Key_Minus)) == QStringList{"−"});
    CHECK(capsOf(QKeySequence()).isEmpty());
}
