# Shared by the end-to-end scripts: each one runs the built program as a user would, on a
# private X display with a window manager and a tray, in a throwaway copy of the program
# folder, and drives it with xdotool.
#
#   source lib.sh; e2e_init "$@"      # $1: the built program folder (default build/bin)
#
# With E2E_LAUNCHER set, the program is started through that launcher of an installed package
# instead, with the user's own home, and PROG is the program folder it makes there.
#
# E2E_KEEP=1 keeps the work folder (store, screenshots, logs) even when the script passes.

E2E_DIR=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
E2E_SOURCE_DATA=$E2E_DIR/../../data

set -euo pipefail

log() { printf '[%6.1fs] %s\n' "$(e2e_elapsed)" "$*" >&2; }
fail() {
    printf 'FAIL: %s\n' "$*" >&2
    exit 1
}

e2e_elapsed() { awk -v now="$(date +%s%N)" -v t0="$E2E_T0" 'BEGIN { printf "%.1f", (now - t0) / 1e9 }'; }

# e2e_bus "$@", before e2e_init: re-runs the calling script on a private session bus, which
# the program started by start_program then uses.
e2e_bus() {
    if [ -z "${E2E_BUS:-}" ]; then
        command -v dbus-run-session >/dev/null || fail "dbus-run-session is missing: run scripts/setup.sh"
        E2E_BUS=1 exec dbus-run-session -- bash "$0" "$@"
    fi
}

# at-spi2-core's accessibility bus on the script's session bus (see e2e_bus), which the
# program's bridge and the test's client meet on.
start_accessibility_bus() {
    E2E_A11Y=1
    /usr/libexec/at-spi-bus-launcher --launch-immediately >"$WORK/at-spi.log" 2>&1 &
    E2E_PIDS+=($!)
    wait_until 20 "the accessibility bus" dbus-send --session --print-reply --dest=org.a11y.Bus \
        /org/a11y/bus org.a11y.Bus.GetAddress
}

# Re-runs the calling script under its own X server, then sets up the work folder.
e2e_init() {
    if [ -z "${E2E_DISPLAY_READY:-}" ]; then
        local tool
        for tool in xvfb-run xdotool trayer openbox import convert; do
            command -v "$tool" >/dev/null || fail "$tool is missing: run scripts/setup.sh"
        done
        # A random first display number: xvfb-run -a alone races with other runs started at
        # the same moment.
        E2E_DISPLAY_READY=1 exec xvfb-run -a -n $((200 + RANDOM % 600)) \
            -s "-screen 0 1280x800x24 -nolisten tcp" bash "$0" "$@"
    fi
    E2E_T0=$(date +%s%N)
    WORK=$(mktemp -d "${TMPDIR:-/tmp}/orva-e2e.XXXXXX")
    SHOTS=$WORK/shots
    mkdir -p "$SHOTS" "$WORK/home" "$WORK/cwd" "$WORK/run"
    chmod 700 "$WORK/run"
    APP_PID=
    E2E_PIDS=()
    trap e2e_cleanup EXIT
    trap 'exit 143' TERM INT HUP
    if [ -n "${E2E_LAUNCHER:-}" ]; then
        PROG=$HOME/.local/share/orva-calendar
    else
        E2E_BIN=$(cd "${1:-$E2E_DIR/../../build/bin}" && pwd)
        [ -x "$E2E_BIN/orva-calendar" ] || fail "no program in $E2E_BIN"
        PROG=$WORK/prog
        mkdir "$PROG"
        install_program
    fi
    start_desktop
}

e2e_cleanup() {
    local status=$?
    stop_program
    local pid
    for pid in "${E2E_PIDS[@]}"; do
        kill "$pid" 2>/dev/null || true
        wait "$pid" 2>/dev/null || true
    done
    if [ "$status" -ne 0 ] || [ -n "${E2E_KEEP:-}" ]; then
        echo "work folder kept: $WORK" >&2
        [ "$status" -eq 0 ] || { echo "--- program log" >&2; cat "$WORK"/program*.log >&2 2>/dev/null || true; }
    else
        rm -rf "$WORK"
    fi
    exit "$status"
}

# The program folder as installed: the executable and the files it ships, with the first store
# from the sources, whatever a developer's runs left in the build folder.
install_program() {
    local f
    for f in "$E2E_BIN"/*; do
        case ${f##*/} in
        Data.ini | Pass.ini | temp.url | Last_Print.txt | LastError.json) ;;
        *) [ -f "$f" ] && cp -p "$f" "$PROG/" ;;
        esac
    done
    cp "$E2E_SOURCE_DATA/Data.ini" "$PROG/Data.ini"
}

start_desktop() {
    openbox --startup "touch $WORK/wm-ready" >"$WORK/openbox.log" 2>&1 &
    E2E_PIDS+=($!)
    wait_until 20 "the window manager" test -e "$WORK/wm-ready"
    trayer --edge top --align right --widthtype pixel --width 120 --height 28 \
        --SetDockType true --expand false >"$WORK/trayer.log" 2>&1 &
    E2E_PIDS+=($!)
    wait_until 20 "the tray" xdotool search --onlyvisible --classname '^panel$'
}

# wait_until SECONDS WHAT COMMAND...: polls COMMAND until it succeeds.
wait_until() {
    local seconds=$1 what=$2
    shift 2
    local deadline=$(($(date +%s) + seconds))
    until "$@" >/dev/null 2>&1; do
        [ "$(date +%s)" -lt "$deadline" ] || fail "timed out after ${seconds}s waiting for $what"
        sleep 0.2
    done
}

# start_program [FAKE-START]: starts the program from the throwaway folder; with a time such
# as "2026-03-03 08:59:50" its clock starts there and runs on; with "clock-file", set_clock
# sets it, at any time.
start_program() {
    local env=(QT_QPA_PLATFORM=xcb LC_ALL=C.UTF-8 LANG=C.UTF-8 TZ=UTC XDG_RUNTIME_DIR="$WORK/run")
    local program=${E2E_LAUNCHER:-$PROG/orva-calendar}
    [ -n "${E2E_LAUNCHER:-}" ] || env+=(
        HOME="$WORK/home" XDG_CONFIG_HOME="$WORK/home/.config"
        XDG_CACHE_HOME="$WORK/home/.cache" XDG_DATA_HOME="$WORK/home/.local/share"
    )
    if [ -n "${1:-}" ]; then
        local lib
        lib=$(ls /usr/lib/*/faketime/libfaketime.so.1 2>/dev/null | head -n1)
        [ -n "$lib" ] || fail "libfaketime is missing: run scripts/setup.sh"
        # Qt's timers run on the monotonic clock, which stays real.
        env+=(LD_PRELOAD="$lib" FAKETIME_DONT_FAKE_MONOTONIC=1)
        if [ "$1" = clock-file ]; then
            env+=(FAKETIME_TIMESTAMP_FILE="$WORK/clock" FAKETIME_CACHE_DURATION=1)
        else
            env+=(FAKETIME="@$1")
        fi
    fi
    # With the accessibility bus up, the bridge is forced on, as no screen reader runs.
    [ -z "${E2E_A11Y:-}" ] || env+=(QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1)
    E2E_RUNS=$((${E2E_RUNS:-0} + 1))
    # No session bus but the script's own: the tray icon goes to the XEmbed tray, as on a
    # plain X desktop, unless the script runs a StatusNotifierItem host on its bus.
    local unset=(-u QT_QPA_PLATFORMTHEME -u FAKETIME -u SESSION_MANAGER -u XDG_DATA_HOME)
    [ -n "${E2E_BUS:-}" ] || unset+=(-u DBUS_SESSION_BUS_ADDRESS)
    (cd "$WORK/cwd" && exec env "${unset[@]}" "${env[@]}" "$program") \
        >"$WORK/program$E2E_RUNS.log" 2>&1 &
    APP_PID=$!
    APP_STATUS=
    log "program started (pid $APP_PID${1:+, clock at $1})"
}

# set_clock TIME: the clock of a program started with "clock-file" shows TIME, in UTC, and
# runs on from there; a running program reads it within a second.
set_clock() {
    printf '%+d\n' $(($(date -ud "$1" +%s) - $(date +%s))) >"$WORK/clock.new"
    mv "$WORK/clock.new" "$WORK/clock"
}

stop_program() {
    if [ -n "${APP_PID:-}" ] && kill -0 "$APP_PID" 2>/dev/null; then
        kill "$APP_PID" 2>/dev/null || true
        wait "$APP_PID" 2>/dev/null || true
    fi
    APP_PID=
}

program_running() { [ -n "${APP_PID:-}" ] && kill -0 "$APP_PID" 2>/dev/null; }

# wait_exit SECONDS: waits for the program to end; its exit status is then in APP_STATUS.
wait_exit() {
    local deadline=$(($(date +%s) + $1))
    while program_running; do
        [ "$(date +%s)" -lt "$deadline" ] || fail "the program still runs after $1s"
        sleep 0.2
    done
    APP_STATUS=0
    wait "$APP_PID" || APP_STATUS=$?
    APP_PID=
    log "program ended with status $APP_STATUS"
}

regex_quote() { printf '%s' "$1" | sed 's/[][\.*^$+?(){}|]/\\&/g'; }

# find_window TITLE: the shown windows with exactly that title.
find_window() { xdotool search --onlyvisible --name "^$(regex_quote "$1")\$" 2>/dev/null; }

# wait_window TITLE [SECONDS]: prints the id of the shown window with that title.
wait_window() {
    local title=$1 deadline=$(($(date +%s) + ${2:-30})) ids
    while :; do
        ids=$(find_window "$title") && [ -n "$ids" ] && break
        program_running || fail "the program ended before \"$title\" appeared"
        [ "$(date +%s)" -lt "$deadline" ] || fail "no window \"$title\" after ${2:-30}s"
        sleep 0.2
    done
    log "window \"$title\" is shown"
    echo "${ids%%$'\n'*}"
}

# wait_gone TITLE [SECONDS]
wait_gone() {
    local deadline=$(($(date +%s) + ${2:-15}))
    while [ -n "$(find_window "$1")" ]; do
        [ "$(date +%s)" -lt "$deadline" ] || fail "window \"$1\" still shown after ${2:-15}s"
        sleep 0.2
    done
}

# Keyboard input goes to the window given focus first. "--sync" waits for good when the
# window manager does not comply, hence the time limit.
focus() {
    timeout 5 xdotool windowactivate --sync "$1" >/dev/null 2>&1 || xdotool windowfocus "$1"
    sleep 0.2
}
keys() { xdotool key --delay 80 "$@"; }
type_text() { xdotool type --delay 40 -- "$1"; }

# click X Y [BUTTON [COUNT]]. Not "mousemove --sync": it waits for a motion that never comes
# when the pointer is already there.
click() {
    xdotool mousemove "$1" "$2"
    sleep 0.2
    xdotool click --repeat "${4:-1}" --delay 100 "${3:-1}"
}
double_click() { click "$1" "$2" 1 2; }

# shot NAME: a screenshot of the whole screen; prints its path.
shot() {
    local file=$SHOTS/$1.png
    import -window root "$file"
    echo "$file"
}

# shot_when NAME SECONDS WHAT COMMAND...: screenshots until COMMAND, given the screenshot's
# path as its last argument, succeeds; prints that path. A window shown is not yet painted.
shot_when() {
    local name=$1 deadline=$(($(date +%s) + $2)) what=$3 file
    shift 3
    while :; do
        file=$(shot "$name")
        "$@" "$file" >/dev/null 2>&1 && break
        [ "$(date +%s)" -lt "$deadline" ] || fail "$what never showed (see $file)"
        sleep 0.3
    done
    echo "$file"
}

# ImageMagick's own convert, not a wrapper that may come first on the PATH.
im() {
    if [ -x /usr/bin/convert ]; then /usr/bin/convert "$@"; else convert "$@"; fi
}

# colour_counts SHOT X Y W H: "#RRGGBB count" for every colour of the region.
colour_counts() {
    im "$1" -crop "${4}x${5}+${2}+${3}" +repage -depth 8 -format %c histogram:info:- |
        awk '{for (i = 1; i <= NF; i++) if ($i ~ /^#[0-9A-F]+$/ && length($i) == 7) {sub(":", "", $1); print $i, $1}}'
}

# colour_count SHOT COLOUR X Y W H: how many pixels of the region are exactly COLOUR.
colour_count() {
    colour_counts "$1" "$3" "$4" "$5" "$6" | awk -v c="$2" '$1 == c {n = $2} END {print n + 0}'
}

# colour_box SHOT COLOUR X Y W H: "width height left top" of the pixels of exactly COLOUR
# inside the region, in screen coordinates; nothing when there are none.
colour_box() {
    local n
    n=$(colour_count "$@")
    [ "$n" -gt 0 ] || return 0
    [ "$n" -lt $(($5 * $6)) ] || { echo "$5 $6 $3 $4"; return 0; }
    im "$1" -crop "${5}x${6}+${3}+${4}" +repage -fill black +opaque "$2" -fill white -opaque "$2" \
        -trim -format '%w %h %X %Y' info: | awk -v x="$3" -v y="$4" '{print $1, $2, x + $3, y + $4}'
}

# window_box ID: "x y width height" of a window on screen. A framed window comes out shifted
# by its frame's border and title bar: this xdotool adds their offset twice.
window_box() {
    xdotool getwindowgeometry "$1" |
        awk '/Position:/ {split($2, p, ","); x = p[1]; y = p[2]}
             /Geometry:/ {split($2, g, "x"); print x, y, g[1], g[2]}'
}

# tray_icon_centre: "x y" of the program's icon inside the tray, a line for each icon there.
tray_icon_centre() {
    local id px py pw ph x y w h found=1
    read -r px py pw ph < <(window_box "$(xdotool search --onlyvisible --classname '^panel$' | head -n1)")
    for id in $(xdotool search --classname '^orva-calendar$' 2>/dev/null); do
        read -r x y w h < <(window_box "$id")
        if [ "$x" -ge "$px" ] && [ "$y" -ge "$py" ] && [ $((x + w)) -le $((px + pw)) ] &&
            [ $((y + h)) -le $((py + ph)) ]; then
            echo $((x + w / 2)) $((y + h / 2))
            found=0
        fi
    done
    return $found
}

# The lines of a store, each ended by CR LF, as the profile functions write them.
ini_lines() { printf '%s\r\n' "$@"; }

# expect_file EXPECTED ACTUAL WHAT: byte for byte, with both shown on a mismatch.
expect_file() {
    if ! cmp -s "$1" "$2"; then
        echo "--- expected $3" >&2
        od -c "$1" >&2
        echo "--- actual" >&2
        od -c "$2" >&2 || true
        fail "$3 differs from what was expected"
    fi
}

# folder_state DIR: names and checksums of every file in DIR.
folder_state() { (cd "$1" && find . -type f -print0 | sort -z | xargs -0 sha256sum); }

# win_colour VALUE: a Windows colour value of the store (red in the low byte) as "#RRGGBB".
win_colour() { printf '#%02X%02X%02X' $(($1 & 255)) $(($1 >> 8 & 255)) $(($1 >> 16 & 255)); }

# category_colour NAME: the colour of a category of the shipped store, as "#RRGGBB".
category_colour() {
    tr -d '\r' <"$E2E_SOURCE_DATA/Data.ini" | awk -v name="$1" -F= '
        /^\[/ { in_s = ($0 == "[Categories]") }
        in_s && $1 ~ /^[0-9]+$/ && $2 == name { n = $1 }
        in_s && $1 ~ /^[0-9]+c$/ { colour[$1] = $2 }
        END { print colour[n "c"] }' | {
        read -r value
        [ -n "$value" ] || fail "no category $1 in the shipped store"
        win_colour "$value"
    }
}

# january_title SHOT: "x y" of the top left corner of the calendar's January title, the first
# of the month titles' blue boxes; the tray at the top right is left out.
january_title() {
    local box
    box=$(colour_box "$1" '#0000FF' 0 0 1150 800)
    [ -n "$box" ] || fail "no calendar in $1"
    echo "$box" | awk '{print $3, $4}'
}

# has_calendar SHOT
has_calendar() { [ -n "$(colour_box "$1" '#0000FF' 0 0 1150 800)" ]; }

# day_cell_centre SHOT MONTH WEEK WEEKDAY: the centre of a day cell (week and weekday counted
# from 0, Sunday first), from the calendar's layout in twips, 15 to the pixel: month titles on
# a 4 x 3 grid, the first week 720 twips below its title, cells 360 across and 240 down. The
# calendar grows in height with the window: January's title, 285 twips as designed, gives the
# factor.
day_cell_centre() {
    local jx jy th left=(83 2843 5610 8370) top=(600 2880 5160) m=$(($2 - 1))
    read -r jx jy < <(january_title "$1")
    # A region whose corners lie off the title, so that the title is what is cut out.
    th=$(colour_box "$1" '#0000FF' $((jx - 2)) $((jy - 2)) 40 30 | awk '{print $2}')
    echo $((jx + (${left[m % 4]} - 83 + 360 * $4) / 15 + 7)) \
        $((jy + ((${top[m / 4]} - 600 + 720 + 240 * $3) / 15 + 6) * th / 19))
}

# start_service NAME SCRIPT: runs one of our python D-Bus services on the session bus; its
# record is $WORK/NAME.log.
start_service() {
    # Debian's own python, which has the Debian D-Bus modules, not one first on the PATH.
    local python=python3
    [ ! -x /usr/bin/python3 ] || python=/usr/bin/python3
    "$python" "$E2E_DIR/$2" "$WORK/$1.log" "$WORK/$1.ready" >"$WORK/$1.out" 2>&1 &
    E2E_PIDS+=($!)
    wait_until 20 "the $1 service" test -e "$WORK/$1.ready"
}

# add_event_at X Y TIME CATEGORY MEMO SHOT: a double click on the day cell at X Y, the add
# dialog filled from the keyboard and screenshot as SHOT, OK.
add_event_at() {
    double_click "$1" "$2"
    focus "$(wait_window "Add Event...")"
    # Focus starts on the memo; back from it over "Memo" to the category, and over "Select
    # Recurrence :" to the time.
    type_text "$5"
    keys shift+Tab shift+Tab
    type_text "$4" # the category list jumps to the typed name
    keys shift+Tab shift+Tab ctrl+a
    type_text "$3"
    shot "$6" >/dev/null
    keys Return
    wait_gone "Add Event..."
}

# choose_exit WINDOW: File > Exit from the keyboard.
choose_exit() {
    focus "$1"
    keys alt+f
    sleep 0.3
    keys Up Return
}
