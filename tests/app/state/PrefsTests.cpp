#include "app/state/Prefs.h"

#include <QFile>
#include <QLocale>
#include <QTemporaryDir>

#include "engine/api/Log.h"
#include "support/widgets/TestText.h"

using namespace qm;

namespace {

struct StoreInAFile {
    QTemporaryDir folder;
    QString path = folder.path() + "/store.ini";

    QByteArray bytes() const {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    // A store in a new file with this line: a file is not read again while its time stands still.
    Prefs storeWith(const QByteArray& line) {
        path = folder.path() + QStringLiteral("/store%1.ini").arg(++files);
        QFile file(path);
        REQUIRE(file.open(QIODevice::WriteOnly));
        file.write("[General]\n" + line + "\n");
        file.close();
        return Prefs(path);
    }

    int files = 0;
};

}  // namespace

TEST_CASE_FIXTURE(StoreInAFile, "an absent key is not contained and reads as false and zero") {
    const Prefs prefs(path);
    CHECK_FALSE(prefs.contains("AudioLevels"));
    CHECK_FALSE(prefs.boolForKey("AudioLevels"));
    CHECK(prefs.integerForKey("TextColor") == 0);
    CHECK(prefs.floatForKey("DefaultAudioLevel") == 0.0f);
}

TEST_CASE_FIXTURE(StoreInAFile, "a value is on the disk as text the moment it is set") {
    Prefs prefs(path);
    prefs.setBool("AudioLevels", true);
    CHECK(bytes().contains("AudioLevels=true\n"));
    prefs.setBool("AudioLevels", false);
    CHECK(bytes().contains("AudioLevels=false\n"));
    prefs.setInteger("TextColor", -3);
    CHECK(bytes().contains("TextColor=-3\n"));
    prefs.setFloat("DefaultAudioLevel", 0.25f);
    CHECK(bytes().contains("DefaultAudioLevel=0.25\n"));
    CHECK(prefs.contains("DefaultAudioLevel"));
}

TEST_CASE_FIXTURE(StoreInAFile, "another reader finds what was set, floats to the last bit") {
    Prefs prefs(path);
    prefs.setBool("AudioLevels", true);
    prefs.setInteger("TextColor", 2);
    prefs.setFloat("DefaultAudioLevel", 0.1f);
    const Prefs again(path);
    CHECK(again.boolForKey("AudioLevels"));
    CHECK(again.integerForKey("TextColor") == 2);
    CHECK(again.floatForKey("DefaultAudioLevel") == 0.1f);
}

TEST_CASE_FIXTURE(StoreInAFile, "floats are written with a point in every locale") {
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::German));
    Prefs prefs(path);
    prefs.setFloat("DefaultAudioLevel", 0.5f);
    CHECK(bytes().contains("DefaultAudioLevel=0.5\n"));
    CHECK(prefs.floatForKey("DefaultAudioLevel") == 0.5f);
    QLocale::setDefault(before);
}

TEST_CASE_FIXTURE(StoreInAFile, "true, yes and numbers other than zero are true, everything else is false") {
    for (const char* text : {"true", "1", "YES", "yes", "2", "-1", "0.5"}) {
        CAPTURE(text);
        CHECK(storeWith(QByteArray("AudioLevels=") + text).boolForKey("AudioLevels"));
    }
    for (const char* text : {"false", "0", "NO", "no", "", "on", "truer", "0.0"}) {
        CAPTURE(text);
        CHECK_FALSE(storeWith(QByteArray("AudioLevels=") + text).boolForKey("AudioLevels"));
    }
}

TEST_CASE_FIXTURE(StoreInAFile, "integers are the leading number, cut and kept in range, otherwise zero") {
    const std::pair<const char*, int> cases[] = {{"7", 7},
                                                 {"-1", -1},
                                                 {"+3", 3},
                                                 {"2.9", 2},
                                                 {"3abc", 3},
                                                 {"abc", 0},
                                                 {"", 0},
                                                 {"true", 0},
                                                 {"nan", 0},
                                                 {"9999999999", 2147483647},
                                                 {"-9999999999", -2147483648}};
    for (const auto& [text, value] : cases) {
        CAPTURE(text);
        CHECK(storeWith(QByteArray("TextColor=") + text).integerForKey("TextColor") == value);
    }
}

TEST_CASE_FIXTURE(StoreInAFile, "floats are the leading finite number, otherwise zero") {
    const std::pair<const char*, float> cases[] = {{"0.25", 0.25f}, {"1e-1", 0.1f}, {"0.5x", 0.5f},  {"abc", 0.0f},
                                                   {"nan", 0.0f},   {"inf", 0.0f},  {"1e300", 0.0f}, {"1e999", 0.0f}};
    for (const auto& [text, value] : cases) {
        CAPTURE(text);
        CHECK(storeWith(QByteArray("DefaultAudioLevel=") + text).floatForKey("DefaultAudioLevel") == value);
    }
}

TEST_CASE_FIXTURE(StoreInAFile, "a value of the wrong kind is still present") {
    CHECK(storeWith("AudioLevels=what").contains("AudioLevels"));
}

TEST_CASE("a store that cannot be written is a log line, and the value holds for this run") {
    std::string line;
    setLogSink([&line](std::string_view text) { line = text; });
    Prefs prefs("/proc/no/such/folder/store.ini");
    prefs.setInteger("TextColor", 2);
    setLogSink({});
    CHECK(line.starts_with("Prefs: cannot write"));
    CHECK(prefs.integerForKey("TextColor") == 2);
}

TEST_CASE("the user's own store is a file of the program's name in the user's settings folder") {
    const QString path = qEnvironmentVariable("XDG_CONFIG_HOME") + "/Quillmere/Quillmere.ini";
    REQUIRE_FALSE(QFile::exists(path));
    Prefs().setInteger("TextColor", 1);
    CHECK(QFile::exists(path));
    CHECK(Prefs().integerForKey("TextColor") == 1);
    QFile::remove(path);
}
