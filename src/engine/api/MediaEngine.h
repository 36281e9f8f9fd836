// The one interface between the program and its media engine: opening movies, the calls on movie handles and the
// metadata items of a file. Tests build the program against a fake of it. Main thread only.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "engine/api/MovieToolbox.h"
#include "engine/api/QTMovie.h"
#include "engine/api/Result.h"

namespace qm {

// One tag as the file stores it, in the file's order.
struct MetaDataItem {
    std::string key;    // raw bytes
    std::string value;  // raw bytes, meant as UTF-8
};

class MediaEngine : public MovieToolbox {
public:
    // Opens a media file as a movie at position 0, stopped. `path` is in the file system's own encoding.
    virtual Result<std::unique_ptr<QTMovie>> movieWithFile(const std::string& path) = 0;

    // The metadata items of the movie's file, in file order; empty when it has none or they cannot be read.
    virtual std::vector<MetaDataItem> QTCopyMovieMetaData(Movie movie) = 0;
};

}  // namespace qm
