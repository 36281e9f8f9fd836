#include <doctest/doctest.h>

#include <QImage>
#include <QMenu>
#include <QPainter>
#include <QScrollBar>
#include <QStyle>
#include <QStyleOptionSlider>

#include "ui/Style.h"
#include "ui/controls/Motion.h"

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
