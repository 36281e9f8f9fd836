// What the controls that start a recording do first: the session is opened, and a finished recording in its place is
// set aside. That there is nothing to record from is told. Main thread only.
#pragma once

namespace qm {

class ActionTable;
class AudioRecord;
class QMController;

// All three have to live as long as the table is used.
void prepareTakes(ActionTable& actions, QMController& controller, AudioRecord& recorder);

}  // namespace qm
