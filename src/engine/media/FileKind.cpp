#include "engine/media/FileKind.h"

extern "C" {
#include <libavcodec/ac3_parser.h>
}

#include <algorithm>
#include <array>
#include <string_view>

#include "engine/media/Id3Header.h"

namespace qm {

namespace {

constexpr std::size_t kHeadBytes = 12;

// AC-3 has a mark of two bytes only, so the rest of the head has to make sense.
std::string kindOfDolbyHead(const std::array<std::uint8_t, kHeadBytes>& head) {
    std::uint8_t version = 0;
    std::uint16_t frameBytes = 0;
    if (bigEndian16(head.data()) != 0x0b77 ||
        av_ac3_parse_header(head.data(), head.size(), &version, &frameBytes) < 0) {
        return "";
    }
    constexpr int kHighestOfAc3 = 10;
    return version <= kHighestOfAc3 ? "ac3" : "eac3";
}

std::string kindOfHead(const std::array<std::uint8_t, kHeadBytes>& head) {
    const auto text = [&](std::size_t from) {
        return std::string_view(reinterpret_cast<const char*>(head.data()) + from, 4);
    };
    const std::string_view first = text(0);
    const std::string_view second = text(4);
    const std::string_view third = text(8);
    if ((first == "RIFF" || first == "RF64") && third == "WAVE") {
        return "wav";
    }
    if (first == "RIFX" && third == "WAVE") {
        return "rifx";
    }
    if (first == "RIFF" && (third == "AVI " || third == "AVIX")) {
        return "avi";
    }
    if (first == "FORM" && (third == "AIFF" || third == "AIFC")) {
        return "aiff";
    }
    if (first == "caff") {
        return "caf";
    }
    if (first == "fLaC") {
        return "flac";
    }
    if (first == "OggS") {
        return "ogg";
    }
    if (first == "wvpk") {
        return "wv";
    }
    if (bigEndian32(head.data()) == 0x1a45dfa3) {
        return "matroska";
    }
    if (first == "NIST") {
        return "nistsphere";
    }
    if (bigEndian32(head.data()) == 0x3026b275 && bigEndian32(head.data() + 4) == 0x8e66cf11) {
        return "asf";
    }
    if ((bigEndian32(head.data()) & 0xffffff7f) == 0x1f07003f) {
        return "dv";
    }
    if (const std::string kind = kindOfDolbyHead(head); !kind.empty()) {
        return kind;
    }
    constexpr std::array<std::string_view, 9> kBoxes = {"ftyp", "moov", "mdat", "free", "skip",
                                                        "wide", "pnot", "udta", "uuid"};
    return std::find(kBoxes.begin(), kBoxes.end(), second) != kBoxes.end() ? "mov" : "";
}

}  // namespace

std::string fileKind(const FileBytes& file) {
    std::array<std::uint8_t, kHeadBytes> head{};
    if (file.readAt(0, head.data(), head.size()) < 8) {
        return "";
    }
    if (const auto tag = readId3Header(head.data())) {  // in front of any kind of file
        if (file.readAt(tag->tagBytes, head.data(), head.size()) < 8) {
            return "";
        }
        const std::string kind = kindOfHead(head);
        return kind == "mov" || kind == "dv" || kind == "rifx" ? "" : kind;
    }
    return kindOfHead(head);
}

}  // namespace qm
