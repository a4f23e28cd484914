#!/usr/bin/env bash
# A user's session with the installed package, started through its launcher
# (E2E_LAUNCHER=/usr/bin/orva-calendar) in the user's own home. "add": the first start, an
# event added through the dialog, and a restart that shows it. "see": a start that shows it.
source "$(dirname "$0")/../e2e/lib.sh"
e2e_init "$@"

# The clock is fixed so the calendar shows 2026, where 3 March is the first week's Tuesday.
clock="2026-03-01 10:00:00"
health=$(category_colour Health)

# shows_event SHOT: 3 March in Health's colour.
shows_event() {
    local x y
    has_calendar "$1" || return 1
    read -r x y < <(day_cell_centre "$1" 3 0 2)
    [ "$(colour_count "$1" "$health" $((x - 4)) $((y - 4)) 9 9)" -gt 5 ]
}

if [ "$1" = add ]; then
    [ ! -e "$PROG" ] || fail "$PROG is there before the first start"
    start_program "$clock"
    main=$(wait_window "ORVA's Calender")
    first=$(shot_when first 20 "the calendar" has_calendar)
    read -r x y < <(day_cell_centre "$first" 3 0 2)
    add_event_at "$x" "$y" "9:00 AM" Health Dentist dialog
    grep -q '^Memo=Dentist' "$PROG/Data.ini" || fail "the event is not in $PROG/Data.ini"
    choose_exit "$main"
    wait_exit 15
fi
start_program "$clock"
main=$(wait_window "ORVA's Calender")
shot_when "$1" 20 "Dentist on 3 March" shows_event >/dev/null
choose_exit "$main"
wait_exit 15
log "passed"
