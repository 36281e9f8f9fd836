// The engine as a module, which the program loads while it runs: everything that touches media libraries, the
// stretcher and the sound device comes with it.
#pragma once

#include <functional>
#include <memory>
#include <string_view>

#include "engine/api/MediaEngine.h"
#include "engine/api/Patience.h"
#include "engine/api/QTCapture.h"

namespace qm {

struct EngineModule {
    std::unique_ptr<MediaEngine> (*makeMediaEngine)(MovieRegistry& movies, Patience patience);
    std::unique_ptr<CaptureEngine> (*makeCaptureEngine)(Patience patience);
    void (*setLogSink)(std::function<void(std::string_view)> sink);  // the module has a log of its own
};

// The module's one symbol: a function without arguments that answers a `const EngineModule*`. Any thread.
inline constexpr char kEngineModuleEntry[] = "qmEngineModule";
using EngineModuleEntry = const EngineModule* (*)();

}  // namespace qm
