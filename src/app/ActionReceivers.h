// Which of its functions do the actions of the controller and of the stand-alone recorder. Main thread only.
#pragma once

namespace qm {

class ActionTable;
class AudioRecord;
class QMController;

// Once for each table. Both have to live as long as the table is used.
void receiveActions(ActionTable& actions, QMController& controller);
void receiveActions(ActionTable& actions, AudioRecord& recorder);

}  // namespace qm
