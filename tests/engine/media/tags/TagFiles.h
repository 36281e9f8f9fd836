// Files with tags, made byte by byte.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "engine/media/MediaFiles.h"

namespace qm::test {

using FileContent = std::vector<std::uint8_t>;

// ID3v2. A frame's body is what stands behind its header.
FileContent id3Frame(int version, const std::string& name, const std::string& body, int flags = 0);
FileContent id3Tag(int version, const std::vector<FileContent>& frames, int flags = 0);
std::string unsynchronised(const std::string& bytes);  // with a zero byte behind every 0xff
std::string utf16(const std::u16string& text, bool big, bool mark);

// A few frames of MPEG audio, silent.
FileContent mpegAudio();
FileContent mp3WithTag(const FileContent& tag);

FileContent id3v1Tag(const std::string& title, const std::string& artist, const std::string& album);

struct Named {
    std::string name;
    std::string value;
};

FileContent apeTag(const std::vector<Named>& items);
FileContent infoList(const std::vector<Named>& items);  // a LIST chunk
FileContent riffChunk(const std::string& name, const FileContent& content);
FileContent aiffChunk(const std::string& name, const FileContent& content);
FileContent waveWithChunks(const FileContent& beforeData, const FileContent& afterData);
FileContent aiffWithChunks(const FileContent& chunks);
FileContent cafWithInfo(const std::vector<Named>& items);
FileContent asfFile(const std::string& title, const std::string& author, const std::vector<Named>& extended);

// Movie files: what is put into "moov".
FileContent movieFile(const FileContent& movieContent);
FileContent listItem(const std::string& key, const std::string& value, std::uint32_t type = 1);
FileContent freeItem(const std::string& mean, const std::string& name, const std::string& value);
FileContent itemList(const std::vector<FileContent>& items);  // user data with a meta box
FileContent userText(const std::string& key, const std::string& text, int language = 0);
FileContent userData(const std::vector<FileContent>& entries);

FileContent joined(const std::vector<FileContent>& parts);
FileContent bytesOf(const std::string& text);

}  // namespace qm::test
