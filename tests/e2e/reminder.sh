#!/usr/bin/env bash
# A reminder coming due while the program runs: the clock starts ten seconds before the
# event's minute. The alarm window appears in that minute, titled with the category and in
# its colour, and once closed it does not come back within the minute.
source "$(dirname "$0")/lib.sh"
e2e_init "$@"

ini_lines "[count]" "c=1" "[1]" "Date=3/3/2026" "Time=9:00 AM" "Memo=Dentist" "Cat=Health" \
    >>"$PROG/Data.ini"
colour=$(category_colour Health)

start_program "2026-03-03 08:59:50"
started=$(date +%s)
main=$(wait_window "ORVA's Calender")
# Still before 9:00 on the program's clock, unless the start took longer than that.
if [ $(($(date +%s) - started)) -lt 8 ]; then
    [ -z "$(find_window Health)" ] || fail "the reminder came before its minute"
    shot waiting >/dev/null
fi

alarm=$(wait_window Health 40)
log "the reminder came $(($(date +%s) - started))s after the start"
[ $(($(date +%s) - started)) -ge 9 ] || fail "the reminder came before its minute"
read -r x y w h < <(window_box "$alarm")
# The window's ground, around its memo and buttons, is the category's colour.
in_colour() { [ "$(colour_count "$1" "$colour" "$x" "$y" "$w" "$h")" -gt $((w * h / 10)) ]; }
picture=$(shot_when alarm 20 "the alarm window in Health's colour $colour" in_colour)
log "$(colour_count "$picture" "$colour" "$x" "$y" "$w" "$h") of $((w * h)) pixels of the alarm window are $colour"

focus "$alarm"
keys Return
wait_gone Health
# The rest of the minute passes without a second reminder.
sleep 3
[ -z "$(find_window Health)" ] || fail "the reminder came again within its minute"
program_running || fail "the program ended"
log "passed"
