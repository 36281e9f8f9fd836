#!/bin/bash
# The demonstration fails when the program leaves a gap in the sound: here it is stopped for a second while it plays.
. "$(dirname "$0")/lib.sh"
work=$(mktemp -d "${TMPDIR:-/tmp}/quillmere-demonstration.XXXXXX")
demonstration=
trap 'end_demonstration; rm -rf "$work"' EXIT

end_demonstration() {
    [ -z "$demonstration" ] || kill "$demonstration" 2>/dev/null || true
}

# The program, which leaves its process id.
mkdir "$work/bin"
ln -s "$programs/quillmere-measure" "$work/bin"
printf '#!/bin/bash\necho $$ >"%s"\nexec "%s"\n' "$work/pid" "$programs/quillmere" >"$work/bin/quillmere"
chmod +x "$work/bin/quillmere"

loops() {
    grep -q "looping" "$work/said" || ! kill -0 "$demonstration"
}

# demonstrate_with_a_gap: sets status.
demonstrate_with_a_gap() {
    "$(dirname "$0")/../../scripts/demo.sh" "$work/bin" "$work/out" >"$work/said" 2>&1 &
    demonstration=$!
    wait_until "the demonstration loops" loops
    kill -0 "$demonstration" 2>/dev/null || { cat "$work/said"; fail "the demonstration ends before it loops"; }
    sleep 6 # so that the loop is on; the rest of it takes half a minute
    kill -STOP "$(cat "$work/pid")"
    sleep 1
    kill -CONT "$(cat "$work/pid")"
    status=0
    wait "$demonstration" || status=$?
    demonstration=
}

for ((attempt = 0; attempt < attempts; attempt++)); do
    demonstrate_with_a_gap
    cat "$work/said"
    grep -q "This machine was too busy" "$work/said" || break
done
expect "status of the demonstration" "$status" -eq 1
expect_text "$work/said" "the program made the gaps"
