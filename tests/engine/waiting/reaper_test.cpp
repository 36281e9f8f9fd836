#include <doctest/doctest.h>

#include <atomic>
#include <future>
#include <memory>

#include "engine/api/Aside.h"
#include "engine/waiting/Reaper.h"
#include "support/LogLines.h"

using namespace qm;

namespace {

// Its end waits for somebody who may never come.
struct Hanging {
    Hanging(std::shared_future<void> waitsFor, std::atomic<int>& count) : answer(std::move(waitsFor)), ended(count) {}
    ~Hanging() {
        answer.wait();
        ++ended;
    }
    std::shared_future<void> answer;
    std::atomic<int>& ended;
};

}  // namespace

TEST_CASE("whoever hands something over that does not end goes on at once, and so does the end of everything else") {
    std::promise<void> never, now;
    std::atomic<int> hanging{0}, ended{0};
    now.set_value();
    {
        Reaper reaper;
        const auto neverAnswers = never.get_future().share(), answers = now.get_future().share();
        for (int i = 0; i < 100; ++i) reaper.end(std::make_unique<Hanging>(neverAnswers, hanging));
        for (int i = 0; i < 100; ++i) reaper.end(std::make_unique<Hanging>(answers, ended));
        while (ended < 100) std::this_thread::yield();
        CHECK(hanging == 0);
        CHECK(reaper.ending() >= 100);
        never.set_value();
    }
    CHECK(hanging == 100);
}

TEST_CASE("work that nobody waits for any more ends by itself, with what it comes to") {
    std::promise<void> answer;
    std::promise<bool> gone;
    auto isGone = gone.get_future();
    {
        auto work = aside([answers = answer.get_future().share(), &gone] {
            answers.wait();
            return std::shared_ptr<int>(new int(1), [&gone](int* value) {
                delete value;
                gone.set_value(true);
            });
        });
        CHECK(work.wait_for(std::chrono::milliseconds(0)) == std::future_status::timeout);
    }
    answer.set_value();
    CHECK(isGone.get());
}
