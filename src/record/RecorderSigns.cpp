#include "record/RecorderSigns.h"

namespace qm {

namespace {

QString statusOf(const RecorderState& recorder, bool recording) {
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

RecorderSigns signsOf(const RecorderState& recorder, bool recording) {
    RecorderSigns signs;
    signs.recording = recording;
    signs.hasInput = !lacksInput(recorder);
    signs.status = statusOf(recorder, recording);
    if (recorder.captureSession) signs.levels = recorder.captureSession->audioLevels();
    return signs;
}

}  // namespace qm
