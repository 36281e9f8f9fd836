#include <doctest/doctest.h>

#include "support/widgets/Gestures.h"
#include "support/widgets/TestText.h"
#include "ui/controls/ChipButton.h"
#include "ui/controls/ImageButton.h"
#include "ui/controls/TimeLabel.h"
#include "ui/controls/TitleButton.h"

using namespace qm;

namespace {

int clicksOf(QAbstractButton& button, const std::function<void()>& gesture) {
    int clicks = 0;
    const auto connection = QObject::connect(&button, &QAbstractButton::clicked, &button, [&] { ++clicks; });
    gesture();
    QObject::disconnect(connection);
    return clicks;
}

}  // namespace

TEST_CASE("an image button keeps the name of its image as a property and has the image's size") {
    ImageButton button(QStringLiteral("db_Play_F_off.png"));
    CHECK(button.property("imageName").toString() == "db_Play_F_off.png");
    CHECK(button.sizeHint() == QSize(80, 80));
    button.setImageName(QStringLiteral("db_loop_on.png"));
    CHECK(button.imageName() == "db_loop_on.png");
    CHECK(button.sizeHint() == QSize(88, 72));
    CHECK_FALSE(button.isCheckable());
}

TEST_CASE("an image button is pressed on its face, not in the margin of its glow") {
    ImageButton button(QStringLiteral("db_Play_F_off.png"));
    button.resize(button.sizeHint());
    CHECK(clicksOf(button, [&] { clickMouse(button, {40, 40}); }) == 1);
    CHECK(clicksOf(button, [&] { clickMouse(button, {3, 3}); }) == 0);
    CHECK(clicksOf(button, [&] { clickMouse(button, {12, 12}); }) == 0);
}

TEST_CASE("return presses a focused button and space never does") {
    ImageButton face(QStringLiteral("db_Pause_off.png"));
    ChipButton chip(QStringLiteral("0.75"));
    TitleButton value(QStringLiteral("1.0"));
    for (QAbstractButton* button : {static_cast<QAbstractButton*>(&face), static_cast<QAbstractButton*>(&chip),
                                    static_cast<QAbstractButton*>(&value)}) {
        CHECK(clicksOf(*button, [&] { CHECK(pressKey(*button, Qt::Key_Return)); }) == 1);
        CHECK(clicksOf(*button, [&] { CHECK_FALSE(pressKey(*button, Qt::Key_Space)); }) == 0);
        CHECK(button->focusPolicy() == Qt::TabFocus);
    }
}

TEST_CASE("a plain title drops the style of an earlier attributed one") {
    TitleButton button;
    const TextAttributes attributes{QFont(QStringLiteral("Inter"), 13), QColor(Qt::white)};
    button.setAttributedTitle(QStringLiteral("0.750000.2"), attributes);
    CHECK(button.title() == "0.750000.2");
    REQUIRE(button.titleAttributes());
    CHECK(*button.titleAttributes() == attributes);
    button.setPlainTitle(QStringLiteral("0"));
    CHECK(button.title() == "0");
    CHECK_FALSE(button.titleAttributes());
}

TEST_CASE("plain and attributed titles look alike") {
    TitleButton button;
    button.resize(button.sizeHint());
    button.setPlainTitle(QStringLiteral("128"));
    const QImage plain = button.grab().toImage();
    button.setAttributedTitle(QStringLiteral("128"), {QFont(QStringLiteral("Inter"), 13), QColor(Qt::white)});
    CHECK(button.grab().toImage() == plain);
}

TEST_CASE("a dimmed button is fainter and still works") {
    for (const bool lit : {false, true}) {
        ChipButton chip(QStringLiteral("+10"));
        chip.resize(34, 28);
        chip.setLit(lit);
        const QImage plain = chip.grab().toImage();
        chip.setDimmed(true);
        CHECK(chip.grab().toImage() != plain);
        CHECK(chip.isEnabled());
        CHECK(clicksOf(chip, [&] { clickMouse(chip, {17, 14}); }) == 1);
    }
}

TEST_CASE("a time keeps its width whatever its digits") {
    TimeLabel label(QStringLiteral("0:00:00.00"));
    const int width = label.sizeHint().width();
    for (const char* text : {"0:11:11.11", "0:08:48.88", "9:59:59.99"}) {
        label.setText(QString::fromLatin1(text));
        CHECK(label.sizeHint().width() == width);
    }
}
