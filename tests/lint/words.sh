#!/bin/bash
# Words that have no place in finished work, and paths of one machine. Prints every place; exit status 1 when there is
# one.
set -eu
cd "$(dirname "$0")/../.."

words='\b(TODO|FIXME|XXX|HACK)\b|\b[Pp]laceholder\b'
paths='(^|[^[:alnum:]_.}])/(home|root|work|Users)/'
found=$(grep -rnIE "$words|$paths" src tests tools bench scripts cmake docs packaging .ci run test README.md CONTRIBUTING.md CMakeLists.txt \
    --exclude-dir=lint 2>/dev/null || true)
long=$(find src tests tools bench \( -name '*.h' -o -name '*.cpp' \) -exec wc -l {} + |
    awk '$2 != "total" && $1 > 450 { print $2 " has " $1 " lines: which is its second subject?" }')

[ -z "$found$long" ] && exit 0
printf '%s\n' "$found" "$long" | sed '/^$/d'
exit 1
