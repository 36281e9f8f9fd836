// Every key of the program, for people to read: grouped as the menus are, in their order. Made from the action table.
// Main thread only.
#pragma once

#include <QKeySequence>
#include <QList>
#include <QString>
#include <QStringList>

namespace qm {

// The caps of one key combination as they stand on a keyboard: "Ctrl", "Shift", "Del".
QStringList capsOf(const QKeySequence& key);

struct KeyLine {
    QString words;            // "Skip Forward: 10 Seconds" for an item of a submenu
    QList<QStringList> keys;  // the caps of each; any of them does it
};

struct KeyGroup {
    QString title;
    QList<KeyLine> lines;
};

// Actions without a key are left out.
QList<KeyGroup> keyGroups();

}  // namespace qm
