#include "app/ActionReceivers.h"

#include "app/QMController.h"
#include "record/AudioRecord.h"
#include "ui/actions/ActionTable.h"

namespace qm {

namespace {

struct Act {
    ActionId id;
    void (QMController::*act)();
};

struct SliderAct {
    ActionId id;
    void (QMController::*act)(double value);
};

constexpr Act kActs[] = {
    {ActionId::openFile, &QMController::openFile},
    {ActionId::openAnySound, &QMController::openAnySound},
    {ActionId::exportMovie, &QMController::exportMovie},
    {ActionId::cancelExport, &QMController::cancelExport},
    {ActionId::audioStartRecord, &QMController::audioStartRecord},
    {ActionId::undo, &QMController::undo},
    {ActionId::removeListEntry, &QMController::removeListEntry},
    {ActionId::clearList, &QMController::clearList},
    {ActionId::openPrefsWindow, &QMController::openPrefsWindow},
    {ActionId::toggleStartStop, &QMController::toggleStartStop},
    {ActionId::playForward, &QMController::playForward},
    {ActionId::playBackward, &QMController::playBackward},
    {ActionId::pause, &QMController::pause},
    {ActionId::rowDoubleClicked, &QMController::rowDoubleClicked},
    {ActionId::selectTrack, &QMController::selectTrack},
    {ActionId::goToStart, &QMController::goToStart},
    {ActionId::skip1, &QMController::skip1},
    {ActionId::skip10, &QMController::skip10},
    {ActionId::skip30, &QMController::skip30},
    {ActionId::skip60, &QMController::skip60},
    {ActionId::skip300, &QMController::skip300},
    {ActionId::skipBack, &QMController::skipBack},
    {ActionId::skip_10, &QMController::skip_10},
    {ActionId::skip_60, &QMController::skip_60},
    {ActionId::speedDown, &QMController::speedDown},
    {ActionId::speedUp, &QMController::speedUp},
    {ActionId::speed05, &QMController::speed05},
    {ActionId::speed075, &QMController::speed075},
    {ActionId::speedReset, &QMController::speedReset},
    {ActionId::speed150, &QMController::speed150},
    {ActionId::speed20, &QMController::speed20},
    {ActionId::semiToneDown, &QMController::semiToneDown},
    {ActionId::semiToneUp, &QMController::semiToneUp},
    {ActionId::pitchReset, &QMController::pitchReset},
    {ActionId::volumeMin, &QMController::volumeMin},
    {ActionId::gainReset, &QMController::gainReset},
    {ActionId::volumeMax, &QMController::volumeMax},
    {ActionId::balanceLeftMax, &QMController::balanceLeftMax},
    {ActionId::balanceReset, &QMController::balanceReset},
    {ActionId::balanceRightMax, &QMController::balanceRightMax},
    {ActionId::bassMin, &QMController::bassMin},
    {ActionId::bassReset, &QMController::bassReset},
    {ActionId::bassMax, &QMController::bassMax},
    {ActionId::trebleMin, &QMController::trebleMin},
    {ActionId::trebleReset, &QMController::trebleReset},
    {ActionId::trebleMax, &QMController::trebleMax},
    {ActionId::resetAudio, &QMController::resetAudio},
    {ActionId::loopSwitch, &QMController::loopSwitch},
    {ActionId::markAUpdate, &QMController::markAUpdate},
    {ActionId::markBUpdate, &QMController::markBUpdate},
    {ActionId::resetMarks, &QMController::resetMarks},
    {ActionId::displayLevels, &QMController::displayLevels},
    {ActionId::displayInfo, &QMController::displayInfo},
    {ActionId::audioRecordOpen, &QMController::audioRecordOpen},
    {ActionId::displayTrackFormat, &QMController::displayTrackFormat},
    {ActionId::checkSoftwareUpdate, &QMController::checkSoftwareUpdate},
    {ActionId::displayAboutPanel, &QMController::displayAboutPanel},
    {ActionId::audioRecordClose, &QMController::audioRecordClose},
    {ActionId::toggleGeneralPreferenceView, &QMController::toggleGeneralPreferenceView},
    {ActionId::toggleUpdatePreferenceView, &QMController::toggleUpdatePreferenceView},
    {ActionId::toggleAudioDefaultPreferenceView, &QMController::toggleAudioDefaultPreferenceView},
    {ActionId::toggleAudioLevelsPref, &QMController::toggleAudioLevelsPref},
    {ActionId::toggleTextColor, &QMController::toggleTextColor},
    {ActionId::toggleSoftwareUpdateCheck, &QMController::toggleSoftwareUpdateCheck},
    {ActionId::updateDefaultAudioPref, &QMController::updateDefaultAudioPref},
};

constexpr SliderAct kSliderActs[] = {
    {ActionId::cueUpdate, &QMController::cueUpdate},         {ActionId::speedUpdate, &QMController::speedUpdate},
    {ActionId::pitchUpdate, &QMController::pitchUpdate},     {ActionId::gainUpdate, &QMController::gainUpdate},
    {ActionId::balanceUpdate, &QMController::balanceUpdate}, {ActionId::bassUpdate, &QMController::bassUpdate},
    {ActionId::trebleUpdate, &QMController::trebleUpdate},
};

}  // namespace

void receiveActions(ActionTable& actions, QMController& controller) {
    for (const Act& act : kActs) actions.setReceiver(act.id, controller, act.act);
    for (const SliderAct& act : kSliderActs) actions.setReceiver(act.id, controller, act.act);
}

void receiveActions(ActionTable& actions, AudioRecord& recorder) {
    actions.setReceiver(ActionId::displayAudioRecordWindow, recorder, &AudioRecord::displayAudioRecordWindow);
    actions.setReceiver(ActionId::toggleRecordSession, recorder, &AudioRecord::toggleRecordSession);
}

}  // namespace qm
