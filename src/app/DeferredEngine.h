// The media engine, out of the program's way until it is needed: its module is loaded in the background once the window
// stands, or by the first movie that is opened, which then waits for it. Without the module, as after a broken
// installation, every file is one that cannot be opened, and the log says why. Main thread only.
#pragma once

#include <QString>
#include <future>
#include <memory>

#include "engine/api/EngineModule.h"

namespace qm {

class DeferredEngine : public MediaEngine {
public:
    // Its movies stand in the registry.
    explicit DeferredEngine(MovieRegistry& movies, QString modulePath = installedModule());

    void load();                   // begins, and returns at once
    const EngineModule* module();  // waits for it with a living window; null if it cannot be loaded

    Result<std::unique_ptr<QTMovie>> movieWithFile(const std::string& path) override;
    void giveUpOpening() override;

    static QString installedModule();  // the path of the module that belongs to this program

private:
    MovieRegistry& m_movies;
    const QString m_modulePath;
    std::future<const EngineModule*> m_loading;
    const EngineModule* m_module = nullptr;
    std::unique_ptr<MediaEngine> m_engine;
};

}  // namespace qm
