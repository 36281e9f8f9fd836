#include <doctest/doctest.h>

#include <QDialogButtonBox>
#include <QFileDialog>
#include <QImage>
#include <QMenu>
#include <QMenuBar>
#include <QPainter>
#include <QPushButton>
#include <QScrollBar>
#include <QStyle>
#include <QStyleOptionSlider>
#include <cmath>

#include "ui/controls/ChipButton.h"
#include "ui/controls/Fonts.h"
#include "ui/controls/Motion.h"
#include "ui/dialogs/Style.h"

using namespace qm;

namespace {

class ScrollBar : public QScrollBar {
public:
    explicit ScrollBar(Qt::Orientation orientation) : QScrollBar(orientation), m_style(makeStyle()) {
        setStyle(m_style.get());
        const QSize size(200, style()->pixelMetric(QStyle::PM_ScrollBarExtent));
        resize(orientation == Qt::Vertical ? size.transposed() : size);
    }
    ~ScrollBar() override { setStyle(nullptr); }

    QRect part(QStyle::SubControl which) const {
        QStyleOptionSlider option;
        initStyleOption(&option);
        return style()->subControlRect(QStyle::CC_ScrollBar, &option, which, this);
    }

private:
    std::unique_ptr<QStyle> m_style;
};

}  // namespace

TEST_CASE("A scroll bar is a handle without arrows, two pixels from the edges") {
    ScrollBar bar(Qt::Vertical);
    bar.setRange(0, 300);
    bar.setPageStep(100);
    CHECK(bar.part(QStyle::SC_ScrollBarAddLine).isEmpty());
    CHECK(bar.part(QStyle::SC_ScrollBarSubLine).isEmpty());
    CHECK(bar.part(QStyle::SC_ScrollBarGroove) == QRect(0, 2, 9, 196));
    CHECK(bar.part(QStyle::SC_ScrollBarSlider) == QRect(0, 2, 9, 49));
    bar.setValue(300);
    CHECK(bar.part(QStyle::SC_ScrollBarSlider) == QRect(0, 149, 9, 49));
}

TEST_CASE("The handle and the pages beside it fill the groove") {
    for (const auto orientation : {Qt::Vertical, Qt::Horizontal}) {
        ScrollBar bar(orientation);
        bar.setRange(0, 1000);
        bar.setPageStep(250);
        bar.setValue(400);
        const QRect before = bar.part(QStyle::SC_ScrollBarSubPage), after = bar.part(QStyle::SC_ScrollBarAddPage);
        const QRect handle = bar.part(QStyle::SC_ScrollBarSlider);
        CHECK(before.united(handle).united(after) == bar.part(QStyle::SC_ScrollBarGroove));
        CHECK_FALSE(before.intersects(handle));
        CHECK_FALSE(after.intersects(handle));
    }
}

TEST_CASE("The handle of a long list can still be gripped, and that of a short one fills the groove") {
    ScrollBar bar(Qt::Vertical);
    bar.setRange(0, 1000000);
    bar.setPageStep(8);
    CHECK(bar.part(QStyle::SC_ScrollBarSlider).height() == 28);
    bar.setRange(0, 0);
    CHECK(bar.part(QStyle::SC_ScrollBarSlider) == bar.part(QStyle::SC_ScrollBarGroove));
}

TEST_CASE("What lies behind a scroll bar is seen beside its handle") {
    ScrollBar bar(Qt::Vertical);
    bar.setRange(0, 300);
    bar.setPageStep(100);
    QImage image(bar.size(), QImage::Format_RGB32);
    image.fill(Qt::red);
    bar.render(&image, QPoint(), QRegion(), QWidget::RenderFlags());
    CHECK(image.pixelColor(5, 20) == QColor(0x56, 0x5B, 0x61));
    CHECK(image.pixelColor(5, 180) == QColor(Qt::red));
}

TEST_CASE("Menu titles stand where their exact widths put them, however many come before") {
    QMenuBar bar;
    const auto style = makeStyle();
    bar.setStyle(style.get());
    double left = 8;
    for (const char* title : {"File", "Edit", "Playback", "Sound", "Loop", "Window", "Help"}) {
        CAPTURE(title);
        const QAction* action = bar.addAction(QString::fromLatin1(title));
        bar.resize(900, 26);
        CHECK(std::abs(bar.actionGeometry(const_cast<QAction*>(action)).left() - left) <= 0.5);
        left += textWidth(uiFont(12.5), QString::fromLatin1(title)) + 2 * 9;
    }
    bar.setStyle(nullptr);
}

TEST_CASE("The buttons of a file panel have the program's own face and no icons") {
    const auto style = makeStyle();
    QFileDialog panel;
    panel.setOption(QFileDialog::DontUseNativeDialog);
    auto* buttons = panel.findChild<QDialogButtonBox*>();
    REQUIRE(buttons != nullptr);
    for (QWidget* widget : panel.findChildren<QWidget*>()) widget->setStyle(style.get());
    const auto* open = qobject_cast<QPushButton*>(buttons->button(QDialogButtonBox::Open));
    REQUIRE(open != nullptr);
    CHECK(open->sizeHint() == PushButton(QStringLiteral("Open"), true).sizeHint());
    CHECK(style->styleHint(QStyle::SH_DialogButtonBox_ButtonsHaveIcons, nullptr, buttons) == 0);
    for (QWidget* widget : panel.findChildren<QWidget*>()) widget->setStyle(nullptr);
}

TEST_CASE("The signs in dialogs are the program's own, at the size and sharpness that is asked for") {
    const auto style = makeStyle();
    for (const auto sign :
         {QStyle::SP_MessageBoxWarning, QStyle::SP_ArrowBack, QStyle::SP_ArrowForward, QStyle::SP_FileDialogToParent,
          QStyle::SP_FileDialogNewFolder, QStyle::SP_FileDialogListView, QStyle::SP_FileDialogDetailedView}) {
        const QPixmap icon = style->standardIcon(sign).pixmap(QSize(40, 40), 2.0);
        CHECK(icon.size() == QSize(80, 80));
        CHECK(icon.devicePixelRatio() == 2.0);
    }
}

TEST_CASE("A menu gets its sheet when it is first shown") {
    const auto style = makeStyle();
    QMenu menu;
    menu.setStyle(style.get());
    menu.addAction(QStringLiteral("Item"));
    menu.ensurePolished();
    CHECK(menu.styleSheet().isEmpty());
    menu.popup(QPoint());
    CHECK_FALSE(menu.styleSheet().isEmpty());
    menu.close();
    menu.setStyle(nullptr);
}

TEST_CASE("The style moves nothing of its own when the desktop wants nothing to move") {
    const std::unique_ptr<QStyle> style = makeStyle();
    for (const auto hint : {QStyle::SH_Widget_Animate, QStyle::SH_Widget_Animation_Duration}) {
        CHECK(style->styleHint(hint) > 0);
        setMotionWanted(false);
        CHECK(style->styleHint(hint) == 0);
        setMotionWanted(true);
    }
}
