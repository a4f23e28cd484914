#!/usr/bin/env bash
# The Debian package as a user gets it: built by scripts/package.sh and checked with
# desktop-file-validate, appstreamcli and lintian. Then, as root: installed with apt-get,
# used by a new user through the launcher, upgraded by a newer build and removed, the user's
# data kept all along. The package and the user are removed again at the end.
set -euo pipefail
cd "$(dirname "$0")/../.."
build=${PACKAGE_BUILD_DIR:-build-deb}
user=orva-deb-test
log() { echo "== package: $*"; }
fail() {
    echo "FAIL: $*" >&2
    exit 1
}

bash scripts/package.sh >/dev/null
deb=$PWD/$(ls "$build"/orva-calendar_*.deb)
version=$(dpkg-deb -f "$deb" Version)
log "$(basename "$deb"), $(stat -c %s "$deb") bytes"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

dpkg-deb -x "$deb" "$work/root"
desktop-file-validate "$work"/root/usr/share/applications/orva-calendar.desktop \
    "$work"/root/usr/share/orva-calendar/autostart/orva-calendar.desktop
appstreamcli validate --no-net "$work"/root/usr/share/metainfo/*.metainfo.xml
status=0
lintian --fail-on error,warning "$deb" >"$work/lintian.log" 2>&1 || status=$?
grep -v 'running with root privileges' "$work/lintian.log" || true
[ "$status" -eq 0 ] || fail "lintian finds errors or warnings"

if [ "$(id -u)" -ne 0 ]; then
    log "skipped installing it: apt-get install and useradd need root"
    exit 0
fi
if dpkg-query -W -f='${Status}' orva-calendar 2>/dev/null | grep -q 'ok installed'; then
    log "skipped installing it: orva-calendar is installed on this machine and is left alone"
    exit 0
fi
# One run at a time: they share the package and the user.
exec 9>/run/lock/orva-calendar-package-test
flock 9

# A newer build of the same program, for the upgrade.
cmake -S . -B "$build" -DORVA_PACKAGE_VERSION="$version+1" >/dev/null
(cd "$build" && cpack -G DEB -B "$work/newer" >/dev/null)
cmake -S . -B "$build" -DORVA_PACKAGE_VERSION= >/dev/null
newer=$(ls "$work"/newer/orva-calendar_*.deb)

apt_get() {
    DEBIAN_FRONTEND=noninteractive apt-get -y -q --no-install-recommends \
        -o DPkg::Lock::Timeout=600 "$@" >"$work/apt.log" 2>&1 || {
        cat "$work/apt.log" >&2
        fail "apt-get $*"
    }
}
cleanup() {
    local status=$?
    if dpkg-query -W -f='${Status}' orva-calendar 2>/dev/null | grep -q 'ok installed'; then
        apt_get purge orva-calendar
    fi
    userdel -r -f "$user" 2>/dev/null || true
    rm -rf "$work"
    exit "$status"
}
trap cleanup EXIT
userdel -r -f "$user" 2>/dev/null || true # left by a run that was killed
useradd -m -s /bin/bash "$user"
home=$(getent passwd "$user" | cut -d: -f6)
prog=$home/.local/share/orva-calendar
session() {
    log "$user's session: $1"
    runuser -u "$user" -- env -i HOME="$home" USER="$user" LOGNAME="$user" PATH=/usr/bin:/bin \
        E2E_LAUNCHER=/usr/bin/orva-calendar ${E2E_KEEP:+E2E_KEEP=1} \
        bash "$PWD/tests/packaging/session.sh" "$1"
}
# checksums FILE...: of files in the user's program folder.
checksums() { (cd "$prog" && sha256sum "$@"); }

log "installing $version"
apt_get install "$deb"
session add
cmp "$prog/orva-calendar" /usr/lib/orva-calendar/orva-calendar
[ "$(stat -c %U "$prog/Data.ini")" = "$user" ] || fail "Data.ini is not $user's"

# What the user has beside the shipped files stays; a shipped file changed is replaced.
runuser -u "$user" -- sh -c 'mkdir -p "$1/Backups" && echo mine >"$1/Backups/mine.ini" &&
    echo stale >>"$1/help.hlp"' sh "$prog"
before=$(checksums Data.ini Backups/mine.ini)
log "upgrading to $version+1"
apt_get install "$newer"
[ "$(dpkg-query -W -f='${Version}' orva-calendar)" = "$version+1" ] || fail "not upgraded"
session see
[ "$(checksums Data.ini Backups/mine.ini)" = "$before" ] || fail "the upgrade changed the user's files"
for file in help.hlp Shipped.list; do
    cmp "$prog/$file" "/usr/lib/orva-calendar/$file" || fail "$file was not refreshed"
done

log "removing it"
apt_get remove orva-calendar
[ ! -e /usr/bin/orva-calendar ] || fail "the launcher is still there"
[ "$(checksums Data.ini Backups/mine.ini)" = "$before" ] || fail "removing changed the user's files"
[ -x "$prog/orva-calendar" ] || fail "removing took the user's program folder"
log "passed"
