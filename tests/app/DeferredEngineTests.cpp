#include <doctest/doctest.h>

#include <QFile>
#include <QTemporaryDir>

#include "app/DeferredEngine.h"
#include "support/LogLines.h"

using namespace qm;

namespace {

// Half a second of silence, 8-bit mono at 8000 frames a second.
QString writeSound(const QTemporaryDir& folder) {
    const auto number = [](quint32 value, int bytes) {
        QByteArray text;
        for (int i = 0; i < bytes; ++i) text += static_cast<char>(value >> (8 * i));
        return text;
    };
    const QByteArray sound(4000, '\x80');
    const QString path = folder.filePath(QStringLiteral("silence.wav"));
    QFile file(path);
    REQUIRE(file.open(QIODevice::WriteOnly));
    file.write("RIFF" + number(36 + 4000, 4) + "WAVEfmt " + number(16, 4) + number(1, 2) + number(1, 2) +
               number(8000, 4) + number(8000, 4) + number(1, 2) + number(8, 2) + "data" + number(4000, 4) + sound);
    return path;
}

}  // namespace

TEST_CASE("The first movie that is opened waits for the engine's module") {
    const QTemporaryDir folder;
    MovieRegistry movies;
    DeferredEngine engine(movies, QStringLiteral(QUILLMERE_ENGINE_MODULE));
    auto movie = engine.movieWithFile(writeSound(folder).toStdString());
    REQUIRE(movie);
    const QTTime duration = movie.value()->duration();
    CHECK(duration.timeValue * 2 == duration.timeScale);
    CHECK(movies.find(movie.value()->quickTimeMovie()) == movie.value().get());
}

TEST_CASE("An engine that was loaded ahead opens every movie") {
    const QTemporaryDir folder;
    const std::string path = writeSound(folder).toStdString();
    MovieRegistry movies;
    DeferredEngine engine(movies, QStringLiteral(QUILLMERE_ENGINE_MODULE));
    engine.load();
    engine.load();
    CHECK(engine.movieWithFile(path));
    CHECK(engine.movieWithFile(path));
}

TEST_CASE("A file that cannot be opened is the engine's to judge") {
    MovieRegistry movies;
    DeferredEngine engine(movies, QStringLiteral(QUILLMERE_ENGINE_MODULE));
    const auto movie = engine.movieWithFile("/nowhere/at/all.wav");
    REQUIRE_FALSE(movie);
    CHECK(movie.error().category == ErrorCategory::NotFound);
}

TEST_CASE("Without its module every file is one that cannot be opened, and the log says why") {
    const QTemporaryDir folder;
    LogLines log;
    MovieRegistry movies;
    DeferredEngine engine(movies, folder.filePath(QStringLiteral("no-such-module")));
    CHECK_FALSE(engine.movieWithFile(writeSound(folder).toStdString()));
    REQUIRE(log.lines().size() == 2);
    CHECK(log.lines()[0].find("the media engine cannot be loaded: ") == 0);
    CHECK(log.lines()[1].find("cannot open ") == 0);
}

TEST_CASE("A module that is none is told from one that is missing by the log only") {
    const QTemporaryDir folder;
    LogLines log;
    MovieRegistry movies;
    DeferredEngine engine(movies, writeSound(folder));
    CHECK_FALSE(engine.movieWithFile("/nowhere/at/all.wav"));
    CHECK(log.lines()[0].find("the media engine cannot be loaded: ") == 0);
}
