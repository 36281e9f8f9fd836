// Tool tips for text that comes from outside. Main thread only.
#pragma once

#include <QString>

namespace qm {

// The text as a tool tip that shows it letter by letter: the toolkit would take a name with a tag in it for markup.
QString plainToolTip(const QString& text);

}  // namespace qm
