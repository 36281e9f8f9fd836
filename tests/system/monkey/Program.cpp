#include "Program.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <thread>
#include <utility>

#include "Cage.h"

Program::Program(std::string path, std::string folder, std::string log)
    : m_path(std::move(path)), m_folder(std::move(folder)), m_log(std::move(log)) {}

Program::~Program() {
    if (m_pid > 0 && !m_status) kill(m_pid, SIGKILL);
}

void Program::start() {
    m_status.reset();
    m_pid = fork();
    if (m_pid != 0) return;
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    const rlimit whole{RLIM_INFINITY, RLIM_INFINITY};
    if (chdir(m_folder.c_str()) != 0 || setrlimit(RLIMIT_CORE, &whole) != 0) _exit(125);
    const int log = open(m_log.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
    const int nothing = open("/dev/null", O_RDWR);
    dup2(nothing, STDIN_FILENO);
    dup2(nothing, STDOUT_FILENO);
    dup2(log, STDERR_FILENO);
    close(log);
    close(nothing);
    if (canKeepToAFolder() && !mayWriteOnlyIn(m_folder)) _exit(126);
    execl(m_path.c_str(), m_path.c_str(), nullptr);
    _exit(127);
}

void Program::terminate() const {
    kill(m_pid, SIGTERM);
}

std::optional<int> Program::status() {
    int status = 0;
    if (!m_status && waitpid(m_pid, &status, WNOHANG) == m_pid) m_status = status;
    return m_status;
}

bool Program::endsWithin(int seconds) {
    constexpr int kLooksPerSecond = 50;
    for (int look = 0; look < seconds * kLooksPerSecond && !status(); ++look)
        std::this_thread::sleep_for(std::chrono::milliseconds(1000 / kLooksPerSecond));
    return m_status.has_value();
}

Counts Program::counts() const {
    const std::string place = "/proc/" + std::to_string(m_pid);
    Counts counts;
    std::ifstream file(place + "/status");
    for (std::string word; file >> word;) {
        if (word == "VmRSS:") file >> counts.memory;
        if (word == "Threads:") file >> counts.threads;
    }
    std::error_code failed;
    for (std::filesystem::directory_iterator entry(place + "/fd", failed), end; !failed && entry != end;
         entry.increment(failed))
        ++counts.descriptors;
    return counts;
}

void Program::printWhereItStands() {
    const std::string core = m_folder + "/core";
    std::string what = "-p " + std::to_string(m_pid);
    if (status()) {
        std::printf("it has ended with %x\n", *status());
        what = m_path + " " + core;
    }
    std::fflush(stdout);
    const std::string look = "gdb " + what + " -batch -ex 'bt 40' -ex 'thread apply all bt 12' 2>/dev/null </dev/null";
    if (std::system((look + " | grep -E '^(#|Thread)' | cut -c 1-160 | head -n 150").c_str()) != 0)
        std::puts("(no debugger)");
    std::filesystem::remove(core);
}

std::vector<std::string> Program::newLogLines() {
    std::vector<std::string> lines;
    std::ifstream file(m_log);
    file.seekg(static_cast<std::streamoff>(m_logRead));
    for (std::string line; std::getline(file, line) && !file.eof();) {
        m_logRead += line.size() + 1;
        lines.push_back(std::move(line));
    }
    return lines;
}
