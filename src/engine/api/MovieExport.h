// A movie on its way into a file, on a thread of its own. Main thread only. A failure is a log
// line and a reason to tell, and nothing is left of a file that was not finished.
#pragma once

#include <string>

namespace qm {

class MovieExport {
public:
    virtual ~MovieExport() = default;  // cancels; the thread ends when it has noticed, and nobody waits for it

    virtual double progress() const = 0;      // 0 to 1
    virtual bool isFinished() const = 0;      // the file is there, whole; or nothing is, and nothing will be
    virtual std::string failure() const = 0;  // once finished: why nothing is there; empty if the file is
    virtual void cancel() = 0;                // what has been written is gone, unless its folder does not answer
};

}  // namespace qm
