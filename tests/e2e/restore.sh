#!/usr/bin/env bash
# A change undone from a backup: three monthly events added through the event window, the
# first one changed (which, as the program has always done, leaves only that one counted),
# then File > "Restore from Backup..." brings back the copy from before the change, byte for
# byte, and the calendar shows all three again.
source "$(dirname "$0")/lib.sh"
e2e_init "$@"

start_program "2026-03-01 10:00:00"
main=$(wait_window "ORVA's Calender")
before=$(shot_when before 20 "the calendar" has_calendar)
read -r jx jy < <(january_title "$before")
calendar_box() { echo "$((jx - 10)) $jy 730 440"; }

# Rows: day of the month, category, memo.
rows=("3|Work|Team meeting" "5|Health|Swimming" "7|Bills|Rent check")
for row in "${rows[@]}"; do
    IFS='|' read -r day cat memo <<<"$row"
    log "adding \"$memo\" on day $day of every month"
    read -r x y < <(day_cell_centre "$before" 3 1 2)
    double_click "$x" "$y"
    dialog=$(wait_window "Add Event...")
    focus "$dialog"
    # Focus starts on the memo; back over "Memo" and the category to "Select Recurrence :",
    # which Space turns on; "Monthly" is to its right. Then forward, past the unchecked
    # buttons, which Tab skips: the day list, the time, the category and the memo.
    keys shift+Tab shift+Tab shift+Tab space Right Tab "$day" Tab ctrl+a
    type_text "9:00 AM"
    keys Tab
    type_text "$cat"
    keys Tab
    type_text "$memo"
    shot "add-$day" >/dev/null
    keys Return
    wait_gone "Add Event..."
done
grep -q $'^c=3\r$' <(sed -n '/^\[rcount\]/,/^\[/p' "$PROG/Data.ini") ||
    fail "three recurring events were not stored"
cp "$PROG/Data.ini" "$WORK/before-change.ini"

# colours_shown: how many pixels of each category's colour the calendar shows, one a line.
colours_shown() {
    local shot=$1 row cat
    for row in "${rows[@]}"; do
        IFS='|' read -r _ cat _ <<<"$row"
        # shellcheck disable=SC2046
        colour_count "$shot" "$(category_colour "$cat")" $(calendar_box)
    done
}
all_shown() { ! colours_shown "$1" | grep -qx 0; }
shot_when three 20 "the three monthly events" all_shown >/dev/null

# The first event changed through the popup of 3 March: its count becomes 1.
read -r x y < <(day_cell_centre "$before" 3 0 2)
click "$x" "$y" 3
sleep 0.5
keys Down Down Return
dialog=$(wait_window "Modify...")
focus "$dialog"
keys Return
wait_gone "Modify..."
grep -q $'^c=1\r$' <(sed -n '/^\[rcount\]/,/^\[/p' "$PROG/Data.ini") ||
    fail "the change did not count the recurring events down to 1"
only_first() { colours_shown "$1" | awk '(NR == 1) != ($1 > 0) {bad = 1} END {exit bad}'; }
shot_when changed 20 "only the first event" only_first >/dev/null

# File > "Restore from Backup...": the newest copy is the one from before the change.
focus "$main"
keys alt+f
sleep 0.3
keys Up Up Return
restore=$(wait_window "Restore from Backup")
focus "$restore"
shot_when restore-window 10 "the list of copies" true >/dev/null
keys Return
confirm=$(wait_window "Restore Backup")
shot restore-confirm >/dev/null
focus "$confirm"
keys Return
wait_gone "Restore from Backup"
expect_file "$WORK/before-change.ini" "$PROG/Data.ini" "the restored store"
focus "$main"
shot_when restored 20 "the three monthly events again" all_shown >/dev/null
ls "$PROG/Backups" >&2
program_running || fail "the program ended"
log "passed"
