// The player's state: every field that the actions read and write, with its start value and unit, in groups by subject.
// A part takes the groups that it uses, never the whole. Main thread only.
#pragma once

#include <QImage>
#include <QString>
#include <QTimer>
#include <cstdint>
#include <memory>

#include "engine/api/QTMovie.h"
#include "ui/controls/TextAttributes.h"

namespace qm {

struct CurrentMovie {
    std::unique_ptr<QTMovie> qtMovie;  // the current track; none until the first load and after a failed one
};

struct MovieHandle {
    Movie quickTimeMovie = 0;  // low-level handle of qtMovie, kept by each load
};

struct LoadedFile {
    QString loadedPath;  // the file last asked for, also when it could not be opened
};

struct PlayState {
    bool isPlaying = false;  // the user started playback and has not paused it; stays true at the end of the track
};

struct LoopState {
    bool isLooping = false;
};

struct MarkBState {
    bool markBset = false;  // B was set since the loop was last switched off or the marks reset
};

struct MarkTimes {
    QTTime timeA;
    QTTime timeB;
};

struct SpeedState {
    float rate = 1.0f;  // signed: magnitude is speed, negative plays backward
};

struct PitchState {
    float pitch = 0.0f;  // cents
};

struct VolumeState {
    float gain = 0.5f;     // 0 to 1
    float balance = 0.0f;  // -1 left to 1 right
};

struct ToneState {
    std::int16_t bass = 128;
    std::int16_t treble = 128;
};

struct ChosenRow {
    std::int32_t mostRecentlySelected = -1;  // row last loaded through selectTrack, -1 none
};

struct CueTimer {
    std::unique_ptr<QTimer> movieTimer;  // of the position clock
};

struct FadeTimer {
    std::unique_ptr<QTimer> fadeInTimer;
};

struct TimeTexts {
    QChar slashCharacter = u'/';
};

struct TrackIcons {
    QImage trackIcon;
    QImage nonM4aIcon;  // of m4a and m4p files
    QImage videoIcon;
};

struct TitleAttributes {
    TextAttributes controlColorAttributes;  // every attributed value title is drawn with exactly these
};

struct RecordingState {
    bool isRecording = false;
};

struct MeteringState {
    bool audioLevelIndicatorsState = false;  // the level meters are running
};

struct PlayerState : CurrentMovie,
                     MovieHandle,
                     LoadedFile,
                     PlayState,
                     LoopState,
                     MarkBState,
                     MarkTimes,
                     SpeedState,
                     PitchState,
                     VolumeState,
                     ToneState,
                     ChosenRow,
                     CueTimer,
                     FadeTimer,
                     TimeTexts,
                     TrackIcons,
                     TitleAttributes,
                     RecordingState,
                     MeteringState {};

}  // namespace qm
