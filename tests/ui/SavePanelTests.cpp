#include "ui/SavePanel.h"

#include <doctest/doctest.h>

#include <QApplication>
#include <QFile>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>

#include "support/widgets/TestText.h"

using namespace qm;

namespace {

struct Folder {
    QTemporaryDir dir;
    QString path = dir.path();

    QString make(const QString& name) const {
        const QString file = path + u'/' + name;
        QFile made(file);
        REQUIRE(made.open(QIODevice::WriteOnly));
        return file;
    }
};

// Presses Save; a question that comes up is answered with no. How many questions came.
int save(SavePanel& panel) {
    int questions = 0;
    QTimer answer;
    QObject::connect(&answer, &QTimer::timeout, &answer, [&] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (!box) return;
        ++questions;
        box->button(QMessageBox::No)->click();
    });
    answer.start(1);
    panel.show();
    panel.accept();
    return questions;
}

}  // namespace

TEST_CASE_FIXTURE(Folder, "the panel opens in its folder with the name filled in") {
    SavePanel panel(nullptr, path, QStringLiteral("Quillmere.mov"));
    CHECK(panel.directory().path() == path);
    CHECK(panel.selectedFiles() == QStringList{path + "/Quillmere.mov"});
    CHECK(save(panel) == 0);
    CHECK(panel.result() == QDialog::Accepted);
}

TEST_CASE_FIXTURE(Folder, "a folder that is not there gives way to the home folder") {
    SavePanel panel(nullptr, path + QStringLiteral("/Music"), QStringLiteral("Quillmere.mov"));
    CHECK(panel.directory().path() == QDir::homePath());
}

TEST_CASE_FIXTURE(Folder, "a name that is taken is asked about, unless it is the panel's own file") {
    const QString taken = make(QStringLiteral("take.mov"));
    SavePanel panel(nullptr, path, QStringLiteral("take.mov"));
    CHECK(save(panel) == 1);
    CHECK(panel.result() == QDialog::Rejected);
    panel.setOwnFile(taken);
    CHECK(save(panel) == 0);
    CHECK(panel.result() == QDialog::Accepted);
}

TEST_CASE_FIXTURE(Folder, "a name without an extension is kept as it was typed") {
    SavePanel panel(nullptr, path, QStringLiteral("take"));
    save(panel);
    CHECK(panel.selectedFiles() == QStringList{path + "/take"});
}
