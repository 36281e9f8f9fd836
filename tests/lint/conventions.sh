#!/bin/bash
# Two conventions of which each has a minority left. Not part of the test run until it is gone; prints what is.
# - A file of test cases is called after its subject with Tests: PlayheadTests.cpp.
# - One short statement stands behind its condition on the same line, without braces; clang-format keeps longer ones apart.
set -eu
cd "$(dirname "$0")/../.."

find tests -name '*_test.cpp' | sort
find src tests tools bench \( -name '*.h' -o -name '*.cpp' \) -print0 | xargs -0 awk '
    FNR == 1 { head = body = "" }
    head != "" && body != "" && /^ *}$/ && length(head) + length(body) < 120 { print FILENAME ":" FNR - 2 ": " head }
    head != "" && body == "" && /;$/ { body = $0; sub(/^ */, "", body); next }
    { head = body = "" }
    /^ *(if|for|while) \(.*\) \{$/ { head = $0 }
'
