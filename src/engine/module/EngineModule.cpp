#include "engine/api/EngineModule.h"

#include "engine/api/Log.h"
#include "engine/capture/CaptureSession.h"
#include "engine/movie/FileEngine.h"

#ifdef _WIN32
#define QM_VISIBLE __declspec(dllexport)
#else
#define QM_VISIBLE __attribute__((visibility("default")))
#endif

extern "C" QM_VISIBLE const qm::EngineModule* qmEngineModule() {
    static const qm::EngineModule module{
        [](qm::MovieRegistry& movies, qm::Patience patience) -> std::unique_ptr<qm::MediaEngine> {
            return std::make_unique<qm::FileEngine>(movies, qm::openSystemOutput, std::move(patience));
        },
        [](qm::Patience patience) -> std::unique_ptr<qm::CaptureEngine> {
            return std::make_unique<qm::SystemCapture>(qm::openSystemInput, std::move(patience));
        },
        qm::setLogSink};
    return &module;
}
