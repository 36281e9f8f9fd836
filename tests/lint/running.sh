#!/bin/bash
# running.sh [FOLDER]: no test can pass without having run. Looks for what would let it, in the tests or in those of
# another folder: a case that returns or goes on before its checks because of the machine it is on, a case that is
# compiled or listed only sometimes, a script that ends with status 0 by itself. Prints every place; exit status 1 when
# there is one. A case that cannot run says so with NOT_RUN_BECAUSE, a script with cannot_run; that a case checks
# anything at all is seen by the test programs themselves.
set -eu
cd "${1:-$(dirname "$0")/..}"

sources=$(find . \( -name '*.cpp' -o -name '*.h' \) -not -path './system/*')
lists=$(find . -name 'CMakeLists.txt' -o -name '*.cmake')
scripts=$(find . -name '*.sh' -not -path './lint/*')

# What a case asks the machine; the answer must not be a silent way out.
machine='getenv|[eE]nvironmentVariable|[^_]exists\(|is_directory\(|geteuid|std::system\(|findExecutable|Font.*upports'

# shellcheck disable=SC2086 # names of sources have no spaces
found=$(
    awk -v machine="$machine" '
        function tell(what) { print FILENAME ":" FNR ": " what ": " $0 }
        FNR == 1 { inCase = 0; conditions = 0; asked = "" }
        /^ *#if/ { conditions++ }
        /^ *#endif/ { conditions-- }
        /^TEST_CASE/ { inCase = 1; if (conditions > 0 && FILENAME !~ /\.h$/) tell("compiled only sometimes") }
        /^}/ { inCase = 0 }
        /doctest::(skip|may_fail|should_fail|expected_failures)/ { tell("held back or excused") }
        inCase && /^    if .*[ ]return;/ { tell("returns early") }
        inCase && /^        return;/ && head ~ /^    (if|} else)/ { tell("returns early") }
        /^ *(if|for|while|} else)( |$)/ { head = $0 }
        # A name that was set from the machine, or the question itself, and then a way out within three lines.
        $0 ~ machine && !/CHECK|REQUIRE|NOT_RUN_BECAUSE|^ *\/\// {
            asked = FNR
            name = match($0, /[A-Za-z_]+ = /) ? substr($0, RSTART, RLENGTH - 3) : ""
        }
        asked && FNR <= asked + 3 && /(^| )(return|continue);/ && !/NOT_RUN_BECAUSE/ && !(inCase && /^    if .*[ ]return;/) &&
            ($0 ~ machine || (name != "" && (index($0, name) || index(head, name))) || head ~ machine) {
            tell("goes out because of the machine")
        }' /dev/null $sources
    grep -HnE 'include\(.*OPTIONAL|find_(package|program|library).*QUIET|if\(EXISTS' /dev/null $lists | sed 's/:\([0-9]*\):/:\1: listed only sometimes: /'
    grep -HnE '(^|[^_[:alnum:]])exit( +0)?([^_[:alnum:] ]|$)|(^|[^_[:alnum:]])exit 77' /dev/null $scripts |
        grep -v '^\./system/lib\.sh:.*exit 77' | sed 's/:\([0-9]*\):/:\1: ends by itself: /'
) || true

[ -z "$found" ] && exit 0
echo "$found"
exit 1
