// The program's one dark look: palette, font and style sheet for what the toolkit draws itself (menus, scroll bars,
// tool tips, message boxes and file panels), whatever the system's own theme is. Main thread only.
#pragma once

#include <QStyle>
#include <memory>

namespace qm {

// The style by itself. It must outlive the widgets that it is given to.
std::unique_ptr<QStyle> makeStyle();

// Call once, before the first window is built.
void applyStyle();

// For every window, now and later. Takes its time: many sizes are decoded.
void applyWindowIcon();

}  // namespace qm
