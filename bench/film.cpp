// How the pictures of a film are shown, in counts: bench_film FILE PICTURES-PER-SECOND [WIDTH HEIGHT]
// Plays it in the ways a musician does, in a view of that size (560 by 315), on a sound device that nobody hears.
// Prints how many pictures were due and shown, how many of those before the next one was due, the longest time without
// a new one, how late they were, and how far the time between two of them is from what it should be (root mean square,
// of those that follow each other). FILE lasts 30 seconds; with one that lasts less than 20, only forward play is
// measured.
#include <dirent.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "engine/movie/FileEngine.h"

namespace {

using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point begin) {
    return std::chrono::duration<double>(Clock::now() - begin).count();
}

// Its clock runs as evenly as that of a sound card.
class EvenOutput : public qm::AudioOutput {
public:
    EvenOutput(int sampleRate, qm::OutputSource& source) : m_rate(sampleRate), m_source(source) {}
    ~EvenOutput() override { stop(); }

    bool start() override {
        if (m_thread.joinable()) return true;
        m_running = true;
        m_begin = Clock::now();
        m_before = m_handed;
        m_started = true;
        m_thread = std::thread([this] { run(); });
        return true;
    }

    void stop() override {
        if (!m_thread.joinable()) return;
        m_running = false;
        m_thread.join();
        m_started = false;
    }

    std::int64_t framesPlayed() const override {
        if (!m_started) return m_handed;
        return std::min(m_handed.load(), m_before + static_cast<std::int64_t>(secondsSince(m_begin) * m_rate));
    }

private:
    void run() {
        constexpr double kAhead = 0.06;
        std::vector<qm::StereoFrame> block(static_cast<std::size_t>(m_rate) / 100);
        while (m_running) {
            const auto due = m_before + static_cast<std::int64_t>((secondsSince(m_begin) + kAhead) * m_rate);
            while (m_handed < due) {
                m_source.fill(block);
                m_handed += static_cast<std::int64_t>(block.size());
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
    }

    const int m_rate;
    qm::OutputSource& m_source;
    std::atomic<bool> m_running{false}, m_started{false};
    std::atomic<std::int64_t> m_handed{0};
    std::int64_t m_before = 0;
    Clock::time_point m_begin;
    std::thread m_thread;
};

qm::Result<std::unique_ptr<qm::AudioOutput>> openEven(int sampleRate, qm::OutputSource& source) {
    return std::unique_ptr<qm::AudioOutput>(std::make_unique<EvenOutput>(sampleRate, source));
}

// How often the threads of this process have been woken or pushed aside.
long switches() {
    long sum = 0;
    DIR* tasks = opendir("/proc/self/task");
    while (const dirent* entry = tasks ? readdir(tasks) : nullptr) {
        std::ifstream status(std::string("/proc/self/task/") + entry->d_name + "/status");
        for (std::string line; std::getline(status, line);)
            if (line.find("ctxt_switches") != std::string::npos) sum += std::stol(line.substr(line.find(':') + 1));
    }
    if (tasks) closedir(tasks);
    return sum;
}

struct Shown {
    double at;       // seconds of real time
    double picture;  // where it begins
    double heard;    // where the sound was
};

struct Setting {
    std::string path;
    double perSecond = 25;
    int width = 560, height = 315;
};

class Film {
public:
    explicit Film(const Setting& setting)
        : m_setting(setting), m_movie(std::move(m_engine.movieWithFile(setting.path).value())) {
        m_movie->setPictureViewer(qm::PictureViewer{setting.width, setting.height, [this] {
                                                        {
                                                            const std::lock_guard lock(m_mutex);
                                                            ++m_told;
                                                        }
                                                        m_wake.notify_one();
                                                    }});
    }
    ~Film() { m_movie->setPictureViewer(std::nullopt); }

    qm::QTMovie& movie() { return *m_movie; }
    double length() const { return seconds(m_movie->duration()); }
    void seek(double to) { m_movie->setCurrentTime(time(to)); }

    void loop(double begin, double end) {
        m_movie->setSelectionAttribute({time(begin), time(end - begin)});
        m_movie->setLoopsAttribute(true);
        m_movie->setPlaysSelectionOnlyAttribute(true);
    }

    void run(double rate) {
        m_rate = rate;
        m_movie->play();
        m_movie->setRate(static_cast<float>(rate));
    }

    void watch(double forSeconds, const char* what = nullptr) {
        m_shown.clear();
        m_begin = Clock::now();
        while (secondsSince(m_begin) < forSeconds) {
            std::unique_lock lock(m_mutex);
            m_wake.wait_for(lock, std::chrono::milliseconds(50), [this] { return m_told != m_taken; });
            m_taken = m_told;
            lock.unlock();
            const auto picture = m_movie->currentPicture();
            if (!picture || picture == m_last) continue;
            m_last = picture;
            m_shown.push_back({secondsSince(m_begin), picture->seconds, seconds(m_movie->currentTime())});
        }
        if (what) report(what, forSeconds);
    }

private:
    static double seconds(qm::QTTime time) { return static_cast<double>(time.timeValue) / time.timeScale; }

    qm::QTTime time(double seconds) const {
        const auto scale = static_cast<std::int32_t>(m_movie->timeScaleAttribute().value_or(600));
        return {std::llround(seconds * scale), scale, 0};
    }

    void report(const char* what, double forSeconds) const {
        const double period = 1 / m_setting.perSecond / std::abs(m_rate);
        double without = 0, latest = 0, lateSum = 0, squares = 0, before = 0;
        int inTime = 0, beats = 0;
        for (const Shown& shown : m_shown) {
            const double due = shown.picture + (m_rate < 0 ? 1 / m_setting.perSecond : 0);
            const double late = (shown.heard - due) / m_rate;
            latest = std::max(latest, late);
            lateSum += late;
            inTime += late < period;
            const double interval = shown.at - before;
            without = std::max(without, interval);
            if (before > 0 && interval < 1.5 * period) {
                ++beats;
                squares += (interval - period) * (interval - period);
            }
            before = shown.at;
        }
        without = std::max(without, forSeconds - before);
        const auto count = static_cast<double>(std::max<std::size_t>(m_shown.size(), 1));
        std::printf(
            "%-28s due %3.0f shown %3zu in time %3d, longest without one %4.0f ms, late %5.1f ms, at most %5.1f ms, "
            "beat off by %4.1f ms\n",
            what, forSeconds / period, m_shown.size(), inTime, without * 1000, lateSum / count * 1000, latest * 1000,
            beats ? std::sqrt(squares / beats) * 1000 : 0);
    }

    const Setting m_setting;
    qm::MovieRegistry m_movies;
    qm::FileEngine m_engine{m_movies, openEven};
    std::mutex m_mutex;
    std::condition_variable m_wake;
    long m_told = 0, m_taken = 0;
    std::unique_ptr<qm::QTMovie> m_movie;
    double m_rate = 1;
    std::shared_ptr<const qm::VideoPicture> m_last;
    Clock::time_point m_begin;
    std::vector<Shown> m_shown;
};

void measureForward(const Setting& setting) {
    Film film(setting);
    film.run(1);
    film.watch(1);
    film.watch(4, "forward");
    film.run(2);
    film.watch(0.5);
    film.watch(2, "forward at 2");
    film.run(0.5);
    film.watch(0.5);
    film.watch(2, "forward at 0.5");
}

void measureBackward(const Setting& setting) {
    Film film(setting);
    film.seek(15);
    film.run(1);
    film.watch(3);
    film.run(-1);
    film.watch(2, "first turn, at 18 s");
    film.watch(8, "backward after it");
    film.run(1);
    film.watch(2, "turn forward");
    film.run(-1);
    film.watch(2, "turn backward");
    film.seek(28);
    film.watch(2);
    film.watch(12, "backward from 26 s");
    film.seek(28);
    film.run(-2);
    film.watch(2);
    film.watch(6, "backward at 2 from 24 s");
}

void measureLoops(const Setting& setting) {
    {
        Film film(setting);
        film.seek(17.5);
        film.run(1);
        film.watch(1);
        film.loop(17.8, 19.3);
        film.watch(3, "first wrap, loop of 1.5 s");
        film.watch(6, "its later wraps");
    }
    Film film(setting);
    film.seek(13);
    film.run(1);
    film.watch(5);
    film.loop(13.8, 19);
    film.watch(3, "first wrap, loop of 5.2 s");
    film.watch(6, "its next wrap");
    film.run(-1);
    film.watch(8, "backward in it");
}

void measureRest(const Setting& setting) {
    Film film(setting);
    film.run(1);
    film.watch(1);
    film.movie().stop();
    film.watch(5);
    const long before = switches();
    std::this_thread::sleep_for(std::chrono::seconds(4));
    std::printf("switches in four seconds of pause: %ld\n", switches() - before);
}

}  // namespace

int main(int count, char** arguments) {
    if (count < 3) {
        std::fputs("usage: bench_film FILE PICTURES-PER-SECOND [WIDTH HEIGHT]\n", stderr);
        return 2;
    }
    Setting setting{arguments[1], std::atof(arguments[2])};
    if (count > 4) {
        setting.width = std::atoi(arguments[3]);
        setting.height = std::atoi(arguments[4]);
    }
    measureForward(setting);
    if (Film(setting).length() < 20) return 0;
    measureBackward(setting);
    measureLoops(setting);
    measureRest(setting);
}
