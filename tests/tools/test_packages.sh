#!/bin/bash
# The installation of missing packages waits for another package manager, and says what to do where it cannot install.
# Nothing is installed: the package manager's folders are a scratch folder, and only its update is the real one.
set -eu
work=$(mktemp -d "${TMPDIR:-/tmp}/quillmere-packages.XXXXXX")
holder=
trap '[ -z "$holder" ] || kill "$holder" 2>/dev/null; rm -rf "$work"' EXIT
. "$(dirname "$0")/../../scripts/packages.sh"
apt_pause=0.2

fail() {
    echo "FAILED: $*" >&2
    cat "$work/said" >&2 2>/dev/null
    exit 1
}
expect_said() { grep -qF -- "$1" "$work/said" || fail "it does not say: $1"; }
expect_not_said() { ! grep -qF -- "$1" "$work/said" || fail "it says: $1"; }

# An apt-get in front of the real one: the update is real, in folders of its own; of the installation it only keeps what
# was asked for, after another program has held the lock twice.
mkdir -p "$work/bin" "$work/state/lists/partial" "$work/cache/archives/partial" "$work/etc"
: >"$work/locks_left"
cat >"$work/bin/apt-get" <<SCRIPT
#!/bin/bash
for word in "\$@"; do
    case \$word in
        update)
            exec "$(command -v apt-get)" "\$@" -o Dir::State="$work/state" -o Dir::Cache="$work/cache" \\
                -o Dir::Etc="$work/etc" -o APT::Sandbox::User= ;;
        install)
            if [ -s "$work/locks_left" ]; then
                sed -i 1d "$work/locks_left"
                echo "E: Could not get lock /var/lib/dpkg/lock-frontend. It is held by process 1 (apt)" >&2
                exit 100
            fi
            echo "\$*" >>"$work/installed"
            exit \$(cat "$work/install_status" 2>/dev/null || echo 0) ;;
    esac
done
SCRIPT
# Neither root nor a password is needed for any of this.
printf '#!/bin/bash\nexec "$@"\n' >"$work/bin/sudo"
chmod +x "$work/bin/apt-get" "$work/bin/sudo"
real_path=$PATH
PATH=$work/bin:$PATH

install_named() { install_packages quillmere-no-such-package >"$work/out" 2>"$work/said"; }

# Nothing is in the way.
install_named || fail "an installation fails"
[ "$(grep -c quillmere-no-such-package "$work/installed")" -eq 1 ] || fail "it is not installed once"
[ ! -s "$work/out" ] || fail "it writes on standard output"
expect_not_said "Another program"

# Another program holds the lists for a while, as the real one holds them, and then the packages.
perl -e 'use Fcntl;
         my $whole = pack("s s l! l! i", F_WRLCK, 0, 0, 0, 0);
         open(my $lists, ">", $ARGV[0]) or die;
         fcntl($lists, F_SETLK, $whole) or die;
         open(my $ready, ">", $ARGV[1]) or die;
         sleep 60' "$work/state/lists/lock" "$work/held" &
holder=$!
until [ -e "$work/held" ]; do
    kill -0 "$holder" 2>/dev/null || fail "nothing holds the lists"
    sleep 0.05
done
printf '1\n2\n' >"$work/locks_left"
rm "$work/installed"
install_named &
installation=$!
until grep -q "Another program is installing packages" "$work/said"; do
    kill -0 "$installation" 2>/dev/null || fail "it gives up"
    sleep 0.05
done
[ ! -e "$work/installed" ] || fail "it installs while the lists are held"
kill "$holder"
wait "$holder" || true
holder=
wait "$installation" || fail "it fails although the lock is free again"
[ "$(grep -c quillmere-no-such-package "$work/installed")" -eq 1 ] || fail "it is not installed once the lock is free"
[ ! -s "$work/locks_left" ] || fail "it does not wait for the second lock"

# It ends, when the other does not.
apt_tries=3
seq 10 >"$work/locks_left"
! install_named || fail "it succeeds while the packages are held"
expect_said "It has not finished"
[ "$(wc -l <"$work/locks_left")" -eq 7 ] || fail "it tries $((10 - $(wc -l <"$work/locks_left"))) times instead of three"
: >"$work/locks_left"

# A failure of another kind is one at once.
echo 100 >"$work/install_status"
rm "$work/installed"
! install_named || fail "a failing installation passes"
[ "$(wc -l <"$work/installed")" -eq 1 ] || fail "a failing installation is tried again"

# Somebody who may not install hears what is missing.
mkdir "$work/poor"
for name in id dpkg-query cat; do ln -s "$(PATH=$real_path command -v $name)" "$work/poor/$name"; done
printf '#!/bin/sh\necho 1000\n' >"$work/poor/id.new" && mv -f "$work/poor/id.new" "$work/poor/id" && chmod +x "$work/poor/id"
ln -s "$(command -v dirname)" "$(command -v bash)" "$work/poor"
PATH=$work/poor
! install_named || { PATH=$real_path; fail "without sudo an installation passes"; }
PATH=$real_path
expect_said "These packages are missing, and only root can install them"
expect_said "apt-get install --no-install-recommends quillmere-no-such-package"
expect_not_said "command not found"

# So does whoever starts the program from a checkout: in words, not by a command that is not found.
rm "$work/poor/dpkg-query"
printf '#!/bin/sh\nexit 1\n' >"$work/poor/dpkg-query"
chmod +x "$work/poor/dpkg-query"
for start in run test scripts/package; do
    ! PATH=$work/poor "$(dirname "$0")/../../$start" >"$work/out" 2>"$work/said" || fail "$start passes"
    expect_said "These packages are missing, and only root can install them"
    expect_not_said "not found"
done
