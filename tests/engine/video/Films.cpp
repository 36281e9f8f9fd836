#include "engine/video/Films.h"

#include <algorithm>
#include <cstdlib>

#include "engine/media/MediaFiles.h"

namespace qm::test {

namespace {

constexpr int kFields = 12;

class ComputedReader : public VideoReader {
public:
    explicit ComputedReader(ComputedFilm& film) : m_film(film) {}

    bool seek(double seconds) override {
        ++m_film.seeks;
        const int shown = static_cast<int>(std::floor((seconds - m_film.first) * m_film.perSecond + 1e-6));
        m_next = std::clamp(shown, 0, m_film.pictures - 1) / m_film.group * m_film.group;
        return true;
    }

    bool gainsBySeeking(double from, double to) override {
        const auto groupOf = [&](double time) {
            return std::floor((time - m_film.first) * m_film.perSecond / m_film.group + 1e-6);
        };
        return groupOf(to) > groupOf(from);
    }

    Outcome next(RawPicture& picture, double, std::int64_t mostPixels) override {
        if (m_next >= m_film.pictures) {
            return Outcome::End;
        }
        m_film.onDecode();
        ++m_film.reads;
        picture.seconds = m_film.first + m_next++ / m_film.perSecond;
        picture.bytes = m_film.bytesPerPicture;
        picture.pixels = m_film.pixels;
        picture.reduced = false;
        picture = reduced(picture, mostPixels);
        return Outcome::Picture;
    }

    double secondsPerPicture() const override { return 1 / m_film.perSecond; }

    RawPicture reduced(const RawPicture& picture, std::int64_t mostPixels) override {
        if (picture.pixels <= mostPixels) {
            return picture;
        }
        RawPicture smaller = picture;
        smaller.bytes = std::max<std::size_t>(picture.bytes * mostPixels / picture.pixels, 1);
        smaller.pixels = mostPixels;
        smaller.reduced = true;
        return smaller;
    }

    std::shared_ptr<const VideoPicture> convert(const RawPicture& raw, PictureSize) override {
        ++m_film.conversions;
        auto picture = std::make_shared<VideoPicture>();
        picture->seconds = raw.seconds;
        return picture;
    }

private:
    ComputedFilm& m_film;
    int m_next = 0;
};

}  // namespace

VideoOpener ComputedFilm::opener() {
    return [this] { return std::make_unique<ComputedReader>(*this); };
}

int numberOf(const VideoPicture& picture) {
    int number = 0;
    for (int field = 0; field < kFields; ++field) {
        const int x = (2 * field + 1) * picture.width / (2 * kFields);
        const std::uint32_t pixel = picture.pixels[std::size_t(picture.height / 2) * picture.width + x];
        const int green = static_cast<int>(pixel >> 8 & 0xff);
        if (green > 64 && green < 192) {
            return -1;
        }
        number |= green >= 192 ? 1 << field : 0;
    }
    return number;
}

namespace {

// `more` are further options of the source.
std::string numberedPictures(const std::string& rate, const std::string& size, const std::string& more = {}) {
    return "-f lavfi -i \"color=c=black:s=" + size + ":r=" + rate + more +
           ",geq=lum='16+219*mod(floor(N/pow(2\\,floor(12*X/W)))\\,2)':cb=128:cr=128\" ";
}

}  // namespace

bool makeFilm(const std::string& path, int pictures, const std::string& rate, const std::string& coding,
              const std::string& size) {
    return encode(numberedPictures(rate, size) + "-f lavfi -i sine=frequency=440:sample_rate=44100 -frames:v " +
                      std::to_string(pictures) + " -shortest " + coding,
                  path);
}

bool makeUnevenFilm(const std::string& path, int pictures, double toneSeconds, const std::string& coding) {
    return encode(numberedPictures("25", "192x64", ":d=" + std::to_string(pictures / 25.0)) +
                      "-f lavfi -i sine=frequency=440:sample_rate=44100:duration=" + std::to_string(toneSeconds) + " " +
                      coding,
                  path);
}

}  // namespace qm::test
