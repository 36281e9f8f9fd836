#include <QAbstractButton>
#include <QCloseEvent>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QThread>
#include <QWindow>
#include <utility>

#include "support/widgets/Gestures.h"
#include "support/widgets/TestText.h"
#include "ui/controls/ProgressIndicator.h"
#include "update/UpdateServer.h"
#include "update/UpdaterFixture.h"

using namespace qm;

namespace {

const char* const kDownloaded =
    "A disc image containing the new version of Quillmere has been downloaded to your desktop.";

const char* const kNotDownloaded = "The update could not be downloaded";

void onMainThread(const std::function<void()>& act) {
    QMetaObject::invokeMethod(qApp, act, Qt::BlockingQueuedConnection);
}

QImage pictureOf(QWidget& widget) {
    QImage picture(widget.size(), QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    widget.render(&picture, {}, {}, QWidget::RenderFlags());
    return picture;
}

struct Desktop : UpdaterFixture {
    QString image() const { return home.path() + QStringLiteral("/Desktop/Quillmere.dmg"); }
    QStringList files() const {
        return QDir(home.path() + QStringLiteral("/Desktop")).entryList(QDir::Files | QDir::Hidden);
    }

    QByteArray imageContent() const {
        QFile file(image());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    void putImage(const QByteArray& content) const {
        QDir(home.path()).mkpath(QStringLiteral("Desktop"));
        QFile file(image());
        REQUIRE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
};

}  // namespace

TEST_CASE_FIXTURE(Desktop, "Download puts the disc image on the desktop and says so") {
    const QByteArray content("disc image \0 with any bytes", 27);
    const auto updater = checked(description(6, 0, 0));
    answer = [&] { return content; };
    updater->softwareUpdateDownloadButton->click();
    CHECK(take() == Events{"fetch /Download/Quillmere.dmg"});
    CHECK(imageContent() == content);
    CHECK(files() == QStringList{"Quillmere.dmg"});
    CHECK(told.isEmpty());
    CHECK_FALSE(QFile::permissions(image()).testAnyFlags(QFile::ExeOwner | QFile::ExeGroup | QFile::ExeOther));
    CHECK(updater->updateMsg->text() == kDownloaded);
    CHECK(updater->downloadOnDesktop);
    CHECK(updater->updateProgress->isHidden());
    CHECK_FALSE(updater->updateProgress->isAnimating());
    CHECK_FALSE(updater->softwareUpdateDownloadButton->isEnabled());
    CHECK(updater->softwareUpdateVisitHalvixButton->isEnabled());
}

TEST_CASE_FIXTURE(Desktop, "an image of that name is replaced") {
    putImage("a former and much longer disc image");
    const auto updater = checked(description(6, 0, 0));
    answer = [] { return QByteArray("new"); };
    updater->doDownloadUpdate();
    CHECK(imageContent() == "new");
}

TEST_CASE_FIXTURE(Desktop, "a failed download writes nothing, ends as any other and is told") {
    for (const bool formerImage : {false, true}) {
        if (formerImage) putImage("former");
        const auto updater = checked(description(6, 0, 0));
        answer = [] { return kNoAnswer; };
        updater->doDownloadUpdate();
        CHECK(take().back() == "log downloadNewDiscImage: cannot read " +
                                   updateUrl(kDiscImagePath).toString().toStdString() + ": no answer");
        CHECK(files() == (formerImage ? QStringList{"Quillmere.dmg"} : QStringList()));
        CHECK(imageContent() == (formerImage ? "former" : ""));
        CHECK(std::exchange(told, {}) == QStringList{kNotDownloaded});
        CHECK(updater->updateMsg->text() == kDownloaded);
        CHECK(updater->downloadOnDesktop);
        CHECK(updater->updateProgress->isHidden());
    }
}

TEST_CASE_FIXTURE(Desktop, "a web page in the place of the image is a failed download") {
    putImage("former");
    const auto updater = checked(description(6, 0, 0));
    for (const char* page : {"<html><body>Log in first</body></html>", " \r\n<!DOCTYPE HTML>\n<title>Log in</title>"}) {
        answer = [page] { return QByteArray(page); };
        updater->doDownloadUpdate();
        CHECK(imageContent() == "former");
        CHECK(std::exchange(told, {}) == QStringList{kNotDownloaded});
        CHECK(updater->updateMsg->text() == kDownloaded);
    }
}

TEST_CASE_FIXTURE(Desktop, "an image that cannot be written leaves a log line and is told") {
    QFile inTheWay(home.path() + QStringLiteral("/Desktop"));
    REQUIRE(inTheWay.open(QIODevice::WriteOnly));
    const auto updater = checked(description(6, 0, 0));
    answer = [] { return QByteArray("new"); };
    updater->doDownloadUpdate();
    CHECK(eventCount("log downloadNewDiscImage: cannot write ") == 1);
    CHECK(told == QStringList{kNotDownloaded});
    CHECK(updater->updateMsg->text() == kDownloaded);
}

TEST_CASE_FIXTURE(Desktop, "before the image is fetched the button is disabled and the bar shown and drawn") {
    struct Watcher : QObject {
        explicit Watcher(UpdaterFixture& watching) : fixture(watching) {}
        bool eventFilter(QObject*, QEvent* event) override {
            if (event->type() == QEvent::EnabledChange) fixture.note("button disabled");
            if (event->type() == QEvent::Show) fixture.note("bar shown");
            if (event->type() == QEvent::Paint) fixture.note("bar drawn");
            return false;
        }
        UpdaterFixture& fixture;
    };
    const auto updater = checked(description(6, 0, 0));
    Watcher watcher(*this);
    updater->softwareUpdateDownloadButton->installEventFilter(&watcher);
    updater->updateProgress->installEventFilter(&watcher);
    bool animating = false, onDesktop = true;
    answer = [&]() -> Result<QByteArray> {
        onMainThread([&] {
            animating = updater->updateProgress->isAnimating();
            onDesktop = updater->downloadOnDesktop;
        });
        return kNoAnswer;
    };
    updater->doDownloadUpdate();
    updater->updateProgress->removeEventFilter(&watcher);
    updater->softwareUpdateDownloadButton->removeEventFilter(&watcher);
    Events events = take();
    REQUIRE(events.size() >= 4);
    events.resize(3);
    CHECK(events == Events{"button disabled", "bar shown", "bar drawn"});
    CHECK(animating);
    CHECK_FALSE(onDesktop);
}

TEST_CASE_FIXTURE(Desktop, "while the image is downloaded the bar moves and nobody can act") {
    const auto updater = checked(description(6, 0, 0));
    int heard = 0;
    struct Ears : QWidget {
        explicit Ears(int& count) : heard(count) {}
        void mousePressEvent(QMouseEvent*) override { ++heard; }
        void keyPressEvent(QKeyEvent*) override { ++heard; }
        void wheelEvent(QWheelEvent*) override { ++heard; }
        int& heard;
    } elsewhere(heard);
    elsewhere.show();
    answer = [&]() -> Result<QByteArray> {
        QImage first, now;
        onMainThread([&] { first = pictureOf(*updater->updateProgress); });
        do {
            QThread::msleep(5);
            onMainThread([&] { now = pictureOf(*updater->updateProgress); });
        } while (now == first);
        onMainThread([&] {
            clickMouse(elsewhere, QPointF(5, 5));
            pressKey(elsewhere, Qt::Key_Space);
            turnWheel(elsewhere, 1);
            clickMouse(*updater->closeButton, QPointF(5, 5));
        });
        return QByteArray("image");
    };
    updater->doDownloadUpdate();
    CHECK(heard == 0);
    CHECK(updater->softwareUpdatePanel->isVisible());
    clickMouse(elsewhere, QPointF(5, 5));
    CHECK(heard == 1);
}

TEST_CASE_FIXTURE(Desktop, "a request to close a window waits until the download is done") {
    const auto updater = checked(description(6, 0, 0));
    bool openDuring = false;
    answer = [&]() -> Result<QByteArray> {
        onMainThread([&] {
            QCloseEvent request;
            QApplication::sendEvent(updater->softwareUpdatePanel->windowHandle(), &request);
            openDuring = updater->softwareUpdatePanel->isVisible() && !request.isAccepted();
        });
        return QByteArray("image");
    };
    updater->doDownloadUpdate();
    CHECK(openDuring);
    CHECK(updater->updateMsg->text() == kDownloaded);
    while (updater->softwareUpdatePanel->isVisible()) QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    CHECK(mainWindow.keyWindow);
}
