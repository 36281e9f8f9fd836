// The rows of the action table, in the order of the menus.
#include "ui/ActionTable.h"

namespace qm {

namespace {

constexpr bool kRepeats = true;
constexpr bool kOnce = false;
constexpr bool kInList = true;
constexpr auto kController = ActionRow::Controller;
constexpr auto kWindow = ActionRow::Window;
constexpr auto kRecorder = ActionRow::Recorder;
constexpr auto kKeys = ActionRow::Keys;

QKeySequence key(int code) {
    return QKeySequence(code);
}
QKeySequence ctrl(int code) {
    return QKeySequence(Qt::CTRL | static_cast<Qt::Key>(code));
}
QKeySequence shift(int code) {
    return QKeySequence(Qt::SHIFT | static_cast<Qt::Key>(code));
}
QKeySequence alt(int code) {
    return QKeySequence(Qt::ALT | static_cast<Qt::Key>(code));
}
QKeySequence ctrlShift(int code) {
    return QKeySequence(Qt::CTRL | Qt::SHIFT | static_cast<Qt::Key>(code));
}

using Rows = std::vector<ActionRow>;

void addFileAndEdit(Rows& rows) {
    rows.insert(rows.end(), {{"openFile", "File", "", "Open…", {ctrl(Qt::Key_O)}, kOnce, "Open… [Ctrl+O]", "Add files"},
                             {"exportMovie",
                              "File",
                              "",
                              "Export…",
                              {ctrl(Qt::Key_E)},
                              kOnce,
                              "Keep this track as a movie of its own, at this speed [Ctrl+E]",
                              "Export track"},
                             {"cancelExport", "", "", "", {}, kOnce, "Stop, and keep nothing of it [Esc]", "Cancel"},
                             {"audioStartRecord",
                              "File",
                              "",
                              "Start or Stop Recording",
                              {ctrl(Qt::Key_R)},
                              kOnce,
                              "Start or stop recording [Ctrl+R]",
                              "Record",
                              kController,
                              "",
                              true},
                             {"quit", "File", "", "Quit", {ctrl(Qt::Key_Q)}, kOnce, "", "", kWindow, "", true},
                             {"undo", "Edit", "", "Undo", {ctrl(Qt::Key_Z)}, kOnce, "", ""},
                             {"removeListEntry",
                              "Edit",
                              "",
                              "Remove Track",
                              {key(Qt::Key_Delete), key(Qt::Key_Backspace)},
                              kOnce,
                              "Remove from the list; the file stays on disk [Del]",
                              "Remove track",
                              kController,
                              "",
                              true,
                              kInList},
                             {"clearList",
                              "Edit",
                              "",
                              "Clear List…",
                              {ctrlShift(Qt::Key_Delete)},
                              kOnce,
                              "Remove all tracks from the list; the files stay on disk [Ctrl+Shift+Del]",
                              "Clear list"},
                             {"openPrefsWindow",
                              "Edit",
                              "",
                              "Preferences…",
                              {ctrl(Qt::Key_Comma)},
                              kOnce,
                              "Preferences [Ctrl+,]",
                              "Preferences",
                              kController,
                              "",
                              true}});
}

void addPlayback(Rows& rows) {
    rows.insert(
        rows.end(),
        {{"toggleStartStop", "Playback", "", "Play or Pause", {key(Qt::Key_Space)}, kOnce, "Play or pause [Space]", ""},
         {"playForward", "Playback", "", "Play Forward", {}, kOnce, "Play or pause [Space]", "Play forward"},
         {"playBackward",
          "Playback",
          "",
          "Play Backward",
          {shift(Qt::Key_Space)},
          kOnce,
          "Play backward [Shift+Space]",
          "Play backward"},
         {"pause", "Playback", "", "Pause", {key(Qt::Key_P)}, kOnce, "Pause [P]", "Pause"},
         {"rowDoubleClicked", "Playback", "", "Play Selected Track", {}, kOnce, "", "", kController, "Return", true},
         {"selectTrack", "Playback", "", "Load Selected Track", {ctrl(Qt::Key_Return)}, kOnce, "", ""},
         {"goToStart",
          "Playback",
          "",
          "Go to Start",
          {key(Qt::Key_Home), key(Qt::Key_0)},
          kOnce,
          "Go to the start, or to A while looping [Home]",
          "Go to start",
          kController,
          "",
          true}});
}

ActionRow skipRow(const char* slot, const char* submenu, const char* text, std::vector<QKeySequence> keys,
                  const char* tooltip, const char* accessibleName) {
    return {slot, "Playback", submenu, text, std::move(keys), kRepeats, tooltip, accessibleName};
}

void addSkips(Rows& rows) {
    rows.insert(rows.end(), {skipRow("skip1", "Skip Forward", "1 Second", {key(Qt::Key_Right)},
                                     "Skip forward 1 second [Right]", "Skip forward 1 second"),
                             skipRow("skip10", "Skip Forward", "10 Seconds", {shift(Qt::Key_Right)},
                                     "Skip forward 10 seconds [Shift+Right]", "Skip forward 10 seconds"),
                             skipRow("skip30", "Skip Forward", "30 Seconds", {alt(Qt::Key_Right)},
                                     "Skip forward 30 seconds [Alt+Right]", "Skip forward 30 seconds"),
                             skipRow("skip60", "Skip Forward", "1 Minute", {ctrl(Qt::Key_Right)},
                                     "Skip forward 1 minute [Ctrl+Right]", "Skip forward 1 minute"),
                             skipRow("skip300", "Skip Forward", "5 Minutes", {ctrlShift(Qt::Key_Right)},
                                     "Skip forward 5 minutes [Ctrl+Shift+Right]", "Skip forward 5 minutes"),
                             skipRow("skipBack", "Skip Back", "1 Second", {key(Qt::Key_Left)},
                                     "Skip back 1 second [Left]", "Skip back 1 second"),
                             skipRow("skip_10", "Skip Back", "10 Seconds", {shift(Qt::Key_Left)},
                                     "Skip back 10 seconds [Shift+Left]", "Skip back 10 seconds"),
                             skipRow("skip_60", "Skip Back", "1 Minute", {ctrl(Qt::Key_Left)},
                                     "Skip back 1 minute [Ctrl+Left]", "Skip back 1 minute")});
}

ActionRow soundRow(const char* slot, const char* submenu, const char* text, std::vector<QKeySequence> keys,
                   const char* tooltip, const char* accessibleName) {
    return {slot, "Sound", submenu, text, std::move(keys), kOnce, tooltip, accessibleName};
}

// An action that no menu shows.
ActionRow controlRow(const char* slot, const char* tooltip, const char* accessibleName) {
    return {slot, "", "", "", {}, kOnce, tooltip, accessibleName};
}

void addSpeedAndPitch(Rows& rows) {
    rows.insert(
        rows.end(),
        {{"speedDown", "Sound", "", "Slower", {key(Qt::Key_Minus)}, kRepeats, "Slower [−]", "Slower"},
         {"speedUp", "Sound", "", "Faster", {key(Qt::Key_Equal), key(Qt::Key_Plus)}, kRepeats, "Faster [+]", "Faster"},
         soundRow("speed05", "Speed", "0.5", {key(Qt::Key_1)}, "Half speed [1]", "Speed 0.5"),
         soundRow("speed075", "Speed", "0.75", {key(Qt::Key_2)}, "Three quarters of the speed [2]", "Speed 0.75"),
         soundRow("speedReset", "Speed", "Normal", {key(Qt::Key_3)}, "Back to normal speed [3]", "Reset speed"),
         soundRow("speed150", "Speed", "1.5", {key(Qt::Key_4)}, "One and a half times the speed [4]", "Speed 1.5"),
         soundRow("speed20", "Speed", "2.0", {key(Qt::Key_5)}, "Double speed [5]", "Speed 2.0"),
         {"semiToneDown",
          "Sound",
          "",
          "Semitone Down",
          {key(Qt::Key_F)},
          kOnce,
          "Down a semitone [F]",
          "Semitone down",
          kController,
          "",
          true},
         soundRow("semiToneUp", "", "Semitone Up", {key(Qt::Key_S)}, "Up a semitone [S]", "Semitone up"),
         soundRow("pitchReset", "", "Original Pitch", {key(Qt::Key_N)}, "Original pitch [N]", "Reset pitch")});
}

void addVolumeAndTone(Rows& rows) {
    rows.insert(rows.end(),
                {{"silence", "Sound", "Gain", "Silent", {key(Qt::Key_M)}, kOnce, "", "", kKeys},
                 {"resetGain", "Sound", "Gain", "Reset", {key(Qt::Key_G)}, kOnce, "", "", kKeys},
                 controlRow("volumeMin", "Silent [M]", "Gain least"),
                 controlRow("gainReset", "Reset gain [G]", "Reset gain"),
                 soundRow("volumeMax", "Gain", "Full", {}, "Full", "Gain most"),
                 soundRow("balanceLeftMax", "Balance", "Left", {}, "Full left", "Balance left"),
                 soundRow("balanceReset", "Balance", "Centre", {key(Qt::Key_C)}, "Centre [C]", "Reset balance"),
                 soundRow("balanceRightMax", "Balance", "Right", {}, "Full right", "Balance right"),
                 soundRow("bassMin", "Bass", "Least", {}, "Least bass", "Bass least"),
                 soundRow("bassReset", "Bass", "Reset", {}, "Reset bass", "Reset bass"),
                 soundRow("bassMax", "Bass", "Most", {}, "Most bass", "Bass most"),
                 soundRow("trebleMin", "Treble", "Least", {}, "Least treble", "Treble least"),
                 soundRow("trebleReset", "Treble", "Reset", {}, "Reset treble", "Reset treble"),
                 soundRow("trebleMax", "Treble", "Most", {}, "Most treble", "Treble most"),
                 {"resetSound", "Sound", "", "Reset All", {ctrl(Qt::Key_0)}, kOnce, "", "", kKeys, "", true},
                 controlRow("resetAudio", "Put every sound control back [Ctrl+0]", "Reset all sound")});
}

void addLoop(Rows& rows) {
    rows.insert(
        rows.end(),
        {{"loopSwitch", "Loop", "", "Loop A–B", {key(Qt::Key_L)}, kOnce, "Repeat from A to B [L]", "Loop A to B"},
         {"markAUpdate",
          "Loop",
          "",
          "Mark A",
          {key(Qt::Key_BracketLeft), key(Qt::Key_A)},
          kOnce,
          "Set A here [[ or A]",
          "Set A"},
         {"markBUpdate",
          "Loop",
          "",
          "Mark B",
          {key(Qt::Key_BracketRight), key(Qt::Key_B)},
          kOnce,
          "Set B here [] or B]",
          "Set B"},
         {"resetMarks",
          "Loop",
          "",
          "Reset Marks",
          {shift(Qt::Key_L)},
          kOnce,
          "Put A at the start and B at the end [Shift+L]",
          "Reset marks"}});
}

void addWindow(Rows& rows) {
    rows.push_back({"displayLevels",
                    "Window",
                    "",
                    "Level Meters",
                    {ctrl(Qt::Key_1)},
                    kOnce,
                    "Show or hide the level meters [Ctrl+1]",
                    "Level meters"});
    rows.push_back({"displayInfo",
                    "Window",
                    "",
                    "Track Information",
                    {ctrl(Qt::Key_2), ctrl(Qt::Key_I)},
                    kOnce,
                    "Show or hide what the track says of itself [Ctrl+2 or Ctrl+I]",
                    "Track information"});
    rows.push_back({"displayVideo", "Window", "", "Video", {ctrl(Qt::Key_3)}, kOnce, "", "", kWindow});
    rows.push_back(
        {"fillScreenWithVideo", "Window", "", "Full-Screen Video", {key(Qt::Key_F11)}, kOnce, "", "", kWindow});
    rows.push_back({"audioRecordOpen",
                    "Window",
                    "",
                    "Recording",
                    {ctrl(Qt::Key_4)},
                    kOnce,
                    "Show the recording window [Ctrl+4]",
                    "Recording"});
    rows.push_back({"displayAudioRecordWindow", "Window", "", "Recorder", {ctrl(Qt::Key_5)}, kOnce, "", "", kRecorder});
    rows.push_back({"displayTrackFormat", "Window", "", "Track Format", {ctrlShift(Qt::Key_F)}, kOnce, "", ""});
    rows.push_back({"toggleToolbar", "Window", "", "Show Toolbar", {ctrlShift(Qt::Key_T)}, kOnce, "", "", kWindow});
    rows.push_back({"useMessageButton",
                    "Window",
                    "",
                    "Use the Message's Button",
                    {key(Qt::Key_F8)},
                    kOnce,
                    "Do what the message offers [F8]",
                    "",
                    kWindow,
                    "",
                    true});
}

void addHelp(Rows& rows) {
    rows.push_back({"displayShortcuts",
                    "Help",
                    "",
                    "Keyboard Shortcuts",
                    {key(Qt::Key_F1), ctrl(Qt::Key_Question)},
                    kOnce,
                    "",
                    "",
                    kWindow});
    rows.push_back({"checkSoftwareUpdate", "Help", "", "Check for Updates…", {}, kOnce, "", ""});
    rows.push_back({"displayAboutPanel", "Help", "", "About Quillmere", {}, kOnce, "", ""});
}

void addRecorderButtons(Rows& rows) {
    rows.push_back({"audioRecordClose", "", "", "", {}, kOnce, "Close; a recording is stopped first [Esc]", "Close"});
    rows.push_back({"toggleRecordSession", "", "", "", {}, kOnce, "Start or stop recording", "Record", kRecorder});
}

void addSliders(Rows& rows) {
    rows.insert(rows.end(),
                {controlRow("cueUpdate", "Drag to move through the track", "Position"),
                 controlRow("speedUpdate", "Speed and direction", "Speed"),
                 controlRow("pitchUpdate", "Pitch in cents", "Pitch"), controlRow("gainUpdate", "Gain", "Gain"),
                 controlRow("balanceUpdate", "Balance", "Balance"), controlRow("bassUpdate", "Bass", "Bass"),
                 controlRow("trebleUpdate", "Treble", "Treble")});
}

void addPreferences(Rows& rows) {
    rows.insert(
        rows.end(),
        {controlRow("toggleGeneralPreferenceView", "Turn on/off the audio level indicators.", "General"),
         controlRow("toggleUpdatePreferenceView", "Turn on/off the automatic software update check.",
                    "Software Update"),
         controlRow("toggleAudioDefaultPreferenceView", "Set the audio level used when Quillmere starts up.", "Volume"),
         controlRow("toggleAudioLevelsPref", "", "Show level indicators"),
         controlRow("toggleTextColor", "", "Colour of scale labels"),
         controlRow("toggleSoftwareUpdateCheck", "", "Check for updates when Quillmere starts"),
         controlRow("updateDefaultAudioPref", "", "Use current gain")});
}

}  // namespace

const std::vector<ActionRow>& actionRows() {
    static const Rows rows = [] {
        Rows all;
        addFileAndEdit(all);
        addPlayback(all);
        addSkips(all);
        addSpeedAndPitch(all);
        addVolumeAndTone(all);
        addLoop(all);
        addWindow(all);
        addHelp(all);
        addRecorderButtons(all);
        addSliders(all);
        addPreferences(all);
        return all;
    }();
    return rows;
}

}  // namespace qm
