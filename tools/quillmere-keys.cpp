// quillmere-keys: the guide's page of every key, made from the action table, on standard output.
#include <QGuiApplication>
#include <cstdio>

#include "ui/actions/KeyList.h"

namespace {

QString cellOf(const QList<QStringList>& keys) {
    QStringList texts;
    for (const QStringList& caps : keys) texts << u'`' + caps.join(u'+') + u'`';
    return texts.join(QStringLiteral(" or "));
}

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    QString page = QStringLiteral(
        "# Every key\n\n"
        "Single keys work in the main window, and in the windows of meters, video and track information. On a Mac, "
        "Ctrl is\n"
        "Command. What has no key is in the menus.\n");
    for (const qm::KeyGroup& group : qm::keyGroups()) {
        page += QStringLiteral("\n## %1\n\n| | Key |\n|---|---|\n").arg(group.title);
        for (const qm::KeyLine& line : group.lines)
            page += QStringLiteral("| %1 | %2 |\n").arg(line.words, cellOf(line.keys));
    }
    std::fputs(page.toUtf8().constData(), stdout);
}
