// The colour of the level read-outs and of the scale labels of the speed and pitch sliders. Main thread only.
#pragma once

#include <QColor>

#include "player/Uses.h"
#include "ui/controls/Outlets.h"

namespace qm {

using ColouredOutlets = Uses<const ScaleOutlets, const LevelReadOuts>;

// 0 cyan, 1 white, 2 orange, any other value green.
QColor textColorForChoice(int choice);

// Gives the colour to the read-outs and labels that are there, in their order, and to the sample of them; the titles
// of the reset buttons keep theirs.
void applyTextColor(ColouredOutlets outlets, const QColor& color);

}  // namespace qm
