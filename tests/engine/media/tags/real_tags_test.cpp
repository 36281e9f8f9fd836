// Artist and album of files that other programs wrote, as a list beside them says. The folder is named by the
// environment.
#include <doctest/doctest.h>

#include <cstdlib>
#include <fstream>
#include <map>
#include <sstream>

#include "engine/media/tags/ReadTags.h"
#include "support/NotRun.h"

using namespace qm;
using namespace qm::test;

namespace {

using Row = std::map<std::string, std::string>;  // by the names in the first line

std::vector<std::string> cells(const std::string& line) {
    std::vector<std::string> all;
    std::istringstream rest(line);
    for (std::string cell; std::getline(rest, cell, '\t');) {
        all.push_back(cell);
    }
    return all;
}

std::vector<Row> readManifest(const std::string& folder) {
    std::ifstream file(folder + "/MANIFEST.tsv");
    std::string line;
    std::getline(file, line);
    const auto names = cells(line);
    std::vector<Row> rows;
    while (std::getline(file, line)) {
        const auto values = cells(line);
        Row row;
        for (std::size_t i = 0; i < names.size(); ++i) {
            row[names[i]] = i < values.size() ? values[i] : "";
        }
        rows.push_back(row);
    }
    return rows;
}

// Movie files are judged by their own keys, all others by the field's meaning.
std::string expected(const Row& row, const std::string& field, const std::string& firstItem) {
    const std::string& item = row.at(firstItem);
    if (!item.empty()) {
        return item.substr(item.find('=') + 1);
    }
    return row.at("container").starts_with("mov") ? "" : row.at(field);
}

// The program that made the list could neither read every file nor tell every encoding.
bool isKnown(const Row& row) {
    constexpr const char* kReplacement = "\xef\xbf\xbd";
    return row.at("container") != "-" && row.at("artist").find(kReplacement) == std::string::npos;
}

std::string firstWithKey(const std::vector<Tag>& tags, const std::string& letters, const std::string& reversed) {
    for (const Tag& tag : tags) {
        if (tag.key.find(letters) != std::string::npos || tag.key.find(reversed) != std::string::npos) {
            return tag.value;
        }
    }
    return "";
}

}  // namespace

TEST_CASE("real files give the artist and the album that they hold") {
    const char* folder = std::getenv("QUILLMERE_SAMPLE_MEDIA");
    if (!folder || !*folder) NOT_RUN_BECAUSE("there is no folder of sample media");
    const auto rows = readManifest(folder);
    int withArtist = 0;
    for (const Row& row : rows) {
        CAPTURE(row.at("file"));
        const auto tags = tagsOfFile(folder + ("/" + row.at("file")));
        if (!isKnown(row)) {
            continue;
        }
        CHECK(firstWithKey(tags, "ART", "TRA") == expected(row, "artist", "first_ART_item"));
        CHECK(firstWithKey(tags, "alb", "bla") == expected(row, "album", "first_alb_item"));
        withArtist += firstWithKey(tags, "ART", "TRA").empty() ? 0 : 1;
    }
    CHECK(withArtist > 20);
}
