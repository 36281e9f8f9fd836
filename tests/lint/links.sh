#!/bin/bash
# Every file that a page links to is there. Prints every broken link; exit status 1 when there is one.
set -eu
cd "$(dirname "$0")/../.."

broken=$(
    grep -oHE '\]\([^)#]+' README.md $(find docs src -name '*.md') | sed 's/:](/ /' | while read -r page target; do
        case $target in *://*) continue ;; esac
        [ -e "$(dirname "$page")/$target" ] || echo "$page links to $target, which does not exist"
    done
)
[ -z "$broken" ] && exit 0
echo "$broken"
exit 1
