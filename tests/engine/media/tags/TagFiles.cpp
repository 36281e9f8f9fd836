#include "engine/media/tags/TagFiles.h"

#include <algorithm>
#include <cstring>

namespace qm::test {

namespace {

std::uint64_t synchSafe(std::size_t value) {
    return (value & 0x7f) | (value >> 7 & 0x7f) << 8 | (value >> 14 & 0x7f) << 16 | (value >> 21 & 0x7f) << 24;
}

std::string padded(std::string text, std::size_t bytes) {
    text.resize(bytes);
    return text;
}

std::string utf16Little(const std::string& ascii) {
    return utf16(std::u16string(ascii.begin(), ascii.end()) + u'\0', false, false);
}

}  // namespace

FileContent joined(const std::vector<FileContent>& parts) {
    Bytes all;
    for (const FileContent& part : parts) {
        all.add(part);
    }
    return all.get();
}

FileContent bytesOf(const std::string& text) {
    return {text.begin(), text.end()};
}

FileContent id3Frame(int version, const std::string& name, const std::string& body, int flags) {
    Bytes frame;
    frame.text(name);
    if (version == 2) {
        frame.big(body.size(), 3);
    } else {
        frame.big(version == 4 ? synchSafe(body.size()) : body.size(), 4).big(static_cast<std::uint64_t>(flags), 2);
    }
    return frame.text(body).get();
}

FileContent id3Tag(int version, const std::vector<FileContent>& frames, int flags) {
    const FileContent content = joined(frames);
    return Bytes()
        .text("ID3")
        .big(static_cast<std::uint64_t>(version), 1)
        .big(0, 1)
        .big(static_cast<std::uint64_t>(flags), 1)
        .big(synchSafe(content.size()), 4)
        .add(content)
        .get();
}

std::string unsynchronised(const std::string& bytes) {
    std::string stored;
    for (const char c : bytes) {
        stored += c;
        if (c == '\xff') {
            stored += '\0';
        }
    }
    return stored;
}

std::string utf16(const std::u16string& text, bool big, bool mark) {
    Bytes bytes;
    for (const char16_t c : mark ? u'\xfeff' + text : text) {
        big ? bytes.big(c, 2) : bytes.little(c, 2);
    }
    return {bytes.get().begin(), bytes.get().end()};
}

FileContent mpegAudio() {
    constexpr int kFrames = 4, kFrameBytes = 417;
    Bytes frames;
    for (int i = 0; i < kFrames; ++i) {
        frames.big(0xfffb9064, 4).repeat(0, kFrameBytes - 4);
    }
    return frames.get();
}

FileContent mp3WithTag(const FileContent& tag) {
    return joined({tag, mpegAudio()});
}

FileContent id3v1Tag(const std::string& title, const std::string& artist, const std::string& album) {
    return Bytes().text("TAG" + padded(title, 30) + padded(artist, 30) + padded(album, 30)).repeat(0, 35).get();
}

FileContent apeTag(const std::vector<Named>& items) {
    Bytes content;
    for (const Named& item : items) {
        content.little(item.value.size(), 4).little(0, 4).text(item.name).little(0, 1).text(item.value);
    }
    return Bytes()
        .add(content.get())
        .text("APETAGEX")
        .little(2000, 4)
        .little(content.get().size() + 32, 4)
        .little(items.size(), 4)
        .repeat(0, 12)
        .get();
}

FileContent riffChunk(const std::string& name, const FileContent& content) {
    return Bytes().text(name).little(content.size(), 4).add(content).repeat(0, content.size() % 2).get();
}

FileContent infoList(const std::vector<Named>& items) {
    Bytes list;
    list.text("INFO");
    for (const Named& item : items) {
        list.add(riffChunk(item.name, bytesOf(item.value + '\0')));
    }
    return riffChunk("LIST", list.get());
}

FileContent aiffChunk(const std::string& name, const FileContent& content) {
    return Bytes().text(name).big(content.size(), 4).add(content).repeat(0, content.size() % 2).get();
}

FileContent waveWithChunks(const FileContent& beforeData, const FileContent& afterData) {
    constexpr std::ptrdiff_t kHead = 36;
    const FileContent wave = waveFile(1, 44100, 500, SampleFormat::Int16);
    return joined({{wave.begin(), wave.begin() + kHead}, beforeData, {wave.begin() + kHead, wave.end()}, afterData});
}

FileContent aiffWithChunks(const FileContent& chunks) {
    return joined({aiffFile(1, 44100, 500), chunks});
}

FileContent cafWithInfo(const std::vector<Named>& items) {
    Bytes info;
    info.big(items.size(), 4);
    for (const Named& item : items) {
        info.text(item.name).big(0, 1).text(item.value).big(0, 1);
    }
    return Bytes().add(cafFile(1, 44100, 500)).text("info").big(info.get().size(), 8).add(info.get()).get();
}

FileContent asfFile(const std::string& title, const std::string& author, const std::vector<Named>& extended) {
    const auto object = [](std::uint64_t high, std::uint64_t low, const FileContent& content) {
        return Bytes().big(high, 8).big(low, 8).little(24 + content.size(), 8).add(content).get();
    };
    const std::string titleText = utf16Little(title);
    const std::string authorText = utf16Little(author);
    Bytes description;
    description.little(titleText.size(), 2).little(authorText.size(), 2).repeat(0, 6).text(titleText + authorText);
    Bytes values;
    values.little(extended.size(), 2);
    for (const Named& item : extended) {
        const std::string name = utf16Little(item.name);
        const std::string value = utf16Little(item.value);
        values.little(name.size(), 2).text(name).little(0, 2).little(value.size(), 2).text(value);
    }
    const FileContent objects = joined({object(0x3326b2758e66cf11, 0xa6d900aa0062ce6c, description.get()),
                                        object(0x40a4d0d207e3d211, 0x97f000a0c95ea850, values.get())});
    return Bytes()
        .big(0x3026b2758e66cf11, 8)
        .big(0xa6d900aa0062ce6c, 8)
        .little(30 + objects.size(), 8)
        .little(2, 4)
        .little(0x0201, 2)
        .add(objects)
        .get();
}

FileContent movieFile(const FileContent& movieContent) {
    return joined({box("ftyp", Bytes().text("M4A ").big(0, 4).get()), box("moov", movieContent)});
}

FileContent listItem(const std::string& key, const std::string& value, std::uint32_t type) {
    return box(key, box("data", Bytes().big(type, 4).big(0, 4).text(value).get()));
}

FileContent freeItem(const std::string& mean, const std::string& name, const std::string& value) {
    return box("----",
               joined({box("mean", Bytes().big(0, 4).text(mean).get()), box("name", Bytes().big(0, 4).text(name).get()),
                       box("data", Bytes().big(1, 4).big(0, 4).text(value).get())}));
}

FileContent itemList(const std::vector<FileContent>& items) {
    const FileContent handler = box("hdlr", Bytes().repeat(0, 8).text("mdir").repeat(0, 13).get());
    return box("udta", box("meta", joined({Bytes().big(0, 4).get(), handler, box("ilst", joined(items))})));
}

FileContent userText(const std::string& key, const std::string& text, int language) {
    return box(key, Bytes().big(text.size(), 2).big(static_cast<std::uint64_t>(language), 2).text(text).get());
}

FileContent userData(const std::vector<FileContent>& entries) {
    return box("udta", Bytes().add(joined(entries)).big(0, 4).get());
}

}  // namespace qm::test
