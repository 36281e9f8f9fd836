// A movie on its way into a file, on a thread of its own. Main thread only. It reports no error: a failure is a log
// line, and nothing is left of a file that was not finished.
#pragma once

namespace qm {

class MovieExport {
public:
    virtual ~MovieExport() = default;  // cancels, and waits until the thread has noticed

    virtual double progress() const = 0;  // 0 to 1
    virtual bool isFinished() const = 0;  // the file is there, whole; or nothing is, and nothing will be
    virtual bool isWritten() const = 0;   // the first of the two
    virtual void cancel() = 0;            // returns at once; what has been written is gone
};

}  // namespace qm
