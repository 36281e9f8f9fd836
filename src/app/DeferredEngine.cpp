#include "app/DeferredEngine.h"

#include <QCoreApplication>
#include <QLibrary>

#include "app/LiveWait.h"
#include "engine/api/Log.h"

namespace qm {

namespace {

// Null, with a log line, when that fails. All symbols are resolved here, so that no sound thread ever has to.
const EngineModule* loadModule(const QString& path) {
    QLibrary library(path);
    library.setLoadHints(QLibrary::ResolveAllSymbolsHint);
    const auto entry = reinterpret_cast<EngineModuleEntry>(library.resolve(kEngineModuleEntry));
    if (entry) {
        const EngineModule* module = entry();
        module->setLogSink(qmLog);
        return module;
    }
    qmLog("the media engine cannot be loaded: " + library.errorString().toStdString());
    return nullptr;
}

}  // namespace

DeferredEngine::DeferredEngine(MovieRegistry& movies, QString modulePath)
    : m_movies(movies), m_modulePath(std::move(modulePath)) {}

QString DeferredEngine::installedModule() {
    return QCoreApplication::applicationDirPath() + QStringLiteral("/../" QUILLMERE_MODULE_FOLDER "/quillmere-engine");
}

void DeferredEngine::load() {
    if (m_module || m_loading.valid()) return;
    m_loading = std::async(std::launch::async, loadModule, m_modulePath);
}

const EngineModule* DeferredEngine::module() {
    load();
    waitWithLiveWindow([this](std::chrono::milliseconds longest) {
        return !m_loading.valid() || m_loading.wait_for(longest) == std::future_status::ready;
    });
    if (m_loading.valid()) m_module = m_loading.get();
    return m_module;
}

Result<std::unique_ptr<QTMovie>> DeferredEngine::movieWithFile(const std::string& path) {
    if (!m_engine && module() && !m_engine) m_engine = m_module->makeMediaEngine(m_movies, waitWithLiveWindow);
    if (m_engine) return m_engine->movieWithFile(path);
    qmLog("cannot open " + path + ": there is no media engine");
    return Error{ErrorCategory::Device, "there is no media engine"};
}

void DeferredEngine::giveUpOpening() {
    if (m_engine) m_engine->giveUpOpening();
}

}  // namespace qm
