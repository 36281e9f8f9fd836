#define DOCTEST_CONFIG_IMPLEMENT
#include "support/NotRun.h"

int main(int argc, char** argv) {
    doctest::Context context(argc, argv);
    return qm::test::runCases(context);
}
