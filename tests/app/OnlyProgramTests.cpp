#include "app/OnlyProgram.h"

#include <doctest/doctest.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <chrono>
#include <future>

#include "app/LiveWait.h"
#include "support/LogLines.h"

using namespace qm;
using Start = OnlyProgram::Start;

namespace {

struct TwoStarts {
    QTemporaryDir home, folder;
    LogLines log;
    QList<QByteArray> tokens;

    // The start of another program, from which the desktop expects this token, while the first one lives on.
    Start another(const QString& itsHome, const QByteArray& token = {}) {
        qputenv("XDG_ACTIVATION_TOKEN", token);
        auto other = std::async(std::launch::async, [&] { return OnlyProgram(itsHome, folder.path()).start(); });
        while (other.wait_for(std::chrono::milliseconds(1)) != std::future_status::ready)
            QCoreApplication::processEvents();
        qunsetenv("XDG_ACTIVATION_TOKEN");
        return other.get();
    }

    void listen(OnlyProgram& first) {
        first.listen([this](const QByteArray& token) { tokens << token; });
    }
};

}  // namespace

TEST_CASE_FIXTURE(TwoStarts, "the second start of a home asks the first to come to the front, and is not the first") {
    OnlyProgram first(home.path(), folder.path());
    REQUIRE(first.start() == Start::First);
    listen(first);
    CHECK(another(home.path()) == Start::HandedOver);
    CHECK(another(home.path(), "from the desktop") == Start::HandedOver);
    CHECK(tokens == QList<QByteArray>{"", "from the desktop"});
}

TEST_CASE_FIXTURE(TwoStarts, "another home is another program") {
    OnlyProgram first(home.path(), folder.path());
    REQUIRE(first.start() == Start::First);
    listen(first);
    const QTemporaryDir other;
    CHECK(another(other.path()) == Start::First);
    CHECK(tokens.isEmpty());
}

TEST_CASE_FIXTURE(TwoStarts, "a home is the same by whatever link it is reached") {
    OnlyProgram first(home.path(), folder.path());
    REQUIRE(first.start() == Start::First);
    listen(first);
    const QString link = folder.filePath("link to the home");
    REQUIRE(QFile::link(home.path(), link));
    CHECK(another(link) == Start::HandedOver);
    CHECK(another(home.path() + "/") == Start::HandedOver);
}

TEST_CASE_FIXTURE(TwoStarts, "a first program that does not answer is given up after a while") {
    OnlyProgram first(home.path(), folder.path());
    REQUIRE(first.start() == Start::First);
    CHECK(another(home.path()) == Start::NoAnswer);
    listen(first);
    CHECK(another(home.path()) == Start::HandedOver);
}

TEST_CASE_FIXTURE(TwoStarts, "the first answers while a file takes long to open") {
    OnlyProgram first(home.path(), folder.path());
    REQUIRE(first.start() == Start::First);
    listen(first);
    auto second = std::async(std::launch::async, [&] { return OnlyProgram(home.path(), folder.path()).start(); });
    waitWithLiveWindow(
        [&second](std::chrono::milliseconds most) { return second.wait_for(most) == std::future_status::ready; });
    CHECK(second.get() == Start::HandedOver);
}

TEST_CASE_FIXTURE(TwoStarts, "what a killed program has left does not stop a start") {
    { REQUIRE(OnlyProgram(home.path(), folder.path()).start() == Start::First); }
    const QStringList left = QDir(folder.path()).entryList(QDir::Files | QDir::System);
    CHECK(left.filter(".lock").size() == 1);
    CHECK(left.filter(".socket").size() == 1);
    OnlyProgram next(home.path(), folder.path());
    REQUIRE(next.start() == Start::First);
    listen(next);
    CHECK(another(home.path()) == Start::HandedOver);
}

TEST_CASE_FIXTURE(TwoStarts, "a first program that ends meanwhile leaves its place to the second") {
    auto first = std::make_unique<OnlyProgram>(home.path(), folder.path());
    REQUIRE(first->start() == Start::First);
    listen(*first);
    auto second = std::async(std::launch::async, [&] { return OnlyProgram(home.path(), folder.path()).start(); });
    first.reset();
    CHECK(second.get() == Start::First);
}

TEST_CASE_FIXTURE(TwoStarts, "a first program that has left is not asked, also while something of it is left") {
    OnlyProgram first(home.path(), folder.path());
    REQUIRE(first.start() == Start::First);
    listen(first);
    first.leave();
    CHECK(another(home.path()) == Start::First);
    CHECK(tokens.isEmpty());
}

TEST_CASE_FIXTURE(TwoStarts, "without a home or a folder each start is the first") {
    OnlyProgram homeless(QString(), folder.path());
    CHECK(homeless.start() == Start::First);
    OnlyProgram placeless(home.path(), QString());
    CHECK(placeless.start() == Start::First);
    placeless.listen([](const QByteArray&) {});
}

TEST_CASE_FIXTURE(TwoStarts, "where the lock cannot be made a start is the first, with a line in the log") {
    OnlyProgram first(home.path(), folder.path() + "/nowhere");
    CHECK(first.start() == Start::First);
    CHECK(log.lines().size() == 1);
}

TEST_CASE_FIXTURE(TwoStarts, "the folder is the user's runtime folder if it is private, or one of ours") {
    const QByteArray before = qgetenv("XDG_RUNTIME_DIR");
    qputenv("XDG_RUNTIME_DIR", folder.path().toUtf8());
    CHECK(OnlyProgram::runtimeFolder() == folder.path());
    QFile::setPermissions(folder.path(), QFile::Permissions(0x7777));
    const QString own = OnlyProgram::runtimeFolder();
    CHECK(own.startsWith(QDir::tempPath() + "/quillmere-"));
    CHECK(QFile::permissions(own).testFlag(QFile::ReadOther) == false);
    qunsetenv("XDG_RUNTIME_DIR");
    CHECK(OnlyProgram::runtimeFolder() == own);
    qputenv("XDG_RUNTIME_DIR", folder.path().toUtf8() + "/" + QByteArray(120, 'x'));
    CHECK(OnlyProgram::runtimeFolder() == own);
    before.isNull() ? qunsetenv("XDG_RUNTIME_DIR") : qputenv("XDG_RUNTIME_DIR", before);
}
