// Opens real files, to be heard on the real sound device. Main thread only.
#pragma once

#include "engine/api/MediaEngine.h"
#include "engine/api/Patience.h"
#include "engine/movie/FileMovie.h"
#include "engine/output/AudioOutput.h"

namespace qm {

class FileEngine : public MediaEngine {
public:
    // Its movies stand in the registry. With `patience`, files are opened on another thread.
    explicit FileEngine(MovieRegistry& movies, OutputFactory openOutput = openSystemOutput, Patience patience = {});

    Result<std::unique_ptr<QTMovie>> movieWithFile(const std::string& path) override;
    void giveUpOpening() override { m_isGivenUp = true; }

private:
    Result<OpenedMedia> open(const std::string& path);

    MovieRegistry& m_movies;
    const OutputFactory m_openOutput;
    const Patience m_patience;
    const std::shared_ptr<Reaper> m_reaper;  // shared with the movies
    bool m_isGivenUp = false;                // the file that is being opened
};

}  // namespace qm
