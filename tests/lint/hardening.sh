#!/bin/bash
# hardening.sh BUILD: the programs and modules as they are installed carry the safeguards that cmake/Toolchain.cmake asks
# for. Read from the files themselves, because a linker drops without a word what it does not know. Prints every one
# that is missing; exit status 1 when there is one.
set -eu
installed=$(mktemp -d)
trap 'rm -rf "$installed"' EXIT
cmake --install "$1" --prefix "$installed" >/dev/null

# The compiler always turns these into the checked form, whatever it knows about the arguments.
always_fortified='(v?f?printf|gets|longjmp)'

check() {  # FILE: prints what is missing
    local header dynamic segments notes symbols machine
    header=$(readelf -W -h "$1")
    dynamic=$(readelf -W -d "$1")
    segments=$(readelf -W -l "$1")
    notes=$(readelf -W -n "$1")
    symbols=$(readelf -W --dyn-syms "$1" | sed -nE 's/.* UND ([^@ ]+).*/\1/p')
    machine=$(awk -F': *' '/Machine:/ { print $2 }' <<<"$header")

    grep -q 'Type: *DYN' <<<"$header" || echo "is not position independent"
    if grep -q ' INTERP ' <<<"$segments"; then
        grep -q 'FLAGS_1.*PIE' <<<"$dynamic" || echo "is no position-independent program"
    fi
    grep -q ' GNU_RELRO ' <<<"$segments" || echo "has no part that is read-only after relocation"
    grep -Eq 'BIND_NOW|FLAGS_1.*NOW' <<<"$dynamic" || echo "binds its calls late"
    awk '$1 == "GNU_STACK" { found = 1; if ($7 ~ /E/) bad = 1 } END { exit bad || !found }' <<<"$segments" ||
        echo "has a stack that can be executed"
    grep -qx '__stack_chk_fail' <<<"$symbols" || echo "has no stack protector"
    ! grep -Exq "$always_fortified" <<<"$symbols" || echo "calls $(grep -Ex "$always_fortified" <<<"$symbols") unchecked"
    ! grep -Eq '\((RPATH|RUNPATH)\)' <<<"$dynamic" || echo "looks for libraries in folders of its own"
    if [[ $machine == *X86-64* ]]; then
        grep -q 'x86 feature:.*SHSTK' <<<"$notes" || echo "is not marked for the shadow stack"
        # The mark for indirect branches needs start files that have it, which Debian 12 does not; the code has the rest.
        [ "$(objdump -d -j .text "$1" | grep -c endbr64)" -gt 10 ] || echo "has no landing pads for indirect branches"
    fi
}

status=0 checked=0 fortified=0
for file in "$installed"/bin/* "$installed"/lib/quillmere/*; do
    missing=$(check "$file")
    checked=$((checked + 1))
    if readelf -W --dyn-syms "$file" | grep -Eq 'UND __[a-z]+_chk(@|$)'; then
        fortified=$((fortified + 1))
    fi
    [ -z "$missing" ] || { sed "s|^|${file#"$installed"/} |" <<<"$missing"; status=1; }
done
[ "$checked" -ge 4 ] || { echo "only $checked programs and modules are installed"; status=1; }
[ "$fortified" -ge 1 ] || { echo "no program or module makes a single checked call"; status=1; }
exit "$status"
