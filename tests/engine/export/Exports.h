// Exporting in a test, and comparing what came out.
#pragma once

#include <doctest/doctest.h>

#include <string>
#include <vector>

#include "engine/export/ExportMovie.h"
#include "engine/media/MediaFiles.h"

namespace qm::test {

inline constexpr double kOneLsb = 1.0 / 32768;

// Writes `source` as "exported.mov" into the folder, which has to succeed, and answers its path.
std::string exported(const TemporaryFolder& folder, const std::string& source, float rate = 1);

// Why it cannot be written; empty if it can.
std::string exportFailure(const std::string& source, const std::string& target);

// The largest difference of two samples, where those beyond what 16 bits hold are cut off; more than any where the
// lengths differ.
double largestDifference(const std::vector<float>& a, const std::vector<float>& b);

std::vector<float> wholeSound(const std::string& path);

// What the program ffprobe says of the file: its answers to -show_entries, one a line.
std::vector<std::string> probed(const std::string& path, const std::string& entries);

// The names of the files in the folder that are not meant to be seen.
std::vector<std::string> hiddenFiles(const std::string& folder);

}  // namespace qm::test
