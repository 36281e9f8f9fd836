// The one interface between the program and its media engine: opening movies, the calls on movie handles and the
// tags of a file. Tests build the program against a fake of it. Main thread only.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "engine/api/MetaData.h"
#include "engine/api/MovieToolbox.h"
#include "engine/api/QTMovie.h"
#include "engine/api/Result.h"

namespace qm {

// How the main thread waits for work that another thread does for it: asks `isDone`, which waits so long at most, until
// it is, and may do something else in between.
using IsDone = std::function<bool(std::chrono::milliseconds longest)>;
using Patience = std::function<void(const IsDone& isDone)>;

// How the sound output of the current movie does.
enum class SoundOutput {
    Works,
    Absent,         // there is none: time goes on in silence
    DoesNotAnswer,  // it takes no sound, or has been waited for too long
};

class MediaEngine : public MovieToolbox, public MetaDataToolbox {
public:
    // Opens a media file as a movie at position 0, stopped. `path` is in the file system's own encoding.
    // A file that does not answer for some seconds is an error of the category NoAnswer.
    virtual Result<std::unique_ptr<QTMovie>> movieWithFile(const std::string& path) = 0;

    // Asked while movieWithFile() waits: what it is opening is not wanted any more, and it returns with an error.
    virtual void giveUpOpening() {}

    virtual std::optional<SoundOutput> soundOutput() const { return std::nullopt; }  // none: not known
};

}  // namespace qm
