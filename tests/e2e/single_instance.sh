#!/usr/bin/env bash
# One running copy per program folder. A second start while a recurring memo's alarm is open
# ends at once with status 0 and brings the first copy's main window back from the tray,
# the alarm still in front, with one tray icon left. A copy in another program folder runs
# beside it, and a copy killed outright does not keep the next start from running.
source "$(dirname "$0")/lib.sh"
e2e_init "$@"

ini_lines "[rcount]" "c=1" "[r1]" "Type=Daily" "Time=9:00 AM" "Memo=Take the pills" "Cat=Health" \
    >>"$PROG/Data.ini"
colour=$(category_colour Health)
calendar="ORVA's Calender"

start_program "2026-03-03 08:59:55"
first=$APP_PID
main=$(wait_window "$calendar")
wait_until 10 "the tray icon" tray_icon_centre
alarm=$(wait_window Health 40)
xdotool windowminimize "$main"
wait_gone "$calendar"

start_program
wait_exit 20
[ "$APP_STATUS" -eq 0 ] || fail "the second start ended with status $APP_STATUS"
APP_PID=$first
wait_window "$calendar" 15 >/dev/null
# The alarm stays in front of the main window that came back: its ground is all there.
read -r x y w h < <(window_box "$alarm")
in_front() {
    has_calendar "$1" && [ "$(colour_count "$1" "$colour" "$x" "$y" "$w" "$h")" -gt $((w * h / 10)) ]
}
shot_when second-start 20 "the calendar with the alarm in front" in_front >/dev/null
icons() { [ "$(tray_icon_centre | wc -l)" -eq "$1" ]; }
icons 1 || fail "$(tray_icon_centre | wc -l) tray icons after the second start"
focus "$alarm"
keys Return
wait_gone Health

# Another program folder is another calendar: it runs beside the first.
cp -rp "$PROG" "$WORK/prog2"
PROG=$WORK/prog2 start_program
E2E_PIDS+=("$APP_PID")
wait_until 30 "two tray icons" icons 2
program_running || fail "a copy in another program folder did not stay"
APP_PID=$first

# Killed outright, the first copy leaves its socket behind. The next start runs, and it is
# the one a start after it hands over to.
kill -KILL "$first"
wait "$first" 2>/dev/null || true
start_program
third=$APP_PID
wait_until 30 "the tray icon of the start after a kill" icons 2
start_program
wait_exit 20
[ "$APP_STATUS" -eq 0 ] || fail "a start beside the new copy ended with status $APP_STATUS"
APP_PID=$third
program_running || fail "the start after a killed copy ended"
log "passed"
