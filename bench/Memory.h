// How much memory the process holds at this moment.
#pragma once

#include <fstream>
#include <string>

namespace qm::bench {

inline double residentMiB() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with("VmRSS:")) return std::stod(line.substr(6)) / 1024;
    return 0;
}

}  // namespace qm::bench
