// Tells assistive tools what a slider says: its value in words, its bounds, and how to move it. Main thread only.
#pragma once

namespace qm {

// Makes every slider of the program known to them; further calls do nothing.
void makeSlidersAccessible();

}  // namespace qm
