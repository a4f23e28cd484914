#!/usr/bin/env bash
# The calendar as a screen reader meets it, over a real accessibility bus: today's day is
# found by its spoken name, Enter on it opens the add dialog with the memo focused, and
# after OK the day's name tells of the new event. Every name of the main window is kept in
# names.txt of the work folder.
source "$(dirname "$0")/lib.sh"
e2e_bus "$@"
e2e_init "$@"
start_accessibility_bus
view() { /usr/bin/python3 "$E2E_DIR/atspi_view.py" "$@"; }

start_program "2026-03-03 10:00:00"
main=$(wait_window "ORVA's Calender")
shot_when start 20 "the calendar" has_calendar >/dev/null
wait_until 30 "the calendar on the accessibility bus" view day ", today"
view names >"$WORK/names.txt"
cp "$WORK/names.txt" "$SHOTS/"
for name in "text: Year" "push button: Next year" "push button: Previous year" \
    "image: Logo, go to homepage" "label: Category Work, colour pale blue"; do
    grep -qxF "$name" "$WORK/names.txt" || fail "no \"$name\" among the main window's names"
done

focus "$main"
today=$(view focus-day ", today")
log "today reads \"$today\""
[ "$today" = "Tuesday 3 March 2026, today" ] || fail "today reads \"$today\""
shot today-focused >/dev/null
keys Return
dialog=$(wait_window "Add Event...")
focused=$(view focused)
[ "$focused" = "text: Memo" ] || fail "the add dialog opened with \"$focused\" focused"
type_text "Dentist"
keys Return
wait_gone "Add Event..."

wait_until 10 "the day's name to list the event" \
    bash -c "/usr/bin/python3 '$E2E_DIR/atspi_view.py' day '3 March 2026' | grep -q 'Work: Dentist, all day'"
log "today now reads \"$(view day '3 March 2026')\""
focus "$main"
shot coloured-today-focused >/dev/null
log "passed"
