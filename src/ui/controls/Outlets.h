// The outlets: pointers to the controls of the windows, each named after its control's object name. The window classes
// fill them; the actions use them. An outlet whose window or card is not there is null, and the actions skip it.
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

struct Outlets {
    FadingWindow* mainWindow = nullptr;
    QWidget* toolbar = nullptr;

    ImageButton* playForwardButton = nullptr;
    ImageButton* playBackwardButton = nullptr;
    ImageButton* pauseButton = nullptr;
    Slider* cueSlider = nullptr;
    TimeLabel* timecode = nullptr;
    TimeLabel* timeRemaining = nullptr;
    WaveformStrip* waveformStrip = nullptr;

    ImageButton* loopButton = nullptr;
    ImageButton* markAButton = nullptr;
    ImageButton* markBButton = nullptr;
    QWidget* resetMarksButton = nullptr;
    TimeLabel* loopIn = nullptr;
    TimeLabel* loopOut = nullptr;

    PlayListView* playList = nullptr;
    QLabel* trackTotal = nullptr;
    QLabel* format = nullptr;

    Slider* speedSlider = nullptr;
    TitleButton* speedResetButton = nullptr;
    Slider* pitchSlider = nullptr;
    TitleButton* pitchResetButton = nullptr;
    Slider* gainSlider = nullptr;
    TitleButton* gainResetButton = nullptr;
    Slider* balanceSlider = nullptr;
    TitleButton* balanceResetButton = nullptr;
    Slider* bassSlider = nullptr;
    TitleButton* bassResetButton = nullptr;
    Slider* trebleSlider = nullptr;
    TitleButton* trebleResetButton = nullptr;

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

    QWidget* videoPanel = nullptr;
    MovieView* movieView = nullptr;
    ImageButton* audioRecordButton = nullptr;
    ImageView* audioRecordStatus = nullptr;
    QWidget* audioRecordingWindow = nullptr;
    ImageButton* audioRecordingRecordButton = nullptr;
    TimeLabel* audioRecordingTime = nullptr;

    QWidget* audioLevelsPanel = nullptr;
    RoundedBox* levelsBox = nullptr;
    MeterView* meterView1 = nullptr;
    MeterView* meterView2 = nullptr;
    QLabel* audioLevelLeft = nullptr;
    QLabel* audioLevelRight = nullptr;

    QWidget* trackInfoWindow = nullptr;
    QLabel* copyright = nullptr;
    QLabel* formatInInfo = nullptr;
    QLabel* duration = nullptr;
    QLabel* movieName = nullptr;
    QLabel* movieSize = nullptr;

    QWidget* exportPanel = nullptr;
    QLabel* exportName = nullptr;
    ProgressBar* exportProgress = nullptr;

    QWidget* aboutPanel = nullptr;
    QWidget* prefsWindow = nullptr;
    PaneToolbar* prefsToolbar = nullptr;
    QWidget* activePrefContentView = nullptr;  // holds the pane that is shown
    QWidget* generalPrefView = nullptr;
    QWidget* updatePrefView = nullptr;
    QWidget* audioDefaultPrefView = nullptr;
    CheckBox* audioLevelsPref = nullptr;
    RadioTiles* colorMatrix = nullptr;
    ScaleSample* scaleSample = nullptr;
    CheckBox* autoCheckForUpdatesPref = nullptr;
};

}  // namespace qm
