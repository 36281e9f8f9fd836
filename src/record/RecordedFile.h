// What becomes of a finished recording: it is kept under the name that the user chooses. Main thread only.
#pragma once

#include <QString>
#include <functional>
#include <optional>

class QWidget;

namespace qm {

// Asks for a name in the place of the toolkit's panel. The chosen path, or none if it was cancelled.
using RunSavePanel = std::function<std::optional<QString>(QWidget* parent, const QString& folder, const QString& name)>;

// Moves the file, also to another disk, and replaces one of that name. A failure leaves the recording where it is and a
// log line. The windows stay alive meanwhile, but take no input.
void moveRecording(const QString& from, const QString& to);

}  // namespace qm
