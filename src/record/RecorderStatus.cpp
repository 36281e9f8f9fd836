#include "record/RecorderStatus.h"

namespace qm {

namespace {

QString textOf(const RecorderState& recorder, bool recording) {
    if (!recording)
        return lacksInput(recorder) ? QStringLiteral("No sound input found.") : QStringLiteral("Ready to record");
    const auto error = recorder.captureMovieFileOutput ? recorder.captureMovieFileOutput->error() : std::nullopt;
    if (!error) return QStringLiteral("Recording from the default input");
    return error->category == ErrorCategory::Device
               ? QStringLiteral("The sound input has gone. Stop to keep the recording.")
               : QStringLiteral("The disk takes no more. Stop to keep the recording.");
}

}  // namespace

bool lacksInput(const RecorderState& recorder) {
    return recorder.captureSession && (!recorder.captureMovieFileOutput || recorder.inputGaveNothing);
}

RecorderStatus recorderStatus(const RecorderState& recorder, bool recording) {
    RecorderStatus status;
    status.recording = recording;
    status.hasInput = !lacksInput(recorder);
    status.text = textOf(recorder, recording);
    if (recorder.captureSession) status.levels = recorder.captureSession->audioLevels();
    return status;
}

}  // namespace qm
