#!/usr/bin/env bash
# A yearly event on 29 February in a common year ends the program at its first reminder
# check, with the run-time's message, as it always has. The next start shows the recovery
# window; "Remove Event" removes the event the way the remove window does, and the start
# after that stays up.
source "$(dirname "$0")/lib.sh"
e2e_init "$@"

# events RCOUNT: the events of the store, with that recurring count.
events() {
    ini_lines "[count]" "c=1" "[1]" "Date=1/5/2027" "Time=00:00" "Memo=New year walk" \
        "Cat=Personal" "[rcount]" "c=$1" "[r1]" "Type=Yearly" "Day=29" "Month=2" "Time=00:00" \
        "Memo=Anna's birthday" "Cat=Birthday"
}
{ cat "$PROG/Data.ini"; events 0; } >"$WORK/expected.ini"
events 1 >>"$PROG/Data.ini"
clock="2027-03-03 10:00:00"

start_program "$clock"
box=$(wait_window "ORVA Calendar" 40)
shot run-time-error >/dev/null
focus "$box"
keys Return
wait_exit 15
[ "$APP_STATUS" -eq 1 ] || fail "the run-time error ended the program with $APP_STATUS"
[ -s "$PROG/LastError.json" ] || fail "nothing was recorded of the error"
cat "$PROG/LastError.json" >&2

start_program "$clock"
window=$(wait_window "The Calendar Closed Unexpectedly" 40)
shot_when recovery-window 10 "the recovery window" true >/dev/null
[ -z "$(find_window "ORVA's Calender")" ] || fail "the calendar runs behind the recovery window"
focus "$window"
keys alt+r
wait_gone "The Calendar Closed Unexpectedly"
wait_window "ORVA's Calender" >/dev/null
# The removal of the remove window: the count lowered, the old section left in the file.
expect_file "$WORK/expected.ini" "$PROG/Data.ini" "the store after the removal"
sleep 3
program_running || fail "the calendar ended after the removal"
[ ! -e "$PROG/LastError.json" ] || fail "the record was kept"
stop_program

start_program "$clock"
main=$(wait_window "ORVA's Calender" 40)
shot_when third-start 20 "the calendar" has_calendar >/dev/null
sleep 3
program_running || fail "the third start did not stay up"
[ -z "$(find_window "The Calendar Closed Unexpectedly")" ] || fail "the recovery window came again"
log "passed"
