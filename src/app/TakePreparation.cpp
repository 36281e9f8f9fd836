#include "app/TakePreparation.h"

#include "app/QMController.h"
#include "record/AudioRecord.h"
#include "record/RecorderStatus.h"
#include "ui/ActionTable.h"

namespace qm {

namespace {

const QString kSubject = QStringLiteral("recording");

bool canBegin(const RecorderState& recorder) {
    return recorder.captureSession && recorder.captureMovieFileOutput;
}

// Tells that recording cannot begin without an input.
void tellNoInput(QMController& controller, const RecorderState& recorder) {
    const QString text = recorder.captureMovieFileOutput
                             ? QStringLiteral("The sound input does not start, so nothing is recorded")
                             : QStringLiteral("There is no sound input: connect one, then start Quillmere again");
    controller.notices().tell({text, {}, {}, kSubject});
}

// The session is opened first, then what stands in the recording's place is set aside.
bool prepareMain(ActionTable& actions, QMController& controller) {
    if (controller.isRecording) return true;
    if (!controller.captureSession) actions.send(ActionId::audioRecordOpen);
    return !canBegin(controller) || controller.takes().makeRoom(takeOnDesktop());
}

}  // namespace

void prepareTakes(ActionTable& actions, QMController& controller, AudioRecord& recorder) {
    actions.setPreparation(ActionId::audioStartRecord,
                           [&actions, &controller] { return prepareMain(actions, controller); });
    actions.setPreparation(ActionId::toggleRecordSession, [&controller, &recorder] {
        const bool begins = !recorder.recordingStatus && canBegin(recorder);
        return !begins || controller.takes().makeRoom(takeInSupportFolder());
    });
    controller.takes().setIsBeingMade(
        [&recorder](const QString& path) { return recorder.recordingStatus && path == takeInSupportFolder(); });
    QObject::connect(&actions, &ActionTable::sent, &controller, [&controller, &recorder](ActionId id) {
        const bool isMain = id == ActionId::audioStartRecord && !controller.isRecording;
        const bool isOwn = id == ActionId::toggleRecordSession && !recorder.recordingStatus;
        if (isMain && lacksInput(controller)) tellNoInput(controller, controller);
        if (isOwn && lacksInput(recorder)) tellNoInput(controller, recorder);
    });
}

}  // namespace qm
