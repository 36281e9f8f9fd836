#!/bin/bash
# A part of the player uses every field of every group of state and outlets that it takes, and takes none as a whole.
# Prints every field that a part could touch and does not; exit status 1 when there is one.
set -eu
cd "$(dirname "$0")/../../src"

groups=$(awk '
    /^struct [A-Za-z]+ \{/ { group = $2 }
    /^};/ { group = "" }
    group != "" && /;/ { sub(/\/\/.*/, ""); sub(/( = .*)?;.*/, ""); print group, $NF }
' app/PlayerState.h ui/controls/Outlets.h)
[ -n "$groups" ] || { echo "no groups found"; exit 1; }

found=$(
    # The windows, the keys and the notices of idle acts show the player as a whole.
    whole=$(grep -lE '(PlayerState|[^a-zA-Z]Outlets)& ' player/*.h sound/*.h library/*.h record/*.h ui/*.h update/*.h |
        grep -vE '^ui/(IdleActs|PlayerKeys)\.h$' || true)
    [ -z "$whole" ] || echo "$whole takes all state or all outlets"
    for header in player/*.h sound/*.h library/*.h record/*.h ui/*.h; do
        source=${header%.h}.cpp
        [ -f "$source" ] || continue
        while read -r group field member; do
            grep -qE "\b$member\.$field\b|\($member[,)]" "$header" "$source" ||
                echo "$header takes $group and does not use its $field"
        done < <(awk -v groups="$groups" '
            BEGIN { count = split(groups, lines, "\n") }
            match($0, /^    (const )?[A-Za-z]+& m_[A-Za-z]+;/) {
                type = $(NF - 1); member = $NF
                sub(/&/, "", type); sub(/;/, "", member)
                for (i = 1; i <= count; i++) {
                    split(lines[i], parts, " ")
                    if (parts[1] == type) print type, parts[2], member
                }
            }' "$header")
    done
)
[ -z "$found" ] && exit 0
echo "$found"
exit 1
