#include <doctest/doctest.h>

#include <QDir>
#include <QFontDatabase>
#include <QImage>
#include <QPainter>
#include <QRawFont>
#include <QTextLayout>
#include <algorithm>
#include <cmath>

#include "support/widgets/TestText.h"
#include "ui/controls/Fonts.h"

using namespace qm;

namespace {

struct Sample {
    const char* name;
    QString text;
    char32_t letter;  // one that a font of the test packages has
};

// Titles as they come in tags: with numbers, brackets, a Latin word, signs that belong to the letter before.
const std::vector<Sample>& samples() {
    static const std::vector<Sample> all = {{"arabic", QStringLiteral("١٢ أغنية 45 (حفلة 2019)"), U'غ'},
                                            {"hebrew", QStringLiteral("שיר 12, הופעה 1998 (live)"), U'ש'},
                                            {"thai", QStringLiteral("เพลงที่ 7 น้ำตา"), U'น'},
                                            {"japanese", QStringLiteral("第3楽章「がぎぐ」プレリュード"), U'が'},
                                            {"korean", QStringLiteral("제2악장 느리게 노래하듯이"), U'제'},
                                            {"emoji", QStringLiteral("Mix 🎸 7 🎹 end"), U'🎸'},
                                            {"combined", QStringLiteral("Cafe\u0301 n\u0303 1234 fi AV To"), U'e'}};
    return all;
}

bool canBeShown(const Sample& sample) {
    const QList<QString> families = QFontDatabase::families();
    return std::any_of(families.begin(), families.end(), [&](const QString& family) {
        const QRawFont font = QRawFont::fromFont(QFont(family));
        return font.isValid() && font.supportsCharacter(sample.letter);
    });
}

constexpr int kWidth = 460, kHeight = 40, kLeft = 10;

QImage emptyPicture(double scale) {
    QImage picture(QSize(kWidth, kHeight) * scale, QImage::Format_RGB32);
    picture.setDevicePixelRatio(scale);
    picture.fill(Qt::black);
    return picture;
}

QImage ours(const QString& text, double pixels, double scale) {
    QImage picture = emptyPicture(scale);
    QPainter painter(&picture);
    painter.setFont(uiFont(pixels));
    painter.setPen(Qt::white);
    drawLineAt(painter, {kLeft, 28}, text);
    return picture;
}

// The same by the toolkit alone, on the same baseline.
QImage toolkits(const QString& text, double pixels, double scale) {
    QImage picture = emptyPicture(scale);
    QPainter painter(&picture);
    painter.setPen(Qt::white);
    QTextLayout layout(text, uiFont(pixels));
    layout.beginLayout();
    QTextLine line = layout.createLine();
    line.setLineWidth(1e6);
    layout.endLayout();
    const double left = line.naturalTextRect().left();
    layout.draw(&painter, {kLeft - left, 28 - line.ascent()});
    return picture;
}

// The light in each column of pixels of that width, which tells what stands where.
std::vector<double> columns(const QImage& picture, int wide) {
    std::vector<double> sums(static_cast<size_t>(picture.width() / wide + 1));
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            sums[static_cast<size_t>(x / wide)] += qGray(picture.pixel(x, y)) / 255.0;
    return sums;
}

// 0 where the two show the same, 1 where nothing agrees.
double difference(const QImage& a, const QImage& b) {
    const int wide = std::max(2, static_cast<int>(4 * a.devicePixelRatio()));
    const auto left = columns(a, wide), right = columns(b, wide);
    double apart = 0, light = 0;
    for (size_t i = 0; i < left.size(); ++i) {
        apart += std::abs(left[i] - right[i]);
        light += left[i] + right[i];
    }
    return light > 0 ? apart / light : 1;
}

void keep(const QImage& picture, const QString& name) {
    const QString folder = qEnvironmentVariable("QUILLMERE_KEEP_PICTURES");
    if (!folder.isEmpty()) picture.save(QDir(folder).filePath(name + QStringLiteral(".png")));
}

}  // namespace

TEST_CASE("text of every script stands as the toolkit sets it") {
    for (const Sample& sample : samples()) {
        CAPTURE(sample.name);
        REQUIRE(canBeShown(sample));
        for (const double scale : {1.0, 2.0}) {
            const QImage mine = ours(sample.text, 20, scale), its = toolkits(sample.text, 20, scale);
            const QString name = QStringLiteral("text-%1@%2").arg(QString::fromLatin1(sample.name)).arg(scale);
            keep(mine, name);
            keep(its, name + QStringLiteral("-toolkit"));
            CHECK(difference(mine, its) < 0.12);
        }
    }
}

TEST_CASE("a number in a text that reads from the right stands where it is read") {
    // The toolkit's order, and one in which the parts were set from the left as they come.
    const QString text = QStringLiteral("שיר 12");
    const QImage right = toolkits(text, 20, 1), mine = ours(text, 20, 1);
    const QImage wrong = toolkits(QStringLiteral("12") + QStringLiteral(" שיר"), 20, 1);
    CHECK(difference(mine, right) < 0.12);
    CHECK(difference(ours(QStringLiteral("\u202Dשיר 12"), 20, 1), right) > 0.2);
    CHECK(difference(wrong, right) > 0.2);
}

TEST_CASE("only times stand in digit cells") {
    const QFont font = uiFont(13);
    CHECK(timeWidth(font, "11:11") == doctest::Approx(timeWidth(font, "00:00")));
    CHECK(textWidth(font, "1111") < textWidth(font, "0000"));
    CHECK(timeWidth(font, "8") > textWidth(font, "1"));
}

TEST_CASE("nothing of a line is lost above, below or beside it") {
    for (const Sample& sample : samples()) {
        CAPTURE(sample.name);
        REQUIRE(canBeShown(sample));
        const QFont font = uiFont(20);
        const double width = textWidth(font, sample.text);
        QImage picture(static_cast<int>(width) + 41, 100, QImage::Format_RGB32);
        picture.fill(Qt::black);
        {
            QPainter painter(&picture);
            painter.setFont(font);
            painter.setPen(Qt::white);
            drawLine(painter, QRectF(20, 36, width, 28), Qt::AlignLeft, sample.text);
        }
        int outside = 0, inside = 0;
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < picture.width(); ++x) {
                const bool within = x >= 17 && x < 23 + width && y >= 32 && y < 70;
                (within ? inside : outside) += qGray(picture.pixel(x, y)) > 64 ? 1 : 0;
            }
        CHECK(outside == 0);
        CHECK(inside > 100);
    }
}

TEST_CASE("a coloured sign is drawn in its colours, and fades with its text") {
    const Sample& emoji = samples()[5];
    REQUIRE(canBeShown(emoji));
    const auto colours = [](const QColor& ink) {
        QImage picture = emptyPicture(1);
        {
            QPainter painter(&picture);
            painter.setFont(uiFont(24));
            painter.setPen(ink);
            drawLineAt(painter, {10, 30}, QStringLiteral("🎸"));
        }
        int most = 0;
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < picture.width(); ++x) {
                const QColor color = picture.pixelColor(x, y);
                most = std::max(most, color.saturation() * color.value() / 255);
            }
        return most;
    };
    CHECK(colours(Qt::white) > 80);
    CHECK(colours(QColor(255, 255, 255, 100)) < colours(Qt::white) / 2);
}

TEST_CASE("a text is cut between characters, as people count them") {
    const QFont font = uiFont(13);
    const auto whole = [](const QString& kept, const QString& text, const QStringList& characters) {
        if (kept == text) return true;
        QString head;
        for (const QString& character : characters) {
            if (kept == head.trimmed() + u'…') return true;
            head += character;
        }
        return false;
    };
    const QList<QStringList> texts = {{"C", "a", "f", "e\u0301", "e\u0301", "e\u0301"},
                                      {"👩‍🎤", "👨‍👩‍👧", "🇫🇷", "🇩🇪", "👍🏽"},
                                      {"น้ำ", "ตา", "น้ำ", "ตา"},
                                      {"시", "간", "의", "강"},
                                      {"𝄞", "𝄢", "𝄞"}};
    for (const QStringList& characters : texts) {
        const QString text = characters.join(QString());
        CAPTURE(text.toStdString());
        const double width = textWidth(font, text);
        for (double room = 4; room < width; room += 1.5) {
            const QString kept = elidedText(font, text, room);
            CAPTURE(kept.toStdString());
            if (characters[0] != "น้ำ") CHECK(whole(kept, text, characters));
            CHECK_FALSE(kept.contains(QChar::ReplacementCharacter));
            CHECK((textWidth(font, kept) <= room + 0.5 || kept == "…"));
        }
    }
    CHECK(elidedInMiddle(font, "e\u0301e\u0301e\u0301e\u0301", textWidth(font, "é…é") + 0.5) == "e\u0301…e\u0301");
}

TEST_CASE("lines are broken where the script allows it") {
    const QFont font = uiFont(13);
    const QString japanese = QStringLiteral("第3楽章「プレリュード」の練習。");
    REQUIRE(canBeShown(samples()[3]));
    const QStringList lines = wrappedText(font, japanese, textWidth(font, japanese) / 2.5);
    CHECK(lines.size() >= 3);
    CHECK(lines.join(QString()) == japanese);
    for (const QString& line : lines) {
        CHECK_FALSE(line.startsWith(u'」'));
        CHECK_FALSE(line.startsWith(u'。'));
        CHECK_FALSE(line.endsWith(u'「'));
    }
}

TEST_CASE("a place in a line that reads from the right is found where it is seen") {
    const QFont font = uiFont(13);
    const QString text = QStringLiteral("שלום");
    const double width = textWidth(font, text);
    CHECK(placeInLine(font, text, width) == 0);
    CHECK(placeInLine(font, text, 0) == text.size());
    const auto first = spansInLine(font, text, 0, 1);
    REQUIRE(first.size() == 1);
    CHECK(first[0].second == doctest::Approx(width).epsilon(0.02));
    CHECK(first[0].first > width / 2);
    CHECK(placeInLine(font, "abc", textWidth(font, "ab")) == 2);
}
