// The level meters: ten times a second the levels of the current movie are read and shown, each band's in its indicator
// and each channel's average power in its read-out. Main thread only. A reading that fails shows nothing new; a layout
// without some of the controls is shown as far as it goes.
#pragma once

#include <QString>
#include <QTimer>
#include <cstdint>
#include <memory>
#include <vector>

#include "app/PlayerState.h"
#include "engine/api/MovieToolbox.h"
#include "player/Uses.h"
#include "ui/controls/Outlets.h"

class QLabel;

namespace qm {

class LevelIndicator;

// The records that are refilled by each reading, and what runs and shows the meters.
struct LevelMeterState {
    std::unique_ptr<QTAudioVolumeLevels> pAveragePowerLevels;
    std::unique_ptr<QTAudioVolumeLevels> pPeakHoldLevels;  // read, never shown
    std::unique_ptr<QTAudioFrequencyLevels> mFreqResults;
    std::vector<LevelIndicator*> mArray;  // in the order in which levels are written
    std::unique_ptr<QTimer> mTimer;       // none while the meters are off
};

class LevelMeters {
public:
    LevelMeters(Uses<const MovieHandle, MeteringState> state, LevelMeterState& meters,
                Uses<const MeterOutlets, const LevelReadOuts> outlets, MovieToolbox& toolbox);

    // Makes the records and collects the indicators of both views. Once, when the outlets are there.
    void prepare();

    void switchAudioLevels(bool on);
    void audioLevelFireMethod();  // one tick
    void displayLevels();         // shows or hides the panel; the meters go on
    void showPanel(bool shown);

private:
    // What a read-out was last given.
    struct Power {
        double tenths = 0;
        QString text;
    };

    bool readLevels();
    static void showPower(QLabel* readOut, Power& shown, float decibels);

    const MovieHandle& m_handle;
    MeteringState& m_metering;
    LevelMeterState& m_meters;
    const MeterOutlets& m_outlets;
    const LevelReadOuts& m_readOuts;
    MovieToolbox& m_toolbox;
    Power m_left;
    Power m_right;
};

}  // namespace qm
