#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>
#include <functional>

#include "support/widgets/TestText.h"
#include "ui/dialogs/Alert.h"

using namespace qm;

namespace {

// Runs the alert and lets the user do something with its box as soon as it is on screen.
int runAlert(const std::function<void(QMessageBox&)>& user) {
    QTimer::singleShot(0, [&user] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        REQUIRE(box != nullptr);
        user(*box);
    });
    return runWarningAlert(nullptr, "It will be cleared.", {"Clear list", "Cancel"});
}

QPushButton* button(QMessageBox& box, const QString& title) {
    for (QPushButton* candidate : box.findChildren<QPushButton*>()) {
        if (candidate->text() == title) return candidate;
    }
    return nullptr;
}

}  // namespace

TEST_CASE("the alert is a warning with the message and its buttons, the first as default") {
    runAlert([](QMessageBox& box) {
        CHECK(box.icon() == QMessageBox::Warning);
        CHECK(box.text() == "It will be cleared.");
        CHECK(box.buttons().size() == 2);
        CHECK(box.defaultButton() == button(box, "Clear list"));
        box.reject();
    });
}

TEST_CASE("the first button answers 1000, the second 1001") {
    CHECK(runAlert([](QMessageBox& box) { button(box, "Clear list")->click(); }) == 1000);
    CHECK(runAlert([](QMessageBox& box) { button(box, "Cancel")->click(); }) == 1001);
}

TEST_CASE("escape and closing the alert are not the first button") {
    CHECK(runAlert([](QMessageBox& box) {
              QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
              QApplication::sendEvent(&box, &escape);
          }) == 1001);
    CHECK(runAlert([](QMessageBox& box) { box.close(); }) == 1001);
}

TEST_CASE("the alert has one width, and a long message is broken between words") {
    QTimer::singleShot(0, [] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        REQUIRE(box != nullptr);
        for (int i = 0; i < 3; ++i) QApplication::processEvents();
        CHECK(box->width() == 420);
        auto* message = box->findChild<QLabel*>("qt_msgbox_label");
        REQUIRE(message != nullptr);
        CHECK(message->wordWrap());
        CHECK(message->height() >= message->heightForWidth(message->width()));
        CHECK(message->heightForWidth(message->width()) > message->fontMetrics().height() * 3 / 2);
        box->close();
    });
    runWarningAlert(nullptr, "This file contains DRM protection, added by the producer of the audio/video.", {"Cancel"},
                    "It cannot be edited.");
}

TEST_CASE("more can be said below the message, and one button is enough") {
    QTimer::singleShot(0, [] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        REQUIRE(box != nullptr);
        CHECK(box->informativeText() == "It cannot be edited.");
        CHECK(box->buttons().size() == 1);
        CHECK_FALSE(button(*box, "Cancel")->property("destroys").toBool());
        box->close();
    });
    CHECK(runWarningAlert(nullptr, "It is protected.", {"Cancel"}, "It cannot be edited.") == 1000);
}

TEST_CASE("space answers nothing, return presses the default button") {
    CHECK(runAlert([](QMessageBox& box) {
              for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
                  QKeyEvent space(type, Qt::Key_Space, Qt::NoModifier);
                  QApplication::sendEvent(button(box, "Clear list"), &space);
              }
              CHECK(box.isVisible());
              button(box, "Cancel")->click();
          }) == 1001);
    CHECK(runAlert([](QMessageBox& box) {
              QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
              QApplication::sendEvent(&box, &enter);
          }) == 1000);
}

TEST_CASE("the button that destroys is marked, which is the first unless another one is said to") {
    const auto marked = [](int destroying) {
        QStringList titles;
        QTimer::singleShot(0, [&] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            REQUIRE(box != nullptr);
            for (QAbstractButton* candidate : box->buttons())
                if (candidate->property("destroys").toBool()) titles << candidate->text();
            box->reject();
        });
        const QStringList buttons{"Finish", "Quit now", "Cancel"};
        CHECK(runWarningAlert(nullptr, "Really?", buttons, {}, destroying) == 1002);
        return titles;
    };
    CHECK(marked(kAlertFirstButtonReturn) == QStringList{"Finish"});
    CHECK(marked(kAlertFirstButtonReturn + 1) == QStringList{"Quit now"});
}
