// The rows of the action table, in the order of the menus.
#include "ui/actions/ActionTable.h"

namespace qm {

namespace {

constexpr bool kRepeats = true;
constexpr bool kOnce = false;
constexpr bool kInList = true;

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

void addFile(Rows& rows) {
    rows.insert(rows.end(),
                {{ActionId::openFile, "File", "", "Open…", {ctrl(Qt::Key_O)}, kOnce, "Open… [Ctrl+O]", "Add files"},
                 {ActionId::openAnySound, "File", "", "Open Any Sound…", {ctrlShift(Qt::Key_O)}, kOnce, "", ""},
                 {ActionId::exportMovie,
                  "File",
                  "",
                  "Export…",
                  {ctrl(Qt::Key_E)},
                  kOnce,
                  "Keep this track as a movie of its own, at this speed [Ctrl+E]",
                  "Export track"},
                 {ActionId::cancelExport, "", "", "", {}, kOnce, "Stop, and keep nothing of it [Esc]", "Cancel"},
                 {ActionId::audioStartRecord,
                  "File",
                  "",
                  "Start or Stop Recording",
                  {ctrl(Qt::Key_R)},
                  kOnce,
                  "Start or stop recording [Ctrl+R]",
                  "Record",
                  "",
                  true},
                 {ActionId::quit, "File", "", "Quit", {ctrl(Qt::Key_Q)}, kOnce, "", "", "", true}});
}

void addEdit(Rows& rows) {
    rows.insert(rows.end(), {{ActionId::undo, "Edit", "", "Undo", {ctrl(Qt::Key_Z)}, kOnce, "", ""},
                             {ActionId::removeListEntry,
                              "Edit",
                              "",
                              "Remove Track",
                              {key(Qt::Key_Delete), key(Qt::Key_Backspace)},
                              kOnce,
                              "Remove from the list; the file stays on disk [Del]",
                              "Remove track",
                              "",
                              true,
                              kInList},
                             {ActionId::clearList,
                              "Edit",
                              "",
                              "Clear List…",
                              {ctrlShift(Qt::Key_Delete)},
                              kOnce,
                              "Remove all tracks from the list; the files stay on disk [Ctrl+Shift+Del]",
                              "Clear list"},
                             {ActionId::findTrack,
                              "Edit",
                              "",
                              "Find Track…",
                              {ctrl(Qt::Key_F)},
                              kOnce,
                              "Show only the tracks that are looked for [Ctrl+F]",
                              "Find track"},
                             {ActionId::openPrefsWindow,
                              "Edit",
                              "",
                              "Preferences…",
                              {ctrl(Qt::Key_Comma)},
                              kOnce,
                              "Preferences [Ctrl+,]",
                              "Preferences",
                              "",
                              true}});
}

void addPlayback(Rows& rows) {
    rows.insert(
        rows.end(),
        {{ActionId::toggleStartStop,
          "Playback",
          "",
          "Play or Pause",
          {key(Qt::Key_Space)},
          kOnce,
          "Play or pause [Space]",
          ""},
         {ActionId::playForward, "Playback", "", "Play Forward", {}, kOnce, "Play or pause [Space]", "Play forward"},
         {ActionId::playBackward,
          "Playback",
          "",
          "Play Backward",
          {shift(Qt::Key_Space)},
          kOnce,
          "Play backward [Shift+Space]",
          "Play backward"},
         {ActionId::pause, "Playback", "", "Pause", {key(Qt::Key_P)}, kOnce, "Pause [P]", "Pause"},
         {ActionId::rowDoubleClicked, "Playback", "", "Play Selected Track", {}, kOnce, "", "", "Return", true},
         {ActionId::selectTrack, "Playback", "", "Load Selected Track", {ctrl(Qt::Key_Return)}, kOnce, "", ""},
         {ActionId::previousTrack,
          "Playback",
          "",
          "Previous Track",
          {key(Qt::Key_Comma), ctrl(Qt::Key_Up)},
          kOnce,
          "Play the track above [, or Ctrl+Up]",
          "Previous track",
          "",
          true},
         {ActionId::nextTrack,
          "Playback",
          "",
          "Next Track",
          {key(Qt::Key_Period), ctrl(Qt::Key_Down)},
          kOnce,
          "Play the track below [. or Ctrl+Down]",
          "Next track"},
         {ActionId::goToStart,
          "Playback",
          "",
          "Go to Start",
          {key(Qt::Key_Home), key(Qt::Key_0)},
          kOnce,
          "Go to the start, or to A while looping [Home]",
          "Go to start",
          "",
          true}});
}

ActionRow skipRow(ActionId id, const char* submenu, const char* text, std::vector<QKeySequence> keys,
                  const char* tooltip, const char* accessibleName) {
    return {id, "Playback", submenu, text, std::move(keys), kRepeats, tooltip, accessibleName};
}

void addSkips(Rows& rows) {
    rows.insert(rows.end(), {skipRow(ActionId::skip1, "Skip Forward", "1 Second", {key(Qt::Key_Right)},
                                     "Skip forward 1 second [Right]", "Skip forward 1 second"),
                             skipRow(ActionId::skip10, "Skip Forward", "10 Seconds", {shift(Qt::Key_Right)},
                                     "Skip forward 10 seconds [Shift+Right]", "Skip forward 10 seconds"),
                             skipRow(ActionId::skip30, "Skip Forward", "30 Seconds", {alt(Qt::Key_Right)},
                                     "Skip forward 30 seconds [Alt+Right]", "Skip forward 30 seconds"),
                             skipRow(ActionId::skip60, "Skip Forward", "1 Minute", {ctrl(Qt::Key_Right)},
                                     "Skip forward 1 minute [Ctrl+Right]", "Skip forward 1 minute"),
                             skipRow(ActionId::skip300, "Skip Forward", "5 Minutes", {ctrlShift(Qt::Key_Right)},
                                     "Skip forward 5 minutes [Ctrl+Shift+Right]", "Skip forward 5 minutes"),
                             skipRow(ActionId::skipBack, "Skip Back", "1 Second", {key(Qt::Key_Left)},
                                     "Skip back 1 second [Left]", "Skip back 1 second"),
                             skipRow(ActionId::skip_10, "Skip Back", "10 Seconds", {shift(Qt::Key_Left)},
                                     "Skip back 10 seconds [Shift+Left]", "Skip back 10 seconds"),
                             skipRow(ActionId::skip_60, "Skip Back", "1 Minute", {ctrl(Qt::Key_Left)},
                                     "Skip back 1 minute [Ctrl+Left]", "Skip back 1 minute")});
}

ActionRow soundRow(ActionId id, const char* submenu, const char* text, std::vector<QKeySequence> keys,
                   const char* tooltip, const char* accessibleName) {
    return {id, "Sound", submenu, text, std::move(keys), kOnce, tooltip, accessibleName};
}

// An action that no menu shows.
ActionRow controlRow(ActionId id, const char* tooltip, const char* accessibleName) {
    return {id, "", "", "", {}, kOnce, tooltip, accessibleName};
}

void addSpeedAndPitch(Rows& rows) {
    rows.insert(
        rows.end(),
        {{ActionId::speedDown, "Sound", "", "Slower", {key(Qt::Key_Minus)}, kRepeats, "Slower [−]", "Slower"},
         {ActionId::speedUp,
          "Sound",
          "",
          "Faster",
          {key(Qt::Key_Equal), key(Qt::Key_Plus)},
          kRepeats,
          "Faster [+]",
          "Faster"},
         soundRow(ActionId::speed05, "Speed", "0.5", {key(Qt::Key_1)}, "Half speed [1]", "Speed 0.5"),
         soundRow(ActionId::speed075, "Speed", "0.75", {key(Qt::Key_2)}, "Three quarters of the speed [2]",
                  "Speed 0.75"),
         soundRow(ActionId::speedReset, "Speed", "Normal", {key(Qt::Key_3)}, "Back to normal speed [3]", "Reset speed"),
         soundRow(ActionId::speed150, "Speed", "1.5", {key(Qt::Key_4)}, "One and a half times the speed [4]",
                  "Speed 1.5"),
         soundRow(ActionId::speed20, "Speed", "2.0", {key(Qt::Key_5)}, "Double speed [5]", "Speed 2.0"),
         {ActionId::semiToneDown,
          "Sound",
          "",
          "Semitone Down",
          {key(Qt::Key_F)},
          kOnce,
          "Down a semitone [F]",
          "Semitone down",
          "",
          true},
         soundRow(ActionId::semiToneUp, "", "Semitone Up", {key(Qt::Key_S)}, "Up a semitone [S]", "Semitone up"),
         soundRow(ActionId::pitchReset, "", "Original Pitch", {key(Qt::Key_N)}, "Original pitch [N]", "Reset pitch")});
}

void addVolumeAndTone(Rows& rows) {
    rows.insert(rows.end(),
                {{ActionId::silence, "Sound", "Gain", "Silent", {key(Qt::Key_M)}, kOnce, "", ""},
                 {ActionId::resetGain, "Sound", "Gain", "Reset", {key(Qt::Key_G)}, kOnce, "", ""},
                 controlRow(ActionId::volumeMin, "Silent [M]", "Gain least"),
                 controlRow(ActionId::gainReset, "Reset gain [G]", "Reset gain"),
                 soundRow(ActionId::volumeMax, "Gain", "Full", {}, "Full", "Gain most"),
                 soundRow(ActionId::balanceLeftMax, "Balance", "Left", {}, "Full left", "Balance left"),
                 soundRow(ActionId::balanceReset, "Balance", "Centre", {key(Qt::Key_C)}, "Centre [C]", "Reset balance"),
                 soundRow(ActionId::balanceRightMax, "Balance", "Right", {}, "Full right", "Balance right"),
                 soundRow(ActionId::bassMin, "Bass", "Least", {}, "Least bass", "Bass least"),
                 soundRow(ActionId::bassReset, "Bass", "Reset", {}, "Reset bass", "Reset bass"),
                 soundRow(ActionId::bassMax, "Bass", "Most", {}, "Most bass", "Bass most"),
                 soundRow(ActionId::trebleMin, "Treble", "Least", {}, "Least treble", "Treble least"),
                 soundRow(ActionId::trebleReset, "Treble", "Reset", {}, "Reset treble", "Reset treble"),
                 soundRow(ActionId::trebleMax, "Treble", "Most", {}, "Most treble", "Treble most"),
                 {ActionId::resetSound, "Sound", "", "Reset All", {ctrl(Qt::Key_0)}, kOnce, "", "", "", true},
                 controlRow(ActionId::resetAudio, "Put every sound control back [Ctrl+0]", "Reset all sound")});
}

void addLoop(Rows& rows) {
    rows.insert(rows.end(), {{ActionId::loopSwitch,
                              "Loop",
                              "",
                              "Loop A–B",
                              {key(Qt::Key_L)},
                              kOnce,
                              "Repeat from A to B [L]",
                              "Loop A to B"},
                             {ActionId::markAUpdate,
                              "Loop",
                              "",
                              "Mark A",
                              {key(Qt::Key_BracketLeft), key(Qt::Key_A)},
                              kOnce,
                              "Set A here [[ or A]",
                              "Set A"},
                             {ActionId::markBUpdate,
                              "Loop",
                              "",
                              "Mark B",
                              {key(Qt::Key_BracketRight), key(Qt::Key_B)},
                              kOnce,
                              "Set B here [] or B]",
                              "Set B"},
                             {ActionId::resetMarks,
                              "Loop",
                              "",
                              "Reset Marks",
                              {shift(Qt::Key_L)},
                              kOnce,
                              "Put A at the start and B at the end [Shift+L]",
                              "Reset marks"}});
}

void addWindow(Rows& rows) {
    rows.push_back({ActionId::displayLevels,
                    "Window",
                    "",
                    "Level Meters",
                    {ctrl(Qt::Key_1)},
                    kOnce,
                    "Show or hide the level meters [Ctrl+1]",
                    "Level meters"});
    rows.push_back({ActionId::displayInfo,
                    "Window",
                    "",
                    "Track Information",
                    {ctrl(Qt::Key_2), ctrl(Qt::Key_I)},
                    kOnce,
                    "Show or hide what the track says of itself [Ctrl+2 or Ctrl+I]",
                    "Track information"});
    rows.push_back({ActionId::displayVideo, "Window", "", "Video", {ctrl(Qt::Key_3)}, kOnce, "", ""});
    rows.push_back(
        {ActionId::fillScreenWithVideo, "Window", "", "Full-Screen Video", {key(Qt::Key_F11)}, kOnce, "", ""});
    rows.push_back({ActionId::audioRecordOpen,
                    "Window",
                    "",
                    "Recording",
                    {ctrl(Qt::Key_4)},
                    kOnce,
                    "Show the recording window [Ctrl+4]",
                    "Recording"});
    rows.push_back({ActionId::displayAudioRecordWindow, "Window", "", "Recorder", {ctrl(Qt::Key_5)}, kOnce, "", ""});
    rows.push_back({ActionId::displayTrackFormat, "Window", "", "Track Format", {ctrlShift(Qt::Key_F)}, kOnce, "", ""});
    rows.push_back({ActionId::goToPlayList,
                    "Window",
                    "",
                    "Go to the Play List",
                    {key(Qt::Key_F6)},
                    kOnce,
                    "Letters lead to tracks there [F6]",
                    "Go to the play list"});
    rows.push_back({ActionId::toggleToolbar, "Window", "", "Show Toolbar", {ctrlShift(Qt::Key_T)}, kOnce, "", ""});
    rows.push_back({ActionId::useMessageButton,
                    "Window",
                    "",
                    "Use the Message's Button",
                    {key(Qt::Key_F8)},
                    kOnce,
                    "Do what the message offers [F8]",
                    "",
                    "",
                    true});
}

void addHelp(Rows& rows) {
    rows.push_back({ActionId::displayShortcuts,
                    "Help",
                    "",
                    "Keyboard Shortcuts",
                    {key(Qt::Key_F1), ctrl(Qt::Key_Question)},
                    kOnce,
                    "Every key, and what it does [F1]",
                    "Keyboard shortcuts"});
    rows.push_back({ActionId::displayGuide, "Help", "", "Guide", {}, kOnce, "", ""});
    rows.push_back({ActionId::checkSoftwareUpdate, "Help", "", "Check for Updates…", {}, kOnce, "", ""});
    rows.push_back({ActionId::displayAboutPanel, "Help", "", "About Quillmere", {}, kOnce, "", ""});
}

void addRecorderButtons(Rows& rows) {
    rows.push_back(
        {ActionId::audioRecordClose, "", "", "", {}, kOnce, "Close; a recording is stopped first [Esc]", "Close"});
    rows.push_back({ActionId::toggleRecordSession, "", "", "", {}, kOnce, "Start or stop recording", "Record"});
}

void addSliders(Rows& rows) {
    rows.insert(
        rows.end(),
        {controlRow(ActionId::cueUpdate, "Drag to move through the track", "Position"),
         controlRow(ActionId::speedUpdate, "Speed and direction", "Speed"),
         controlRow(ActionId::pitchUpdate, "Pitch in cents", "Pitch"), controlRow(ActionId::gainUpdate, "Gain", "Gain"),
         controlRow(ActionId::balanceUpdate, "Balance", "Balance"), controlRow(ActionId::bassUpdate, "Bass", "Bass"),
         controlRow(ActionId::trebleUpdate, "Treble", "Treble")});
}

void addPreferences(Rows& rows) {
    rows.insert(
        rows.end(),
        {controlRow(ActionId::toggleGeneralPreferenceView, "Turn on/off the audio level indicators.", "General"),
         controlRow(ActionId::toggleUpdatePreferenceView, "Turn on/off the automatic software update check.",
                    "Software Update"),
         controlRow(ActionId::toggleAudioDefaultPreferenceView, "Set the audio level used when Quillmere starts up.",
                    "Volume"),
         controlRow(ActionId::toggleAudioLevelsPref, "", "Show level indicators"),
         controlRow(ActionId::toggleTextColor, "", "Colour of scale labels"),
         controlRow(ActionId::toggleSoftwareUpdateCheck, "", "Check for updates when Quillmere starts"),
         controlRow(ActionId::updateDefaultAudioPref, "", "Use current gain")});
}

}  // namespace

const std::vector<ActionRow>& actionRows() {
    static const Rows rows = [] {
        Rows all;
        addFile(all);
        addEdit(all);
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
