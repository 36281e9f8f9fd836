#!/bin/bash
# The direction of the includes, from the sources themselves: who may see whom is in docs/architecture.md.
# Prints every offence; exit status 1 when there is one.
set -eu
cd "$(dirname "$0")/../../src"

# The files a folder may include, as a pattern on "folder/File.h". The first line that fits the including file counts.
rules='
engine/api/         ^engine/api/
engine/realtime/    ^engine/realtime/
engine/             ^engine/
ui/controls/        ^(ui/controls/|engine/api/|app/PlayerState\.h)
remote/             ^(remote/|ui/[A-Z]|ui/controls/|library/|player/|sound/|engine/api/|app/PlayerState\.h)
ui/windows/         ^(ui/|library/|player/|sound/|record/|update/|engine/api/|app/PlayerState\.h)
app/                ^(app/|ui/|remote/|library/|player/|sound/|record/|update/|engine/api/)
subject/            ^(ui/[A-Z]|ui/controls/|library/|player/|sound/|record/|update/|engine/api/|app/(PlayerState|Prefs)\.h)
'

# External headers that only some folders may include: header pattern, including files' pattern.
reserved='
^(libav|libsw)          ^engine/(media|export)/
^rubberband             ^engine/render/stretch/
^fftw3                  ^engine/render/stretch/
^cubeb                  ^engine/(output|capture)/
^expat                  ^library/PropertyListReader\.cpp
^QDBus                  ^remote/
^(Q[A-Z]|Qt)            ^(app|ui|library|player|sound|record|update|remote)/
^QtWidgets$             ^$
^(curl/|Q(Network|Ssl|Tcp|Http)) ^update/network/
'

includes() {  # lines: file, " or <, included name
    grep -rHoE --include='*.h' --include='*.cpp' '^[[:space:]]*#[[:space:]]*include[[:space:]]*["<][^">]+' . |
        sed -E 's|^\./([^:]*):[^"<]*(["<])(.*)$|\1 \2 \3|'
}

offences=$(
    includes | awk -v rules="$rules" -v reserved="$reserved" '
        BEGIN {
            ruleCount = split(rules, ruleLines, "\n")
            reservedCount = split(reserved, reservedLines, "\n")
        }
        function allowed(file,   i, parts) {
            for (i = 1; i <= ruleCount; i++) {
                if (split(ruleLines[i], parts, " ") == 2 && (index(file, parts[1]) == 1 || parts[1] == "subject/")) {
                    return parts[2]
                }
            }
        }
        $2 == "\"" && $3 !~ allowed($1) { print $1 " includes " $3 ", which is not below it" }
        $2 == "<" {
            for (i = 1; i <= reservedCount; i++) {
                if (split(reservedLines[i], parts, " ") == 2 && $3 ~ parts[1] && $1 !~ parts[2]) {
                    print $1 " includes <" $3 ">, which is not for it"
                }
            }
        }'
)
missing=$(includes | awk '$2 == "\"" { print $3 }' | sort -u | while read -r name; do
    [ -f "$name" ] || echo "$name is included and does not exist"
done)
cycles=$(includes | awk '$2 == "\"" && $1 ~ /\.h$/ { print $1, $3 }' | tsort 2>&1 >/dev/null || true)

[ -z "$offences$missing$cycles" ] && exit 0
printf '%s\n' "$offences" "$missing" ${cycles:+"The headers include each other in a circle:"} "$cycles" | sed '/^$/d'
exit 1
