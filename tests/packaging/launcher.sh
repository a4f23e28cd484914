#!/usr/bin/env bash
# The launcher (its source given as $1) on a template of its own, with a stand-in program that
# notes the folder it runs from: what a first start, a start with nothing new, an upgrade
# and a lost file do to a user's program folder.
set -euo pipefail
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
fail() {
    echo "FAIL: $*" >&2
    exit 1
}
template=$work/template
mkdir "$template" "$work/home"
sed "s#@ORVA_TEMPLATE_DIR@#$template#" "$1" >"$work/launcher"
printf '#!/bin/sh\ncd "$(dirname "$0")" && pwd >"$HOME/ran-in"\n' >"$template/orva-calendar"
chmod 755 "$template/orva-calendar"
echo guide >"$template/help.hlp"
echo starter >"$template/Data.ini"
echo "ORVA Calendar 1" >"$template/Shipped.list"

# start [XDG_DATA_HOME]: the launcher as a desktop starts it; checks where the program ran.
start() {
    rm -f "$work/home/ran-in"
    env -i HOME="$work/home" PATH=/usr/bin:/bin ${1:+XDG_DATA_HOME="$1"} sh "$work/launcher"
    [ "$(cat "$work/home/ran-in")" = "$folder" ] || fail "the program ran in $(cat "$work/home/ran-in")"
}
# expect FILE TEXT
expect() { [ "$(cat "$folder/$1")" = "$2" ] || fail "$1 holds \"$(cat "$folder/$1")\", not \"$2\""; }

folder=$work/home/.local/share/orva-calendar
start
expect Data.ini starter
expect help.hlp guide
[ -x "$folder/orva-calendar" ] || fail "the program was not made runnable"

# The user's files, and a shipped file changed while the template was not.
echo mine >"$folder/Data.ini"
mkdir "$folder/Backups" && echo backup >"$folder/Backups/1.ini"
echo edited >"$folder/help.hlp"
start
expect help.hlp edited

# An upgrade replaces the shipped files and nothing else.
echo "ORVA Calendar 2" >"$template/Shipped.list"
echo "new guide" >"$template/help.hlp"
start
expect help.hlp "new guide"
expect Shipped.list "ORVA Calendar 2"
expect Data.ini mine
expect Backups/1.ini backup
[ -z "$(find "$folder" -name '.*')" ] || fail "a refresh left $(find "$folder" -name '.*')"

# A lost store gets the starter again.
rm "$folder/Data.ini"
start
expect Data.ini starter

# XDG_DATA_HOME chooses the folder, when it is an absolute path.
folder=$work/data/orva-calendar
start "$work/data"
expect Data.ini starter
folder=$work/home/.local/share/orva-calendar
start relative/path
echo passed
