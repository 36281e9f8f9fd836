// The outlets: pointers to the controls of the windows, each named after its control's object name, in groups by
// subject. The window classes fill them; a part of the player takes the groups that it uses. An outlet whose window or
// card is not there is null, and the actions skip it. Main thread only.
#pragma once

class QLabel;
class QWidget;

namespace qm {

class CheckBox;
class ImageButton;
class ImageView;
class MeterView;
class MovieView;
class PaneToolbar;
class PlayListView;
class ProgressBar;
class RadioTiles;
class RoundedBox;
class ScaleSample;
class Slider;
class TimeLabel;
class TitleButton;
class WaveformStrip;
class FadingWindow;

struct MainWindowOutlet {
    FadingWindow* mainWindow = nullptr;
};

struct TransportButtons {
    ImageButton* playForwardButton = nullptr;
    ImageButton* playBackwardButton = nullptr;
    ImageButton* pauseButton = nullptr;
};

struct PositionOutlet {
    Slider* cueSlider = nullptr;
};

struct ClockOutlets {
    TimeLabel* timecode = nullptr;
    TimeLabel* timeRemaining = nullptr;
};

struct LoopOutlets {
    ImageButton* loopButton = nullptr;
    ImageButton* markAButton = nullptr;
    ImageButton* markBButton = nullptr;
    TimeLabel* loopIn = nullptr;
    TimeLabel* loopOut = nullptr;
};

struct PlayListOutlet {
    PlayListView* playList = nullptr;
};

struct TrackTotalOutlet {
    QLabel* trackTotal = nullptr;
};

struct SpeedOutlets {
    Slider* speedSlider = nullptr;
    TitleButton* speedResetButton = nullptr;
};

struct PitchOutlets {
    Slider* pitchSlider = nullptr;
    TitleButton* pitchResetButton = nullptr;
};

struct VolumeOutlets {
    Slider* gainSlider = nullptr;
    TitleButton* gainResetButton = nullptr;
    Slider* balanceSlider = nullptr;
    TitleButton* balanceResetButton = nullptr;
};

struct ToneOutlets {
    Slider* bassSlider = nullptr;
    TitleButton* bassResetButton = nullptr;
    Slider* trebleSlider = nullptr;
    TitleButton* trebleResetButton = nullptr;
};

// What has the colour that the user has chosen for scale labels.
struct ScaleOutlets {
    QLabel* speedTitle = nullptr;
    QLabel* speed_2 = nullptr;
    QLabel* speed_1 = nullptr;
    QLabel* speedMinDown = nullptr;
    QLabel* speedMinDotDown = nullptr;
    QLabel* speed0 = nullptr;
    QLabel* speedMinDotUp = nullptr;
    QLabel* speedMinUp = nullptr;
    QLabel* speed1 = nullptr;
    QLabel* speed2 = nullptr;
    QLabel* speedNormal = nullptr;
    QLabel* pitchTitle = nullptr;
    QLabel* pitch_1200 = nullptr;
    QLabel* pitch_100 = nullptr;
    QLabel* pitchMinDot = nullptr;
    QLabel* pitch0 = nullptr;
    QLabel* pitchMaxDot = nullptr;
    QLabel* pitch100 = nullptr;
    QLabel* pitch1200 = nullptr;
    ScaleSample* scaleSample = nullptr;
};

struct LevelReadOuts {
    QLabel* audioLevelLeft = nullptr;
    QLabel* audioLevelRight = nullptr;
};

struct MeterOutlets {
    QWidget* audioLevelsPanel = nullptr;
    MeterView* meterView1 = nullptr;
    MeterView* meterView2 = nullptr;
};

struct RecordOutlets {
    ImageButton* audioRecordButton = nullptr;
    ImageView* audioRecordStatus = nullptr;
    QWidget* audioRecordingWindow = nullptr;
    TimeLabel* audioRecordingTime = nullptr;
};

struct VideoOutlets {
    QWidget* videoPanel = nullptr;
    MovieView* movieView = nullptr;
};

struct InfoWindowOutlet {
    QWidget* trackInfoWindow = nullptr;
};

struct InfoOutlets {
    QLabel* copyright = nullptr;
    QLabel* format = nullptr;  // below the play list
    QLabel* formatInInfo = nullptr;
    QLabel* duration = nullptr;
    QLabel* movieName = nullptr;
    QLabel* movieSize = nullptr;
};

struct ExportOutlets {
    QWidget* exportPanel = nullptr;
    QLabel* exportName = nullptr;
    ProgressBar* exportProgress = nullptr;
};

struct AboutOutlet {
    QWidget* aboutPanel = nullptr;
};

struct PreferencesWindowOutlet {
    QWidget* prefsWindow = nullptr;
};

struct PreferencePaneOutlets {
    PaneToolbar* prefsToolbar = nullptr;
    QWidget* activePrefContentView = nullptr;  // holds the pane that is shown
    QWidget* generalPrefView = nullptr;
    QWidget* updatePrefView = nullptr;
    QWidget* audioDefaultPrefView = nullptr;
};

struct PreferenceOutlets {
    CheckBox* audioLevelsPref = nullptr;
    RadioTiles* colorMatrix = nullptr;
    CheckBox* autoCheckForUpdatesPref = nullptr;
};

// All of them, for the windows that fill them and for what shows the player as a whole. Those that stand here
// themselves are no part's.
struct Outlets : MainWindowOutlet,
                 TransportButtons,
                 PositionOutlet,
                 ClockOutlets,
                 LoopOutlets,
                 PlayListOutlet,
                 TrackTotalOutlet,
                 SpeedOutlets,
                 PitchOutlets,
                 VolumeOutlets,
                 ToneOutlets,
                 ScaleOutlets,
                 LevelReadOuts,
                 MeterOutlets,
                 RecordOutlets,
                 VideoOutlets,
                 InfoWindowOutlet,
                 InfoOutlets,
                 ExportOutlets,
                 AboutOutlet,
                 PreferencesWindowOutlet,
                 PreferencePaneOutlets,
                 PreferenceOutlets {
    QWidget* toolbar = nullptr;
    WaveformStrip* waveformStrip = nullptr;
    QWidget* resetMarksButton = nullptr;
    ImageButton* audioRecordingRecordButton = nullptr;
    RoundedBox* levelsBox = nullptr;
};

}  // namespace qm
