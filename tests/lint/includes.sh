#!/bin/bash
# The direction of the includes, from the sources themselves. The folders stand in the order in which they build on one
# another, which is also the order to read them in: a file includes from its own folder and from those above its folder in
# this list. docs/architecture.md says what is in each. Prints every offence; exit status 1 when there is one.
set -eu
cd "$(dirname "$0")/../../src"

folders='
engine/api
engine/realtime
engine/waiting
engine/media
engine/media/tags
engine/sound
engine/output
engine/render/stretch
engine/render
engine/analysis
engine/video
engine/capture
engine/export
engine/movie
engine/module
ui/controls
app/state
ui/dialogs
player
sound
library
player/transport
practice
record
update
update/network
ui/actions
ui/chrome
ui/windows
remote
app
'

# The arrows that run back, each with its reason in docs/architecture.md.
back='
engine/media engine/media/tags
library player/transport
'

# What a folder sees of all that is above it, where that is less: including files, what they may include.
narrower='
^engine/                ^engine/
^ui/controls/           ^(ui/controls|engine/api)/
^remote/                ^(remote|app/state|ui/actions|ui/controls|library|player|sound|engine/api)/
^[^e]                   ^(engine/api|[^e][^/]*)/
'

# External headers that only some folders may include: header pattern, including files' pattern.
reserved='
^(libav|libsw)          ^engine/(media|export)/
^rubberband             ^engine/render/stretch/
^fftw3                  ^engine/render/stretch/
^cubeb                  ^engine/(output|capture)/
^expat                  ^library/PropertyListReader\.cpp
^QDBus                  ^remote/
^(Q[A-Z]|Qt)            ^(app|ui|library|player|sound|record|update|remote|practice)/
^QtWidgets$             ^$
^(curl/|Q(Network|Ssl|Tcp|Http)) ^update/network/
'

includes() {  # lines: file, " or <, included name
    grep -rHoE --include='*.h' --include='*.cpp' '^[[:space:]]*#[[:space:]]*include[[:space:]]*["<][^">]+' . |
        sed -E 's|^\./([^:]*):[^"<]*(["<])(.*)$|\1 \2 \3|'
}

offences=$(
    includes | awk -v folders="$folders" -v back="$back" -v narrower="$narrower" -v reserved="$reserved" '
        BEGIN {
            for (i = split(folders, names, "\n"); i > 0; i--) if (names[i] != "") place[names[i]] = i
            for (i = split(back, lines, "\n"); i > 0; i--) if (lines[i] != "") known[lines[i]] = 1
            narrowCount = split(narrower, narrowLines, "\n")
            reservedCount = split(reserved, reservedLines, "\n")
        }
        function folder(path) { sub("/[^/]*$", "", path); return path }
        !(folder($1) in place) { print folder($1) " has no place in the order of the folders"; next }
        $2 == "\"" && !(folder($3) in place) { print $1 " includes " $3 ", whose folder has no place in the order"; next }
        $2 == "\"" {
            if (place[folder($3)] > place[folder($1)] && !((folder($1) " " folder($3)) in known)) {
                print $1 " includes " $3 ", which is not below it"
            }
            for (i = 1; i <= narrowCount; i++) {
                if (split(narrowLines[i], parts, " ") == 2 && $1 ~ parts[1] && $3 !~ parts[2]) {
                    print $1 " includes " $3 ", which is not for it"
                }
            }
        }
        $2 == "<" {
            for (i = 1; i <= reservedCount; i++) {
                if (split(reservedLines[i], parts, " ") == 2 && $3 ~ parts[1] && $1 !~ parts[2]) {
                    print $1 " includes <" $3 ">, which is not for it"
                }
            }
        }' | sort -u
)
unused=$(
    echo "$back" | while read -r from to; do
        [ -n "$from" ] || continue
        includes | awk -v from="$from" -v to="$to" '
            function folder(path) { sub("/[^/]*$", "", path); return path }
            $2 == "\"" && folder($1) == from && folder($3) == to { found = 1 }
            END { if (!found) print "the arrow from " from " back to " to " is not there any more" }'
    done
)
missing=$(includes | awk '$2 == "\"" { print $3 }' | sort -u | while read -r name; do
    [ -f "$name" ] || echo "$name is included and does not exist"
done)
cycles=$(includes | awk '$2 == "\"" && $1 ~ /\.h$/ { print $1, $3 }' | tsort 2>&1 >/dev/null || true)

[ -z "$offences$unused$missing$cycles" ] && exit 0
printf '%s\n' "$offences" "$unused" "$missing" ${cycles:+"The headers include each other in a circle:"} "$cycles" |
    sed '/^$/d'
exit 1
