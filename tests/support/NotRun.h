// What did not run is said. A case that cannot run on this machine says why and ends; the program lists those at its
// end. What one of the packages of scripts/packages.sh brings is no such reason: without it a case fails.
#pragma once

#include <doctest/doctest.h>

#include <string>

namespace qm::test {

void notRun(const std::string& because);

// The status that the program ends with: also 1 when no case ran, or one ended without a single check.
int runCases(doctest::Context& context);

}  // namespace qm::test

#define NOT_RUN_BECAUSE(reason)   \
    do {                          \
        qm::test::notRun(reason); \
        return;                   \
    } while (false)
