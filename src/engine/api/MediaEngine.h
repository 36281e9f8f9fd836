// The one interface between the program and its media engine: opening movies, the calls on movie handles and the
// tags of a file. Tests build the program against a fake of it. Main thread only.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
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

class MediaEngine : public MovieToolbox, public MetaDataToolbox {
public:
    // Opens a media file as a movie at position 0, stopped. `path` is in the file system's own encoding.
    virtual Result<std::unique_ptr<QTMovie>> movieWithFile(const std::string& path) = 0;
};

}  // namespace qm
