#!/usr/bin/env bash
# The calendar without a mouse: an event added on today with Enter, opened again from the
# day popup with the Menu key, its time changed, and the program closed from the File menu.
# Not one mouse event is sent.
source "$(dirname "$0")/lib.sh"
e2e_init "$@"

start_program "2026-03-03 10:00:00"
main=$(wait_window "ORVA's Calender")
shot_when start 20 "the calendar" has_calendar >/dev/null
pointer=$(xdotool getmouselocation --shell | head -n2)
focus "$main"
sleep 1 # a loaded machine may still be finishing the start-up

# The focus starts on today.
keys Return
dialog=$(wait_window "Add Event...")
focus "$dialog"
type_text "Dentist" # into the memo, where the focus starts
keys Return
wait_gone "Add Event..."
grep -q "^Memo=Dentist" "$PROG/Data.ini" || fail "the event was not written"

focus "$main"
keys Menu
sleep 0.5
shot popup >/dev/null
keys Down Down Return # past "Add Event..." to the day's one event
dialog=$(wait_window "Modify...")
focus "$dialog"
# Back from the memo over "Memo" and the category to the time ("Select Recurrence :" is
# off while a one-off event is changed).
keys shift+Tab shift+Tab shift+Tab ctrl+a
type_text "10:30 AM"
shot modify >/dev/null
keys Return
wait_gone "Modify..."
tr -d '\r' <"$PROG/Data.ini" | grep -A2 -xF '[1]' | grep -qxF "Time=10:30 AM" ||
    fail "the time was not changed: $(tr -d '\r' <"$PROG/Data.ini" | grep -A4 -xF '[1]')"

choose_exit "$main"
wait_exit 20
[ "$(xdotool getmouselocation --shell | head -n2)" = "$pointer" ] || fail "the pointer moved"
log "passed"
