#include "ui/TextColor.h"

#include <QLabel>

#include "ui/controls/ScaleSample.h"
#include "ui/controls/Tokens.h"

namespace qm {

QColor textColorForChoice(int choice) {
    switch (choice) {
        case 0:
            return tokens::kScaleCyan;
        case 1:
            return tokens::kScaleWhite;
        case 2:
            return tokens::kScaleOrange;
        default:
            return tokens::kScaleGreen;
    }
}

void applyTextColor(ColouredOutlets outlets, const QColor& color) {
    const ScaleOutlets& o = outlets;
    const LevelReadOuts& levels = outlets;
    QLabel* const labels[] = {levels.audioLevelLeft,
                              levels.audioLevelRight,
                              o.speedTitle,
                              o.speed_2,
                              o.speed_1,
                              o.speedMinDown,
                              o.speedMinDotDown,
                              o.speed0,
                              o.speedMinDotUp,
                              o.speedMinUp,
                              o.speed1,
                              o.speed2,
                              o.speedNormal,
                              o.pitchTitle,
                              o.pitch_1200,
                              o.pitch_100,
                              o.pitchMinDot,
                              o.pitch0,
                              o.pitchMaxDot,
                              o.pitch100,
                              o.pitch1200};
    for (QLabel* label : labels) {
        if (!label) continue;
        QPalette palette = label->palette();
        palette.setColor(QPalette::WindowText, color);
        label->setPalette(palette);
    }
    if (o.scaleSample) o.scaleSample->setTextColor(color);
}

}  // namespace qm
