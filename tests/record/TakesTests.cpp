#include "record/Takes.h"

#include <doctest/doctest.h>

#include <QApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include "app/ActionReceivers.h"
#include "app/TakePreparation.h"
#include "record/AudioRecord.h"
#include "support/widgets/Actions.h"
#include "support/widgets/ControllerFixture.h"
#include "ui/ActionTable.h"

using namespace qm;

namespace {

struct TakesFixture : ControllerFixture {
    QMController& player = start();
    Takes& takes = player.takes();
    QString desktop = home.path() + QStringLiteral("/Desktop");
    QList<Notice> told;
    QString askedFolder;
    std::optional<QString> wanted;  // what the panel gives

    TakesFixture() {
        QObject::connect(&player.notices(), &Notices::told, &player, [this](const Notice& n) { told.append(n); });
        takes.setRunPanel([this](QWidget*, const QString& folder, const QString&) {
            askedFolder = folder;
            return wanted;
        });
    }

    static QString put(const QString& path, const QByteArray& content) {
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        REQUIRE(file.open(QIODevice::WriteOnly));
        file.write(content);
        return path;
    }
    static QByteArray contentOf(const QString& path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no file");
    }
    QString onDesktop(const char* name) const { return desktop + u'/' + QString::fromLatin1(name); }
    QString inSupport(const char* name) const { return home.supportFolder() + u'/' + QString::fromLatin1(name); }

    void waitForNotice() {
        QDeadlineTimer patience(60000);
        while (told.isEmpty() && !patience.hasExpired()) QApplication::processEvents(QEventLoop::AllEvents, 20);
        REQUIRE_FALSE(told.isEmpty());
    }
};

}  // namespace

TEST_CASE_FIXTURE(TakesFixture,
                  "what stands where a recording is to begin gets the first free name, and that is told") {
    put(onDesktop("Quillmere.mov"), "first");
    put(onDesktop("Quillmere 2.mov"), "an older one");
    CHECK(takes.makeRoom(takeOnDesktop()));
    CHECK_FALSE(QFile::exists(takeOnDesktop()));
    CHECK(contentOf(onDesktop("Quillmere 3.mov")) == "first");
    CHECK(contentOf(onDesktop("Quillmere 2.mov")) == "an older one");
    REQUIRE(told.size() == 1);
    CHECK(told[0].text == "The recording before is now “Quillmere 3.mov” on the desktop");
    CHECK(told[0].actText.isEmpty());
}

TEST_CASE_FIXTURE(TakesFixture, "a link to nowhere has its name, too") {
    put(onDesktop("Quillmere.mov"), "first");
    REQUIRE(QFile::link(onDesktop("gone.mov"), onDesktop("Quillmere 2.mov")));
    CHECK(takes.makeRoom(takeOnDesktop()));
    CHECK(contentOf(onDesktop("Quillmere 3.mov")) == "first");
    CHECK_FALSE(QFile::exists(onDesktop("gone.mov")));
}

TEST_CASE_FIXTURE(TakesFixture, "where nothing stands nothing is told") {
    CHECK(takes.makeRoom(takeOnDesktop()));
    CHECK(told.isEmpty());
}

TEST_CASE_FIXTURE(TakesFixture, "what cannot be renamed is not recorded over, and that is told") {
    constexpr int kLongestName = 255;
    const QString name = QString(kLongestName - 4, u'x') + QStringLiteral(".mov");
    put(desktop + u'/' + name, "first");
    CHECK_FALSE(takes.makeRoom(desktop + u'/' + name));
    CHECK(contentOf(desktop + u'/' + name) == "first");
    REQUIRE(told.size() == 1);
    CHECK(told[0].text.contains("cannot be renamed, so nothing is recorded"));
    CHECK(log.count("log the recording in") == 1);
}

TEST_CASE_FIXTURE(TakesFixture, "a recording that cannot be moved stays, and the user hears where it is") {
    const QString take = put(takeOnDesktop(), "take");
    CHECK_FALSE(takes.keep(take, home.path() + QStringLiteral("/no such folder/lick.mov")));
    CHECK(contentOf(take) == "take");
    REQUIRE(told.size() == 1);
    CHECK(told[0].text == "The recording cannot be kept as “lick.mov”; it is still “Quillmere.mov” on the desktop");
    CHECK(takes.keep(take, home.path() + QStringLiteral("/lick.mov")));
    CHECK(contentOf(home.path() + QStringLiteral("/lick.mov")) == "take");
    CHECK(told.size() == 1);
}

TEST_CASE_FIXTURE(TakesFixture, "one that cannot be moved out of the support folder can be kept by a button") {
    put(takeInSupportFolder(), "take");
    CHECK_FALSE(takes.keep(takeInSupportFolder(), home.path() + QStringLiteral("/no such folder/lick.mov")));
    REQUIRE(told.size() == 1);
    CHECK(told[0].actText == "Keep…");
    CHECK(told[0].lasts);
    wanted = home.path() + QStringLiteral("/lick.mov");
    told[0].act();
    CHECK(askedFolder == home.path() + QStringLiteral("/Music"));
    CHECK(contentOf(*wanted) == "take");
    CHECK_FALSE(QFile::exists(takeInSupportFolder()));
}

TEST_CASE_FIXTURE(TakesFixture, "recordings that were left in the support folder are offered one after the other") {
    put(inSupport("Quillmere 10.mov"), "ten");
    put(inSupport("Quillmere 2.mov"), "two");
    put(inSupport("Quillmere.mov"), "one");
    put(inSupport("Quillmere.xml"), "the play list");
    put(inSupport("Quillmere copy.mov"), "somebody else's");
    takes.offerLeft();
    waitForNotice();
    REQUIRE(told.size() == 1);
    CHECK(told[0].text == "3 recordings from before have not been kept yet");
    for (const char* content : {"one", "two", "ten"}) {
        wanted = home.path() + u'/' + QString::fromLatin1(content) + QStringLiteral(".mov");
        told.last().act();
        CHECK(contentOf(*wanted) == content);
    }
    REQUIRE(told.size() == 3);
    CHECK(told[1].text == "2 recordings from before have not been kept yet");
    CHECK(told[2].text == "A recording from before has not been kept yet");
    CHECK(QDir(home.supportFolder()).entryList({"*.mov"}) == QStringList{"Quillmere copy.mov"});
    told.last().act();  // pressed once more
    CHECK(told.size() == 3);
}

TEST_CASE_FIXTURE(TakesFixture, "an offer that is not taken leaves the recording where it is") {
    put(takeInSupportFolder(), "take");
    takes.offerLeft();
    waitForNotice();
    wanted.reset();
    told[0].act();
    CHECK(contentOf(takeInSupportFolder()) == "take");
}

TEST_CASE_FIXTURE(TakesFixture, "a recording that is being made is not offered") {
    put(takeInSupportFolder(), "being made");
    put(inSupport("Quillmere 2.mov"), "finished");
    takes.setIsBeingMade([](const QString& path) { return path == takeInSupportFolder(); });
    takes.offerLeft();
    waitForNotice();
    CHECK(told[0].text == "A recording from before has not been kept yet");
    wanted = home.path() + QStringLiteral("/kept.mov");
    told[0].act();
    CHECK(contentOf(*wanted) == "finished");
    CHECK(contentOf(takeInSupportFolder()) == "being made");
}

namespace {

// The actions as the controls send them.
struct Controls : TakesFixture {
    AudioRecord recorder{capture, takes};
    ActionTable actions{outlets.mainWindow};

    Controls() {
        receiveActions(actions, player);
        receiveActions(actions, recorder);
        prepareTakes(actions, player, recorder);
        recorder.setRunSavePanel([this](QWidget*, const QString&, const QString&) { return dialogs.savePath; });
    }
    void send(const char* slot) { actions.send(idOf(slot)); }
};

}  // namespace

TEST_CASE_FIXTURE(Controls, "the record control sets the take before aside; the recording that it ends stays") {
    send("audioRecordOpen");
    send("audioStartRecord");
    dialogs.savePath = takeOnDesktop();
    send("audioStartRecord");
    CHECK(told.isEmpty());
    send("audioStartRecord");
    CHECK(contentOf(onDesktop("Quillmere 2.mov")) == "recording 1");
    CHECK(contentOf(takeOnDesktop()) == "recording 2");
    CHECK(told.size() == 1);
    send("audioStartRecord");
    CHECK(contentOf(takeOnDesktop()) == "recording 2");
    CHECK(told.size() == 1);
}

TEST_CASE_FIXTURE(Controls, "a take that could not be moved is not lost to the next one") {
    send("audioRecordOpen");
    send("audioStartRecord");
    dialogs.savePath = home.path() + QStringLiteral("/no such folder/lick.mov");
    send("audioStartRecord");
    send("audioStartRecord");
    CHECK(contentOf(onDesktop("Quillmere 2.mov")) == "recording 1");
    CHECK(contentOf(takeOnDesktop()) == "recording 2");
}

TEST_CASE_FIXTURE(Controls, "the recorder's control sets a take aside in the support folder and offers to keep it") {
    put(takeInSupportFolder(), "left");
    send("displayAudioRecordWindow");
    send("toggleRecordSession");
    CHECK(contentOf(inSupport("Quillmere 2.mov")) == "left");
    CHECK(contentOf(takeInSupportFolder()) == "recording 1");
    REQUIRE(told.size() == 1);
    CHECK(told[0].text == "The recording before is now “Quillmere 2.mov”");
    wanted = home.path() + QStringLiteral("/kept.mov");
    told[0].act();
    CHECK(contentOf(*wanted) == "left");
    CHECK(contentOf(takeInSupportFolder()) == "recording 1");
    CHECK(recorder.recordingStatus);
}

TEST_CASE_FIXTURE(Controls, "without an input no control touches a take") {
    capture.hasDevice = false;
    put(takeOnDesktop(), "kept");
    put(takeInSupportFolder(), "left");
    for (const char* slot : {"audioStartRecord", "toggleRecordSession", "audioRecordOpen", "displayAudioRecordWindow",
                             "audioStartRecord", "toggleRecordSession"})
        send(slot);
    CHECK(contentOf(takeOnDesktop()) == "kept");
    CHECK(contentOf(takeInSupportFolder()) == "left");
    for (const Notice& notice : told)
        CHECK(notice.text == "There is no sound input: connect one, then start Quillmere again");
    CHECK(told.size() == 3);
}

TEST_CASE_FIXTURE(Controls, "the control that records opens the session first when there is none") {
    send("audioStartRecord");
    CHECK(player.isRecording);
    CHECK(outlets.audioRecordingWindow->isVisible());
    CHECK(contentOf(takeOnDesktop()) == "recording 1");
    CHECK(told.isEmpty());
    const auto session = player.captureSession;
    send("audioStartRecord");
    send("audioStartRecord");
    CHECK(player.captureSession == session);
}

TEST_CASE_FIXTURE(Controls, "the action that records still opens no session by itself") {
    player.audioStartRecord();
    CHECK_FALSE(player.isRecording);
    CHECK_FALSE(player.captureSession);
}

TEST_CASE_FIXTURE(Controls, "an input that does not start is told") {
    capture.runs = false;
    send("audioStartRecord");
    CHECK_FALSE(player.isRecording);
    REQUIRE(told.size() == 1);
    CHECK(told[0].text == "The sound input does not start, so nothing is recorded");
}

TEST_CASE_FIXTURE(Controls, "a take that cannot be set aside keeps the control from recording") {
    for (int number = 2; number < 10000; ++number)
        REQUIRE(QDir().mkpath(desktop + QStringLiteral("/Quillmere %1.mov").arg(number)));
    put(takeOnDesktop(), "kept");
    send("audioRecordOpen");
    send("audioStartRecord");
    CHECK_FALSE(player.isRecording);
    CHECK(contentOf(takeOnDesktop()) == "kept");
    CHECK(told.size() == 1);
}
