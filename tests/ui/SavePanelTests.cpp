#include "ui/dialogs/SavePanel.h"

#include <doctest/doctest.h>

#include <QApplication>
#include <QDialogButtonBox>
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

TEST_CASE_FIXTURE(Folder, "after a recording the panel asks whether to keep it, and Discard is marked") {
    QStringList said;
    bool destroys = false;
    QTimer::singleShot(0, [&] {
        auto* panel = qobject_cast<SavePanel*>(QApplication::activeModalWidget());
        REQUIRE(panel);
        auto* box = panel->findChild<QDialogButtonBox*>();
        auto* discard = box->button(QDialogButtonBox::Cancel);
        said = {panel->windowTitle(), box->button(QDialogButtonBox::Save)->text().remove(u'&'),
                discard->text().remove(u'&')};
        destroys = discard->property("destroys").toBool();
        panel->reject();
    });
    CHECK_FALSE(runKeepPanel(nullptr, path, QStringLiteral("Quillmere.mov")));
    CHECK(said == QStringList{"Keep the recording?", "Keep", "Discard"});
    CHECK(destroys);
}

TEST_CASE_FIXTURE(Folder, "a recording that is only offered can be left for later") {
    QString said;
    QTimer::singleShot(0, [&] {
        auto* panel = qobject_cast<SavePanel*>(QApplication::activeModalWidget());
        REQUIRE(panel);
        auto* later = panel->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Cancel);
        said = later->text().remove(u'&');
        CHECK_FALSE(later->property("destroys").toBool());
        panel->accept();
    });
    CHECK(runKeepPanel(nullptr, path, QStringLiteral("take.mov"), {}, AtDiscard::KeepsIt) == path + "/take.mov");
    CHECK(said == "Not Now");
}
