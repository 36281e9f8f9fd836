#include "support/NotRun.h"

#include <cstdio>
#include <vector>

namespace qm::test {

namespace {

struct Tally {
    std::string current;
    bool isExcused = false;
    std::vector<std::string> notRun;
    std::vector<std::string> withoutCheck;
    bool ranNone = false;
};

Tally s_tally;

struct TallyKeeper : doctest::IReporter {
    explicit TallyKeeper(const doctest::ContextOptions&) {}

    void test_case_start(const doctest::TestCaseData& data) override {
        s_tally.current = data.m_name;
        s_tally.isExcused = false;
    }
    void test_case_end(const doctest::CurrentTestCaseStats& stats) override {
        if (stats.numAssertsCurrentTest == 0 && !s_tally.isExcused) s_tally.withoutCheck.push_back(s_tally.current);
    }
    void test_run_end(const doctest::TestRunStats& stats) override {
        s_tally.ranNone = stats.numTestCasesPassingFilters == 0;
    }

    void report_query(const doctest::QueryData&) override {}
    void test_run_start() override {}
    void test_case_reenter(const doctest::TestCaseData&) override {}
    void test_case_exception(const doctest::TestCaseException&) override {}
    void subcase_start(const doctest::SubcaseSignature&) override {}
    void subcase_end() override {}
    void log_assert(const doctest::AssertData&) override {}
    void log_message(const doctest::MessageData&) override {}
    void test_case_skipped(const doctest::TestCaseData&) override {}
};

DOCTEST_REGISTER_LISTENER("tally", 1, TallyKeeper);

}  // namespace

void notRun(const std::string& because) {
    s_tally.isExcused = true;
    s_tally.notRun.push_back(s_tally.current + ": " + because);
}

int runCases(doctest::Context& context) {
    const int status = context.run();
    for (const std::string& line : s_tally.notRun) std::printf("not run: %s\n", line.c_str());
    for (const std::string& name : s_tally.withoutCheck) std::printf("without a check: %s\n", name.c_str());
    if (s_tally.ranNone) std::printf("no case ran\n");
    return status != 0 || s_tally.ranNone || !s_tally.withoutCheck.empty() ? 1 : 0;
}

}  // namespace qm::test
