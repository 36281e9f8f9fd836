// The level of what a sound input gives: a slim bar of cells for each channel, with the held peak as one cell more.
// Three decibels a cell; the last two, red, begin 6 dB below full scale. Main thread only.
#pragma once

#include <QWidget>
#include <array>

#include "engine/api/QTCapture.h"

namespace qm {

class LevelIndicator;

class InputLevels : public QWidget {
    Q_OBJECT

public:
    explicit InputLevels(QWidget* parent = nullptr);

    void setLevels(const QTCaptureAudioLevels& levels);

private:
    std::array<LevelIndicator*, 2> m_bars;  // left, right
};

}  // namespace qm
