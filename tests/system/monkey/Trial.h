// One run: a program, a seed, many acts, and what is looked at between them.
#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "Monkey.h"
#include "Program.h"

class Trial {
public:
    Trial(const std::string& program, const std::string& folder, std::uint64_t seed, std::vector<std::string> files);

    // Until 20 000 acts are done or the time is up. False if there is a finding, which is printed.
    bool run(std::chrono::steady_clock::time_point end);

private:
    bool start();
    bool actOnce();
    bool looksWell();
    bool hasWarned();
    bool rest(Counts& counts);
    bool quitAndComeBack();
    bool endBy(const std::string& how);
    bool hasGrown();
    std::vector<std::string> storedTracks() const;
    bool finding(const std::string& what);

    Desktop m_desktop;
    Random m_random;
    Program m_program;
    Monkey m_monkey;
    std::uint64_t m_seed;
    Window m_mainWindow = 0;
    int m_acts = 0;
    int m_actsOfProgram = 0;  // since it was started last
    int m_quits = 0;
    std::optional<Counts> m_warm;
    std::deque<std::string> m_last;
};
