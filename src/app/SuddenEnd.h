// The ends of the program that nobody asked it for: when the screen's server has gone, the toolkit calls exit() or
// abort(), on Wayland _exit(). What must survive is kept on these ways, too.
#pragma once

#include <functional>

namespace qm {

// The toolkit's messages go into the program's log. Before the toolkit is set up.
void logToolkitMessages();

// Called at most once, on the thread that calls this, when the program ends by exit() or by a message of the toolkit
// after which it ends the program; not by _Exit(). Nothing may be asked of the screen in it.
void beforeSuddenEnd(std::function<void()> keep);

}  // namespace qm
