#include "engine/api/Log.h"

#include <cstdio>
#include <mutex>
#include <string>

namespace qm {

namespace {

std::mutex g_mutex;
std::function<void(std::string_view)> g_sink;

}  // namespace

void qmLog(std::string_view line) {
    const std::lock_guard lock(g_mutex);
    if (g_sink) {
        g_sink(line);
        return;
    }
    const std::string text = std::string(line) + "\n";
    std::fwrite(text.data(), 1, text.size(), stderr);
}

void setLogSink(std::function<void(std::string_view)> sink) {
    const std::lock_guard lock(g_mutex);
    g_sink = std::move(sink);
}

}  // namespace qm
