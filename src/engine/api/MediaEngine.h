// Opening media files as movies. Tests build the program against a fake of this and of QTMovie. Main thread only.
#pragma once

#include <memory>
#include <string>

#include "engine/api/QTMovie.h"
#include "engine/api/Result.h"

namespace qm {

class MediaEngine {
public:
    virtual ~MediaEngine() = default;

    // Opens a media file as a movie at position 0, stopped. `path` is in the file system's own encoding.
    // A file that does not answer for some seconds is an error of the category NoAnswer.
    virtual Result<std::unique_ptr<QTMovie>> movieWithFile(const std::string& path) = 0;

    // Asked while movieWithFile() waits: what it is opening is not wanted any more, and it returns with an error.
    virtual void giveUpOpening() {}
};

}  // namespace qm
