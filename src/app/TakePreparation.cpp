#include "app/TakePreparation.h"

#include "app/QMController.h"
#include "record/AudioRecord.h"
#include "ui/ActionTable.h"

namespace qm {

namespace {

bool canBegin(const RecorderState& recorder) {
    return recorder.captureSession && recorder.captureMovieFileOutput;
}

}  // namespace

void prepareTakes(ActionTable& actions, QMController& controller, AudioRecord& recorder) {
    actions.setPreparation(QStringLiteral("audioStartRecord"), [&controller] {
        const bool begins = !controller.isRecording && canBegin(controller);
        return !begins || controller.takes().makeRoom(takeOnDesktop());
    });
    actions.setPreparation(QStringLiteral("toggleRecordSession"), [&controller, &recorder] {
        const bool begins = !recorder.recordingStatus && canBegin(recorder);
        return !begins || controller.takes().makeRoom(takeInSupportFolder());
    });
    controller.takes().setIsBeingMade(
        [&recorder](const QString& path) { return recorder.recordingStatus && path == takeInSupportFolder(); });
}

}  // namespace qm
