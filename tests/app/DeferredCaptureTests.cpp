#include "app/DeferredCapture.h"

#include <doctest/doctest.h>

#include "support/LogLines.h"

using namespace qm;

TEST_CASE("The first set-up of a recorder waits for the engine's module") {
    MovieRegistry movies;
    DeferredEngine engine(movies, QStringLiteral(QUILLMERE_ENGINE_MODULE));
    DeferredCapture capture(engine);
    const auto session = capture.makeSession();
    REQUIRE(session);
    CHECK(capture.makeMovieFileOutput());
    const auto device = capture.defaultInputDeviceWithMediaType(QTMediaType::Sound);
    REQUIRE(device);
    CHECK_FALSE(session->addInput(capture.makeDeviceInput(device)));
    session->startRunning();
    CHECK_FALSE(session->isRunning());
}

TEST_CASE("Without the module there is no input, and the log says why") {
    const LogLines log;
    MovieRegistry movies;
    DeferredEngine engine(movies, QStringLiteral("/nowhere/at/all"));
    DeferredCapture capture(engine);
    CHECK_FALSE(capture.defaultInputDeviceWithMediaType(QTMediaType::Sound));
    CHECK_FALSE(capture.makeSession());
    REQUIRE(!log.lines().empty());
    CHECK(log.lines()[0].starts_with("the media engine cannot be loaded"));
}
