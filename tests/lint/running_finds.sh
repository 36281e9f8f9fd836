#!/bin/bash
# running.sh finds each way in which a test could pass without having run. Prints those that it does not find.
set -eu
cd "$(dirname "$0")"
planted=$(mktemp -d)
trap 'rm -rf "$planted"' EXIT

status=0
plant() {  # FILE LINE...
    rm -rf "${planted:?}"/*
    mkdir -p "$(dirname "$planted/$1")"
    printf '%s\n' "${@:2}" >"$planted/$1"
    ! bash running.sh "$planted" >/dev/null 2>&1 || { echo "not found in $1:" && cat "$planted/$1" && status=1; }
}

# What is in order, so that what is found is found for its own reason.
fine() {
    rm -rf "${planted:?}"/*
    printf '%s\n' 'TEST_CASE("fine") {' '    if (::geteuid() == 0) NOT_RUN_BECAUSE("root");' \
        '    const auto look = [&] {' '        if (!box) return;' '    };' '    CHECK(QFile::exists(path));' '}' >"$planted/a.cpp"
    echo 'include(more.cmake)' >"$planted/CMakeLists.txt"
    echo 'player || cannot_run "no player" # nor can it exit "$status"' >"$planted/a.sh"
    bash running.sh "$planted" || { echo "what is in order is found" && status=1; }
}
fine
plant a.cpp 'TEST_CASE("a") {' '    const char* folder = std::getenv("X");' '    if (!folder) {' '        return;' '    }' '}'
plant a.cpp 'TEST_CASE("a") {' '    if (!hasEncoder()) return;' '}'
plant a.cpp 'TEST_CASE("a") {' '    for (;;) {' '        if (!std::filesystem::exists(name)) continue;' '    }' '}'
plant a.cpp 'TEST_CASE("a" * doctest::skip(true)) {' '}'
plant a.cpp '#ifdef X' 'TEST_CASE("a") {' '}' '#endif'
plant a.h 'bool look() {' '    const bool known = qEnvironmentVariableIsSet("X");' '    if (!known) return;' '}'
plant CMakeLists.txt 'include(system/system.cmake OPTIONAL)'
plant a.cmake 'find_package(X11 QUIET)'
plant system/a.sh 'command -v player || exit 0'
plant system/a.sh 'command -v player || exit 77'
exit "$status"
