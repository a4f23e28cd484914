#!/usr/bin/env bash
# Shows the year calendar control on its own under a virtual X server and saves a
# screenshot of the screen. Usage: scripts/show-calendar.sh [picture.png]
set -euo pipefail
cd "$(dirname "$0")/.."
picture=$(realpath -m "${1:-calendar.png}")
build=${BUILD_DIR:-build}
cmake -S . -B "$build" >/dev/null
cmake --build "$build" -j2 --target show_calendar >/dev/null
export QT_QPA_PLATFORM=xcb
export XDG_RUNTIME_DIR=${XDG_RUNTIME_DIR:-$(mktemp -d)}
xvfb-run -a -s "-screen 0 1280x800x24" bash -c '
    "$1" & shown=$!
    sleep 2
    import -window root "$2"
    kill "$shown"' _ "$build/tools/show_calendar" "$picture"
echo "$picture"
