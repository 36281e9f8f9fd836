#include <doctest/doctest.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <utility>

#include "engine/api/Log.h"
#include "engine/api/StandardStreams.h"

using namespace qm;

namespace {

// A pipe in the place of standard error, as long as it lives.
class Pipe {
public:
    Pipe() {
        flushLog(std::chrono::seconds(10));
        REQUIRE(::pipe2(m_ends, O_CLOEXEC) == 0);
        m_former = ::dup(STDERR_FILENO);
        ::dup2(m_ends[1], STDERR_FILENO);
        ::close(m_ends[1]);
    }
    ~Pipe() {
        ::dup2(m_former, STDERR_FILENO);
        ::close(m_former);
        closeReader();
    }
    void closeReader() {
        if (m_ends[0] >= 0) ::close(m_ends[0]);
        m_ends[0] = -1;
    }
    // Reads until the text has been seen, or `end` has.
    std::string readUntil(const std::string& end) {
        std::string text;
        char block[4096];
        while (text.find(end) == std::string::npos) {
            const ssize_t got = ::read(m_ends[0], block, sizeof block);
            if (got <= 0) break;
            text.append(block, static_cast<std::size_t>(got));
        }
        return text;
    }

private:
    int m_ends[2];
    int m_former;
};

constexpr int kFarTooMany = 20000;  // lines of 100 bytes
constexpr const char* kLost = " lines of the log were lost here: nobody read it\n";

// The lines in a text, and those that it says were lost; it may say so several times.
struct Account {
    explicit Account(std::string log) : text(std::move(log)) {
        std::istringstream lines(text);
        for (std::string line; std::getline(lines, line);) {
            if ((line + "\n").ends_with(kLost))
                lost += std::stoi(line);
            else
                ++written;
        }
    }
    int total() const { return written + lost; }

    std::string text;
    int written = 0;
    int lost = 0;
};

}  // namespace

TEST_CASE("lines come out in their order, and all of them before the end") {
    Pipe pipe;
    for (int i = 0; i < 100; ++i) qmLog("line " + std::to_string(i));
    CHECK(flushLog(std::chrono::seconds(10)));
    const std::string text = pipe.readUntil("line 99\n");
    std::size_t last = 0;
    for (int i = 0; i < 100; ++i) {
        const std::size_t here = text.find("line " + std::to_string(i) + "\n");
        REQUIRE(here != std::string::npos);
        CHECK((i == 0 || here > last));
        last = here;
    }
}

TEST_CASE("a full pipe that nobody reads stops nobody who logs, and what was lost is counted") {
    Pipe pipe;
    const std::string filling(93, '.');
    for (int i = 0; i < kFarTooMany; ++i) qmLog(filling + std::to_string(100000 + i));
    CHECK_FALSE(flushLog(std::chrono::milliseconds(1)));
    const std::string text = pipe.readUntil(kLost);
    CHECK(text.find("100000\n") != std::string::npos);
    Account account(text);
    while (account.total() < kFarTooMany) account = Account(account.text + pipe.readUntil(kLost));
    CHECK(account.lost > 0);
    CHECK(account.total() == kFarTooMany);
    qmLog("and on it goes");
    CHECK(pipe.readUntil("and on it goes\n").find("and on it goes") != std::string::npos);
}

TEST_CASE("a pipe whose reader has gone ends nothing") {
    outliveBrokenPipes();
    Pipe pipe;
    pipe.closeReader();
    qmLog("nobody reads this");
    CHECK(flushLog(std::chrono::seconds(10)));
}
