#include "player/SoundWatch.h"

#include "support/widgets/FakeMediaEngine.h"

#include <doctest/doctest.h>

using namespace qm;

namespace {

struct Watched {
    Watched() {
        state.qtMovie = std::move(engine.movieWithFile("/music/one.wav").value());
        QObject::connect(&notices, &Notices::told, [this](const Notice& notice) { told.append(notice.text); });
    }

    QStringList after(std::optional<SoundOutput> output) {
        told.clear();
        engine.output = output;
        watch.look();
        watch.look();
        return told;
    }

    EventLog log;
    FakeMediaEngine engine{log};
    PlayerState state;
    Notices notices;
    QStringList told;
    SoundWatch watch{state, notices};
};

}  // namespace

TEST_CASE("the user is told once that the sound output does not answer, and once that sound is back") {
    Watched w;
    CHECK(w.after(SoundOutput::Works).isEmpty());
    CHECK(w.after(SoundOutput::DoesNotAnswer) == QStringList{"The sound output does not answer"});
    CHECK(w.after(SoundOutput::Works) == QStringList{"Sound is back"});
}

TEST_CASE("without a movie nothing is known of the sound output, and what was said stands") {
    Watched w;
    CHECK(w.after(std::nullopt).isEmpty());
    CHECK(w.after(SoundOutput::Absent) == QStringList{"There is no sound output"});
    CHECK(w.after(std::nullopt).isEmpty());
    auto movie = std::move(w.state.qtMovie);
    CHECK(w.after(SoundOutput::Works).isEmpty());
    w.state.qtMovie = std::move(movie);
    CHECK(w.after(SoundOutput::Absent).isEmpty());
    CHECK(w.after(SoundOutput::Works) == QStringList{"Sound is back"});
}
