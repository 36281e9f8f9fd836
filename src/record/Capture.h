// The steps that both recorders take with their session. Main thread only. Failures leave a log line and no message.
#pragma once

#include <QString>
#include <functional>

#include "record/RecorderState.h"

namespace qm {

// A session of the default input with a movie-file output, running. `caller` begins the log lines. What had been made
// before a failure stays in place.
void setUpCapture(RecorderState& recorder, CaptureEngine& engine, const char* caller);

// Starts the session if need be. False when there is none, or it will not run.
bool runCapture(RecorderState& recorder, const char* caller);

// A new recording in the place of any file of that name.
void recordTo(RecorderState& recorder, const QString& path);

// Finishes the file and stops the session.
void finishCapture(RecorderState& recorder);

// The repeating one-second timer of the clock.
void startRecordClock(RecorderState& recorder, const std::function<void()>& tick);

// Ends the clock; it may be its own tick that asks.
void stopRecordClock(RecorderState& recorder);

// Stores and answers what has elapsed since the start.
QString readRecordClock(RecorderState& recorder, const QDateTime& now);

}  // namespace qm
