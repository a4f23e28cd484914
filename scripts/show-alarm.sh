#!/usr/bin/env bash
# Starts the calendar under a virtual X server with a clock set a few seconds before an
# event's minute, waits for its alarm window and saves a screenshot of the screen.
# Usage: scripts/show-alarm.sh [picture.png]
set -euo pipefail
cd "$(dirname "$0")/.."
picture=$(realpath -m "${1:-alarm.png}")
build=${BUILD_DIR:-build}
cmake -S . -B "$build" >/dev/null
cmake --build "$build" -j2 --target orva-calendar >/dev/null

# A program folder of its own, so no real Data.ini is touched.
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cp "$build/bin/orva-calendar" "$build/bin/alarm.wav" "$folder/"
{
    sed -n '/^\[Categories\]/,/^$/p' data/Data.ini | tr -d '\r'
    printf '[count]\nc=1\n[1]\nDate=3/3/2026\nTime=9:00 AM\nMemo=Call Anna: happy birthday!\nCat=Birthday\n'
} | sed 's/$/\r/' >"$folder/Data.ini"

export QT_QPA_PLATFORM=xcb LC_ALL=C.UTF-8
export XDG_RUNTIME_DIR=${XDG_RUNTIME_DIR:-$(mktemp -d)}
export FAKETIME_DONT_FAKE_MONOTONIC=1
xvfb-run -a -s "-screen 0 1280x800x24" bash -c '
    faketime -f "@2026-03-03 08:59:56" "$1" & shown=$!
    sleep 9
    import -window root "$2"
    # faketime runs the program as its child.
    kill $(pgrep -P "$shown") "$shown"' _ "$folder/orva-calendar" "$picture"
echo "$picture"
