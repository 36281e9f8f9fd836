#include "library/FileQueue.h"

#include <doctest/doctest.h>

#include <QCoreApplication>
#include <QDeadlineTimer>

#include "support/widgets/ToldNotices.h"

using namespace qm;

namespace {

struct Queue {
    ToldNotices notices;
    QStringList added;
    QStringList bad;
    std::function<void(const QString&)> meanwhile = [](const QString&) {};
    int ends = 0;
    FileQueue queue{[this](const QString& path) -> std::optional<bool> {
                        meanwhile(path);
                        added << path;
                        return !bad.contains(path);
                    },
                    notices};

    Queue() {
        QObject::connect(&queue, &FileQueue::ended, &queue, [this] { ++ends; });
    }
    void waitForEnd() {
        QDeadlineTimer patience(60000);
        while (queue.isBusy() && !patience.hasExpired()) QCoreApplication::processEvents();
        REQUIRE_FALSE(queue.isBusy());
    }
    static QStringList files(int count) {
        QStringList names;
        for (int i = 1; i <= count; ++i) names << QStringLiteral("/m/%1.mp3").arg(i);
        return names;
    }
};

}  // namespace

TEST_CASE("files are added in their order, the first at once and the others when there is nothing else to do") {
    Queue q;
    q.queue.add(q.files(3));
    CHECK(q.added == q.files(1));
    CHECK(q.ends == 0);
    q.waitForEnd();
    CHECK(q.added == q.files(3));
    CHECK(q.ends == 1);
    CHECK(q.notices.texts == QStringList{"Added 3 files"});
}

TEST_CASE("whatever happens meanwhile is answered between two files") {
    Queue q;
    int answered = 0, most = 0, waiting = 0;
    q.meanwhile = [&](const QString&) {
        most = std::max(most, ++waiting);
        QMetaObject::invokeMethod(
            &q.queue,
            [&] {
                ++answered;
                waiting = 0;
            },
            Qt::QueuedConnection);
    };
    q.queue.add(q.files(400));
    q.waitForEnd();
    QCoreApplication::processEvents();
    CHECK(answered == 400);
    CHECK(most == 1);
}

TEST_CASE("one file is added without a word") {
    Queue q;
    q.queue.add(q.files(1));
    CHECK_FALSE(q.queue.isBusy());
    CHECK(q.ends == 1);
    CHECK(q.notices.texts.isEmpty());
}

TEST_CASE("the progress of many is told with the count, spoken once, and goes when all are added") {
    Queue q;
    int spoken = 0;
    QObject::connect(&q.notices, &Notices::told, &q.queue, [&](const Notice& n) {
        if (n.lasts && !n.isUpdate) ++spoken;
    });
    q.queue.add(q.files(5));
    q.waitForEnd();
    CHECK(q.notices.texts == QStringList{"Adding 1 of 5 files", "Adding 2 of 5 files", "Adding 3 of 5 files",
                                         "Adding 4 of 5 files", "Adding 5 of 5 files", "Added 5 files"});
    CHECK(spoken == 1);
    CHECK(q.notices.withdrawnSubjects == QStringList{"adding files"});
}

TEST_CASE("Cancel keeps what has been added and tells how many those are") {
    Queue q;
    q.meanwhile = [&](const QString& path) {
        if (path.endsWith(u"/7.mp3")) q.notices.last.act();
    };
    q.queue.add(q.files(400));
    q.waitForEnd();
    CHECK(q.added == q.files(7));
    CHECK(q.ends == 1);
    CHECK(q.notices.last.text == "Added 7 of 400 files");
    q.queue.add({QStringLiteral("/m/next.mp3")});
    CHECK(q.added.size() == 8);
}

TEST_CASE("Cancel between two files ends it at once") {
    Queue q;
    q.queue.add(q.files(400));
    REQUIRE(q.notices.last.actText == "Cancel");
    q.notices.last.act();
    CHECK_FALSE(q.queue.isBusy());
    CHECK(q.added == q.files(1));
    CHECK(q.notices.last.text == "Added 1 of 400 files");
}

TEST_CASE("files that give no track are counted and the first is named") {
    Queue q;
    q.bad = {QStringLiteral("/m/2.mp3")};
    q.queue.add(q.files(4));
    q.waitForEnd();
    CHECK(q.notices.last.text == "Added 3 of 4 files; 2.mp3 cannot be opened");
    q.bad = {QStringLiteral("/m/2.mp3"), QStringLiteral("/m/3.mp3")};
    q.queue.add(q.files(4));
    q.waitForEnd();
    CHECK(q.notices.last.text == "Added 2 of 4 files; 2 cannot be opened, the first is 2.mp3");
}

TEST_CASE("the words for files that hold no sound are told where none gives a track, and only there") {
    const QString words = QStringLiteral("Nothing");
    Queue q;
    q.bad = q.files(3);
    q.queue.add(q.files(3), words);
    q.waitForEnd();
    CHECK(q.notices.last.text == words);
    q.queue.add(q.files(1), words);
    CHECK(q.notices.last.text == words);
    q.queue.add(q.files(4), words);
    q.waitForEnd();
    CHECK(q.notices.last.text == "Added 1 of 4 files; 3 cannot be opened, the first is 1.mp3");
    q.queue.add(q.files(3));
    q.waitForEnd();
    CHECK(q.notices.last.text == "Added 0 of 3 files; 3 cannot be opened, the first is 1.mp3");
}

TEST_CASE("files that are chosen while others are added come after them") {
    Queue q;
    q.meanwhile = [&](const QString& path) {
        if (path == u"/m/2.mp3") q.queue.add({QStringLiteral("/m/late.mp3")});
    };
    q.queue.add(q.files(3));
    q.waitForEnd();
    CHECK(q.added == q.files(3) + QStringList{"/m/late.mp3"});
    CHECK(q.ends == 1);
    CHECK(q.notices.last.text == "Added 4 files");
}

TEST_CASE("a file waits while another one is being loaded, and is not lost") {
    ToldNotices notices;
    int asked = 0;
    QStringList added;
    FileQueue queue{[&](const QString& path) -> std::optional<bool> {
                        if (++asked < 3) return std::nullopt;
                        added << path;
                        return true;
                    },
                    notices};
    queue.add({QStringLiteral("/m/1.mp3")});
    CHECK(added.isEmpty());
    QDeadlineTimer patience(60000);
    while (queue.isBusy() && !patience.hasExpired()) QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
    CHECK(added == QStringList{"/m/1.mp3"});
}
