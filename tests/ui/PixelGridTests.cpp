#include <doctest/doctest.h>

#include <QImage>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "ui/controls/Fonts.h"
#include "ui/controls/PixelGrid.h"

using namespace qm;

namespace {

// A black picture of a screen with that scale.
struct Screen {
    explicit Screen(double scale) : image(200, 200, QImage::Format_RGB32) {
        image.setDevicePixelRatio(scale);
        image.fill(Qt::black);
    }

    QImage image;
};

}  // namespace

TEST_CASE("A line along a rectangle's edge is sharp at every scale") {
    for (const double scale : {1.0, 1.25, 1.5, 2.0}) {
        CAPTURE(scale);
        Screen screen(scale);
        {
            QPainter painter(&screen.image);
            painter.setRenderHint(QPainter::Antialiasing);
            painter.translate(0, 3);
            strokeRounded(painter, QRectF(1, 0, 60, 30), 0, Qt::white);
        }
        const int row = static_cast<int>(std::lround(3 * scale)), lines = static_cast<int>(scale);
        for (int y = 0; y < row + lines + 4; ++y) {
            const bool lit = y >= row && y < row + lines;
            CHECK(std::abs(qGray(screen.image.pixel(40, y)) - (lit ? 255 : 0)) <= 4);
        }
    }
}

TEST_CASE("A rectangle ends on whole pixels, wherever it stands") {
    Screen screen(1.25);
    QPainter painter(&screen.image);
    painter.translate(7, 11);
    const QRectF pixels = painter.deviceTransform().mapRect(onPixels(painter, QRectF(0.5, 1.5, 10, 21)));
    CHECK(pixels.left() == doctest::Approx(std::round(7.5 * 1.25)));
    CHECK(pixels.top() == doctest::Approx(std::round(12.5 * 1.25)));
    CHECK(pixels.right() == doctest::Approx(std::round(17.5 * 1.25)));
    CHECK(pixels.bottom() == doctest::Approx(std::round(33.5 * 1.25)));
}

TEST_CASE("The foot of a line of text lies on a row of pixels") {
    for (const double scale : {1.0, 1.25, 1.5, 1.75, 2.0}) {
        CAPTURE(scale);
        Screen screen(scale);
        {
            QPainter painter(&screen.image);
            painter.translate(5, 3);
            painter.setFont(uiFont(13));
            painter.setPen(Qt::white);
            drawLine(painter, QRectF(0, 1, 60, 18), Qt::AlignLeft, QStringLiteral("HHH"));
        }
        // From below: nothing, then the letters' feet at once in full.
        int y = 199, found = 0;
        for (; y > 0 && found == 0; --y)
            for (int x = 0; x < 100; ++x) found = std::max(found, qGray(screen.image.pixel(x, y)));
        CHECK(found > 200);
    }
}
