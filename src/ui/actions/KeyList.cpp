#include "ui/actions/KeyList.h"

#include <QCoreApplication>
#include <algorithm>

#include "ui/actions/ActionTable.h"

namespace qm {

namespace {

QString wordsOf(const ActionRow& row) {
    QString text = QString::fromUtf8(row.text);
    if (text.endsWith(u'…')) text.chop(1);
    return *row.submenu == '\0' ? text : QString::fromUtf8(row.submenu) + QStringLiteral(": ") + text;
}

QList<QStringList> keysOf(const ActionRow& row) {
    if (row.keys.empty() && *row.shownKey != '\0') return {capsOf(QKeySequence(QString::fromLatin1(row.shownKey)))};
    QList<QStringList> keys;
    for (const QKeySequence& key : row.keys) keys << capsOf(key);
    return keys;
}

}  // namespace

QStringList capsOf(const QKeySequence& key) {
    if (key.isEmpty()) return {};
    const QKeyCombination combination = key[0];
    QStringList caps;
    for (const auto& [modifier, name] : {std::pair{Qt::ControlModifier, "Ctrl"}, std::pair{Qt::AltModifier, "Alt"},
                                         std::pair{Qt::ShiftModifier, "Shift"}})
        if (combination.keyboardModifiers() & modifier) caps << QCoreApplication::translate("qm::KeyList", name);
    if (combination.key() == Qt::Key_Minus) return caps << QStringLiteral("−");
    return caps << QKeySequence(combination.key()).toString(QKeySequence::NativeText);
}

QList<KeyGroup> keyGroups() {
    QList<KeyGroup> groups;
    for (const ActionRow& row : actionRows()) {
        const KeyLine line{wordsOf(row), keysOf(row)};
        if (*row.menu == '\0' || line.keys.isEmpty()) continue;
        const QString title = QString::fromUtf8(row.menu);
        auto group = std::find_if(groups.begin(), groups.end(), [&](const KeyGroup& g) { return g.title == title; });
        if (group == groups.end()) group = groups.insert(group, {title, {}});
        group->lines.append(line);
    }
    return groups;
}

}  // namespace qm
