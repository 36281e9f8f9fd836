// A file that comes into being whole or not at all: it is written under a name of its own beside its target, and takes
// the target's name when it is complete. A file of that name stays as it was until then. One thread writes.
#pragma once

#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "engine/api/Result.h"

namespace qm {

class TargetFile {
public:
    // The folder has to exist. Something other than a file, or a file that may not be written, is refused.
    static Result<std::unique_ptr<TargetFile>> create(const std::string& target);
    ~TargetFile();
    TargetFile(const TargetFile&) = delete;
    TargetFile& operator=(const TargetFile&) = delete;

    const std::string& name() const { return m_target; }
    int descriptor() const { return m_descriptor; }  // to read and write
    const std::string& temporaryName() const { return m_temporary; }

    // Makes sure that the bytes are on the disk and gives the file its name.
    std::optional<Error> commit();

    // Any thread, at once: nothing is left, and no commit will succeed. False if the file has its name already.
    bool abandon();

private:
    TargetFile(std::string target, std::string temporary, int descriptor);

    const std::string m_target;
    const std::string m_temporary;
    const int m_descriptor;
    std::mutex m_mutex;
    enum class State { Open, Committed, Abandoned } m_state = State::Open;
};

}  // namespace qm
