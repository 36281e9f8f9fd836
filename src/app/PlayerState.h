// The player's state: every field that the actions read and write, with its start value and unit. Main thread only.
#pragma once

#include <QImage>
#include <QString>
#include <QTimer>
#include <cstdint>
#include <memory>

#include "engine/api/QTMovie.h"
#include "ui/controls/TextAttributes.h"

namespace qm {

struct PlayerState {
    std::unique_ptr<QTMovie> qtMovie;  // the current track; none until the first load and after a failed one
    Movie quickTimeMovie = 0;          // low-level handle of qtMovie, kept by each load
    QString loadedPath;                // the file last asked for, also when it could not be opened

    bool isPlaying = false;  // the user started playback and has not paused it; stays true at the end of the track
    bool isLooping = false;
    bool markBset = false;  // B was set since the loop was last switched off or the marks reset
    QTTime timeA;
    QTTime timeB;

    float rate = 1.0f;     // signed: magnitude is speed, negative plays backward
    float pitch = 0.0f;    // cents
    float gain = 0.5f;     // 0 to 1
    float balance = 0.0f;  // -1 left to 1 right
    std::int16_t bass = 128;
    std::int16_t treble = 128;

    std::int32_t mostRecentlySelected = -1;  // row last loaded through selectTrack, -1 none

    std::unique_ptr<QTimer> movieTimer;  // the cue timer of the position clock
    std::unique_ptr<QTimer> fadeInTimer;

    QChar slashCharacter = u'/';
    QImage trackIcon;
    QImage nonM4aIcon;
    QImage videoIcon;
    TextAttributes controlColorAttributes;  // every attributed value title is drawn with exactly these

    bool isRecording = false;
    bool audioLevelIndicatorsState = false;  // the level meters are running
};

}  // namespace qm
