#!/usr/bin/env bash
# The View filters outlive a visit to another program: a category unchecked in the View menu
# stays unchecked after the user switches to another window and back. Closing one of the
# program's own windows still reloads the store, so what a dialog wrote shows at once.
source "$(dirname "$0")/lib.sh"
e2e_init "$@"

ini_lines "[count]" "c=1" "[1]" "Date=3/3/2026" "Time=9:00 AM" "Memo=Dentist" "Cat=Work" \
    >>"$PROG/Data.ini"
work=$(category_colour Work)
health=$(category_colour Health)

# The clock is fixed so the calendar shows 2026, where 1 March is a Sunday.
start_program "2026-03-01 10:00:00"
main=$(wait_window "ORVA's Calender")
first=$(shot_when first 20 "the calendar" has_calendar)
read -r jx jy < <(january_title "$first")
# shows COLOUR SHOT: whether a day of the first four months has that colour.
shows() { [ -n "$(colour_box "$2" "$1" "$((jx - 10))" "$jy" 730 440)" ]; }
lacks() { ! shows "$@"; }
shot_when work 20 "Work's day" shows "$work" >/dev/null

# View > Work, the first category after "All Events", "None" and "Recurrence".
focus "$main"
keys alt+v
sleep 0.3
keys Down Down Down Return
shot_when unchecked 10 "Work unchecked" lacks "$work" >/dev/null

# Another program's window comes to the front, then the calendar again.
im -size 200x100 xc:gray "$WORK/other.png"
display -title Other "$WORK/other.png" &
E2E_PIDS+=($!)
other=$(wait_window Other)
focus "$other"
focus "$main"
sleep 1
[ "$(xdotool getactivewindow)" = "$main" ] || fail "the calendar did not come back to the front"
back=$(shot back)
lacks "$work" "$back" || fail "Work was checked again after a visit to another window (see $back)"

# A new event through the add dialog shows as soon as the dialog closes.
read -r x y < <(day_cell_centre "$first" 3 0 4)
add_event_at "$x" "$y" "all day" Health Checkup dialog
shot_when added 10 "the new Health day" shows "$health" >/dev/null
log "passed"
