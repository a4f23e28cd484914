#!/usr/bin/env bash
# A suspend across a reminder's minute: the program stands still (SIGSTOP) from before 9:00
# until after 9:01 by its clock. The alarm window never comes for the minute it slept
# through; the "Missed reminders" window lists the memo and the action, and the action is
# not run. The program keeps the last minute it saw.
source "$(dirname "$0")/lib.sh"
e2e_init "$@"

action=$WORK/action.sh
printf '#!/bin/sh\ntouch "%s/action-ran"\n' "$WORK" >"$action"
chmod +x "$action"
ini_lines "[count]" "c=2" "[1]" "Date=3/3/2026" "Time=9:00 AM" "Memo=Dentist" "Cat=Health" \
    "[2]" "Date=3/3/2026" "Time=9:00 AM" "Memo=&**$action" "Cat=Work" >>"$PROG/Data.ini"
colour=$(category_colour Health)

set_clock "2026-03-03 08:59:00"
start_program clock-file
wait_window "ORVA's Calender" >/dev/null
wait_until 20 "the last minute seen" grep -q '^2026-03-03 08:59$' "$PROG/LastSeen.txt"
kill -STOP "$APP_PID"
grep -q '^2026-03-03 08:59$' "$PROG/LastSeen.txt" || fail "the clock passed 9:00 before the stop"
log "stopped at 8:59"
set_clock "2026-03-03 09:01:10"
sleep 2 # the program reads its clock file again after a second
kill -CONT "$APP_PID"
log "continued at 9:01:10"

missed=$(wait_window "Missed reminders" 30)
read -r x y w h < <(window_box "$missed")
# The memo's row has a swatch of Health's colour.
has_swatch() { [ "$(colour_count "$1" "$colour" "$x" "$y" "$w" "$h")" -gt 100 ]; }
picture=$(shot_when missed 20 "a row in Health's colour $colour" has_swatch)
log "screenshot: $picture"
[ -z "$(find_window Health)" ] || fail "the alarm of a minute slept through was shown"
[ ! -e "$WORK/action-ran" ] || fail "a missed action was run without being asked"
wait_until 10 "the minute after the stop" grep -q '^2026-03-03 09:0[12]$' "$PROG/LastSeen.txt"
program_running || fail "the program ended"
log "passed"
