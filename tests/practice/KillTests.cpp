// A program that saves all the time is killed again and again: what it leaves is the old record or the new one, whole.
#include <doctest/doctest.h>

#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QThread>

#include "practice/JsonText.h"
#include "practice/PracticeFile.h"

using namespace qm;

namespace {

constexpr int kKills = 200;
constexpr int kLongestMilliseconds = 30;  // until a kill
const QString kSound = "q1-0123456789abcdef0123456789abcdef";

// How many loops a whole record holds; -1: it is none.
qsizetype loopsIn(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) return -1;
    const auto object = objectOf(file.readAll());
    if (!object) return -1;
    const ReadRecord read = readRecord(*object);
    const auto loops = static_cast<qsizetype>(read.record.keptLoops().size());
    return read.unreadLoops == 0 && read.record.title == QString::number(loops) ? loops : -1;
}

}  // namespace

TEST_CASE("A program killed 200 times while it saves leaves a whole record each time") {
    const QTemporaryDir home;
    const QString folder = home.path() + "/Practice", record = folder + '/' + kSound + ".json";
    QRandomGenerator random(7);
    int spoilt = 0, within = 0;
    for (int i = 0; i < kKills; ++i) {
        QProcess saver;
        saver.start(PRACTICE_SAVER, {folder, kSound});
        REQUIRE(saver.waitForReadyRead(20000));
        QThread::usleep(random.bounded(1000 * kLongestMilliseconds));
        saver.kill();
        saver.waitForFinished(20000);
        within += saver.readAllStandardOutput().endsWith('<') ? 1 : 0;
        const bool isSaved = QFile::exists(record);  // not where it was killed before its first save
        if (isSaved && loopsIn(record) < 1) ++spoilt;
        const QString lastGood = folder + "/last good/" + kSound + ".json";
        if (QFile::exists(lastGood) && loopsIn(lastGood) < 1) ++spoilt;
    }
    MESSAGE(within << " of " << kKills << " kills within a save");
    CHECK(within > 0);
    CHECK(spoilt == 0);
    CHECK(loopsIn(record) > 1);
}
