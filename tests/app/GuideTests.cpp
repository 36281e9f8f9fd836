#include "app/Guide.h"

#include <doctest/doctest.h>

#include <QtCore/qtestsupport_core.h>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QUrl>

#include "support/widgets/ToldNotices.h"

using namespace qm;

namespace {

// A scratch folder with a page, and with commands that stand for the desktop's.
struct GuideStage {
    QTemporaryDir folder;
    QString page = folder.filePath(QStringLiteral("the guide.html"));
    ToldNotices notices;

    GuideStage() { write(page, "<p>", false); }
    void write(const QString& path, const QByteArray& text, bool runs) const {
        QFile file(path);
        REQUIRE(file.open(QIODevice::WriteOnly));
        file.write(text);
        if (runs) file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    QString command(const QByteArray& script) const {
        const QString path = folder.filePath(QStringLiteral("opener"));
        write(path, "#!/bin/sh\n" + script + '\n', true);
        return path;
    }
};

}  // namespace

TEST_CASE("the guide is opened by the desktop's command, with its address") {
    GuideStage stage;
    const QString seen = stage.folder.filePath(QStringLiteral("seen"));
    Guide guide(stage.notices, stage.page, stage.command("printf %s \"$1\" >\"$(dirname \"$0\")/seen\""));
    guide.open();
    REQUIRE(QTest::qWaitFor([&] { return QFileInfo(seen).size() > 0; }));
    QFile file(seen);
    REQUIRE(file.open(QIODevice::ReadOnly));
    CHECK(file.readAll() == QUrl::fromLocalFile(stage.page).toEncoded());
    CHECK(stage.notices.texts == QStringList{QStringLiteral("The guide opens in another window")});
}

TEST_CASE("when nothing shows the guide the user is told where it is") {
    GuideStage stage;
    Guide guide(stage.notices, stage.page, stage.command("exit 3"));
    guide.open();
    REQUIRE(QTest::qWaitFor([&] { return stage.notices.texts.size() == 2; }));
    CHECK(stage.notices.texts.last() == QStringLiteral("Nothing here shows web pages; the guide is ") + stage.page);
}

TEST_CASE("a guide that is not installed is said to be so") {
    GuideStage stage;
    Guide guide(stage.notices, stage.folder.filePath(QStringLiteral("none.html")), stage.command("exit 0"));
    guide.open();
    CHECK(stage.notices.texts == QStringList{QStringLiteral("The guide is not installed")});
}
