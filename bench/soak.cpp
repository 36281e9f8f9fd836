// Drives a movie on the system's sound device with random actions and watches it: bench_soak FILE MINUTES [SEED]
// Reports underruns, the largest error of the position against the clock while nothing is changed, and how much memory
// grew after the first minute, when the whole file has been decoded once. Each underrun and each error of the position
// over a millisecond is a line of its own. Ends with status 1 when something is wrong: an underrun, 10 ms of error,
// 8 MiB of growth.
//
// A virtual machine stands still at times, and its virtual sound card with it. A thread that goes before all others
// tells how long, where the user may have one; what it missed is said beside each error.
#include <pthread.h>
#include <sched.h>

#include <atomic>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <thread>
#include <utility>

#include "Memory.h"
#include "engine/movie/FileEngine.h"

namespace {

using Clock = std::chrono::steady_clock;

// How long the machine stood still for everybody.
class Standstill {
public:
    Standstill() : m_thread([this](std::stop_token stop) { watch(stop); }) {}

    // The longest since it was last asked, in milliseconds; under one is nothing.
    double take() { return m_longest.exchange(0); }

private:
    void watch(const std::stop_token& stop) {
        const sched_param first{.sched_priority = sched_get_priority_max(SCHED_FIFO)};
        if (pthread_setschedparam(pthread_self(), SCHED_FIFO, &first) != 0) return;
        for (auto before = Clock::now(); !stop.stop_requested();) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
            const auto now = Clock::now();
            const double still =
                std::chrono::duration<double, std::milli>(now - std::exchange(before, now)).count() - 1;
            if (still > m_longest) m_longest = still;
        }
    }

    std::atomic<double> m_longest{0};
    std::jthread m_thread;
};

class Soak {
public:
    Soak(qm::FileMovie& movie, unsigned seed) : m_movie(movie), m_length(movie.duration()), m_random(seed) {}

    void run(double minutes) {
        decodeAll();
        m_movie.setVolume(0.5f);
        m_movie.play();
        m_movie.setRate(1);
        const auto begin = Clock::now();
        double early = 0;
        while (minutesSince(begin) < minutes) {
            act();
            awaitSound();
            sleep(chance(0.2, 0.8));
            if (m_playing && m_rate != 0) watchPosition();
            watchUnderruns(begin);
            if (early == 0 && minutesSince(begin) > std::min(1.0, minutes / 2)) early = qm::bench::residentMiB();
        }
        growth = qm::bench::residentMiB() - early;
    }

    int actions = 0, watched = 0, overTen = 0;
    double worstMilliseconds = 0, growth = 0;

private:
    static double minutesSince(Clock::time_point begin) {
        return std::chrono::duration<double>(Clock::now() - begin).count() / 60;
    }
    static void sleep(double seconds) { std::this_thread::sleep_for(std::chrono::duration<double>(seconds)); }
    double chance(double least, double most) { return std::uniform_real_distribution(least, most)(m_random); }
    double now() const { return double(m_movie.currentTime().timeValue) / m_length.timeScale; }
    qm::QTTime at(double part) const {
        return {static_cast<std::int64_t>(part * double(m_length.timeValue)), m_length.timeScale, 0};
    }

    // Until the newest request is in force.
    void awaitSound() const {
        while (!m_movie.renderThread().isCaughtUp()) sleep(0.005);
    }

    // So that a cache that fills is not taken for a leak.
    void decodeAll() {
        constexpr double kStep = 2;  // seconds, less than is read ahead
        const double length = double(m_length.timeValue) / m_length.timeScale;
        for (double second = 0; second < length; second += kStep) {
            m_movie.setCurrentTime(at(second / length));
            awaitSound();
        }
        m_movie.setCurrentTime(at(0));
    }

    void watchUnderruns(Clock::time_point begin) {
        const std::uint32_t now = m_movie.renderThread().underruns();
        if (now != m_underruns)
            std::printf("%.1f s: %u underruns after action %d, rate %.2f, cents %.0f\n", 60 * minutesSince(begin),
                        now - m_underruns, m_action, double(m_rate), double(m_cents));
        m_underruns = now;
    }

    void act() {
        ++actions;
        m_action = static_cast<int>(m_random() % 10);
        switch (m_action) {
            case 0:
                m_playing = false;
                m_movie.stop();
                sleep(0.2);
                [[fallthrough]];
            case 1:
                m_playing = true;
                m_movie.play();
                m_movie.setRate(m_rate);
                break;
            case 2:
            case 3:
                m_rate = static_cast<float>(chance(0.35, 2.5) * (m_random() % 4 == 0 ? -1 : 1));
                m_movie.setRate(m_rate);
                break;
            case 4:
                m_rate = 1;
                m_movie.setRate(1);
                break;
            case 5:
                m_cents = static_cast<float>(m_random() % 2 ? 0 : chance(-1200, 1200));
                m_movie.setPitch(m_cents);
                break;
            case 6:
                m_movie.setTone(0, static_cast<std::int16_t>(chance(0, 256)), 128);
                break;
            case 7:
                loop();
                break;
            case 8:
                m_movie.setVolume(static_cast<float>(chance(0, 1)));
                break;
            default:
                m_movie.setCurrentTime(at(chance(0.1, 0.9)));
        }
    }

    void loop() {
        m_loops = !m_loops;
        const qm::QTTime length = at(chance(0.01, 0.3));
        m_period = m_loops ? double(length.timeValue) / length.timeScale : 0;
        m_movie.setSelectionAttribute({at(chance(0.1, 0.5)), length});
        m_movie.setLoopsAttribute(m_loops);
        m_movie.setPlaysSelectionOnlyAttribute(m_loops);
    }

    // A position and between which times it was asked for, in seconds: on a busy machine they lie apart.
    struct Look {
        double earliest, position, latest;
    };
    Look look() const {
        const auto seconds = [] { return std::chrono::duration<double>(Clock::now().time_since_epoch()).count(); };
        const double earliest = seconds(), position = now();
        return {earliest, position, seconds()};
    }

    // The position has to move by the rate while nothing is done, folded at the wraps, until it meets an end.
    void watchPosition() {
        m_standstill.take();
        const Look from = look();
        sleep(0.25);
        const Look to = look();
        if (m_movie.isDone()) return;
        const double middle = (to.earliest + to.latest - from.earliest - from.latest) / 2;
        const double unknown = (to.latest - to.earliest + from.latest - from.earliest) / 2;
        double off = to.position - from.position - m_rate * middle;
        if (m_period > 0) off = std::remainder(off, m_period);
        const double error = std::max(std::abs(off) - std::abs(m_rate) * unknown, 0.0) * 1e3;
        if (error > 1)
            std::printf(
                "position %.3f to %.3f s, off by %.2f ms after action %d, rate %.2f, period %.3f s; "
                "the machine stood still for %.1f ms\n",
                from.position, to.position, error, m_action, double(m_rate), m_period, m_standstill.take());
        ++watched;
        if (error > 10) ++overTen;
        worstMilliseconds = std::max(worstMilliseconds, error);
    }

    qm::FileMovie& m_movie;
    const qm::QTTime m_length;
    Standstill m_standstill;
    std::mt19937 m_random;
    float m_rate = 1, m_cents = 0;
    int m_action = 0;
    std::uint32_t m_underruns = 0;
    bool m_playing = true;
    bool m_loops = false;
    double m_period = 0;  // seconds; 0 while not looping
};

}  // namespace

int main(int argc, char** argv) {
    if (argc < 3) {
        std::fputs("usage: bench_soak FILE MINUTES [SEED]\n", stderr);
        return 2;
    }
    qm::MovieRegistry movies;
    qm::FileEngine engine(movies);
    auto opened = engine.movieWithFile(argv[1]);
    if (!opened) return 2;
    auto& movie = static_cast<qm::FileMovie&>(*opened.value());
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    Soak soak(movie, argc > 3 ? static_cast<unsigned>(std::atoi(argv[3])) : 1u);
    soak.run(std::atof(argv[2]));
    const std::uint32_t underruns = movie.renderThread().underruns();
    std::printf(
        "actions %d, positions watched %d, underruns %u, largest position error %.2f ms (%d over 10 ms), memory growth "
        "%.1f MiB\n",
        soak.actions, soak.watched, underruns, soak.worstMilliseconds, soak.overTen, soak.growth);
    return underruns > 0 || soak.worstMilliseconds > 10 || soak.growth > 8 ? 1 : 0;
}
