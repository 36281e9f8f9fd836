// The program that is tried: started, watched from outside, ended.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

struct Counts {
    long memory = 0;  // resident, in KiB
    int threads = 0;
    int descriptors = 0;
};

class Program {
public:
    // What it writes on standard error is appended to the log. It writes in the folder only, if the kernel can see to
    // it.
    Program(std::string path, std::string folder, std::string log);
    ~Program();
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    void start();
    void terminate() const;
    pid_t pid() const { return m_pid; }

    // The status as wait(2) gives it, once it has ended.
    std::optional<int> status();
    // False if it does not end within so many seconds.
    bool endsWithin(int seconds);

    Counts counts() const;
    // Its threads, or where it fell, on standard output; if there is a debugger.
    void printWhereItStands();
    // The whole lines of the log since the last call.
    std::vector<std::string> newLogLines();

private:
    std::string m_path, m_folder, m_log;
    pid_t m_pid = 0;
    std::optional<int> m_status;
    std::size_t m_logRead = 0;
};
