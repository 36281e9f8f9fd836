#include "engine/export/Exports.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <limits>

namespace qm::test {

std::string exportFailure(const std::string& source, const std::string& target) {
    auto file = FileBytes::open(source);
    auto made = TargetFile::create(target);
    if (!file || !made) return !file ? file.error().message : made.error().message;
    ExportMonitor monitor;
    auto failure = exportMovie(file.value(), *made.value(), 1, monitor);
    if (!failure) failure = made.value()->commit();
    return failure ? failure->message : "";
}

std::string exported(const TemporaryFolder& folder, const std::string& source, float rate) {
    const std::string target = folder.file("exported.mov");
    auto file = FileBytes::open(source);
    REQUIRE(file);
    auto made = TargetFile::create(target);
    REQUIRE(made);
    ExportMonitor monitor;
    const auto failure = exportMovie(file.value(), *made.value(), rate, monitor);
    REQUIRE_MESSAGE(!failure, (failure ? failure->message : ""));
    REQUIRE(!made.value()->commit());
    CHECK(monitor.progress == 1);
    return target;
}

double largestDifference(const std::vector<float>& a, const std::vector<float>& b) {
    if (a.size() != b.size()) return std::numeric_limits<double>::infinity();
    const auto held = [](float sample) { return static_cast<double>(std::clamp(sample, -1.0f, 32767.0f / 32768)); };
    double largest = 0;
    for (std::size_t i = 0; i < a.size(); ++i) largest = std::max(largest, std::abs(held(a[i]) - held(b[i])));
    return largest;
}

std::vector<float> wholeSound(const std::string& path) {
    const auto sound = openSound(path);
    return sound ? readLinearly(*sound) : std::vector<float>{};
}

std::vector<std::string> probed(const std::string& path, const std::string& entries) {
    const std::string command = "ffprobe -v quiet -of compact=p=0:nk=1 -show_entries " + entries + " '" + path + "'";
    std::FILE* pipe = ::popen(command.c_str(), "r");
    std::vector<std::string> lines;
    char line[1000];
    while (pipe && std::fgets(line, sizeof line, pipe)) {
        std::string text = line;
        text.erase(text.find_last_not_of("\n|") + 1);
        if (!text.empty()) lines.push_back(text);
    }
    if (pipe) ::pclose(pipe);
    return lines;
}

std::vector<std::string> hiddenFiles(const std::string& folder) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        const std::string name = entry.path().filename().string();
        if (name.starts_with('.')) names.push_back(name);
    }
    return names;
}

}  // namespace qm::test
