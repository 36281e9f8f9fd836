#!/bin/bash
# Every source is formatted as .clang-format says.
set -eu
cd "$(dirname "$0")/../.."
find src tests tools bench \( -name '*.h' -o -name '*.cpp' \) -print0 | xargs -0 clang-format --dry-run -Werror
