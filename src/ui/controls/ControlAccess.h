// Tells assistive tools what the painted controls are: buttons that are on or off, sliders with a value in words,
// texts, pictures and groups. Main thread only.
#pragma once

namespace qm {

// Makes the controls of the program known to them; call once there is an application. Further calls do nothing.
void makeControlsAccessible();

}  // namespace qm
