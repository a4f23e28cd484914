#!/usr/bin/env bash
# Events added through the window: a double click on a day, the add dialog filled from the
# keyboard, OK. The store gets each event's keys in the order they are written, the count
# changes in place, and each day takes the colour of its event's category.
source "$(dirname "$0")/lib.sh"
e2e_init "$@"

# The clock is fixed so the calendar shows 2026, where 1 March is a Sunday.
start_program "2026-03-01 10:00:00"
main=$(wait_window "ORVA's Calender")
before=$(shot_when before 20 "the calendar" has_calendar)

expected=$WORK/expected.ini
cp "$PROG/Data.ini" "$expected"
# Rows: day of March, week, weekday, time as typed, category, memo, time as stored.
rows=(
    "3|0|2|9:00 AM|Health|Dentist|9:00 AM"
    "4|0|3|all day|Work|Payday|00:00"
)
n=0
for row in "${rows[@]}"; do
    IFS='|' read -r day week weekday time cat memo stored <<<"$row"
    n=$((n + 1))
    read -r x y < <(day_cell_centre "$before" 3 "$week" "$weekday")
    log "adding \"$memo\" on 3/$day/2026 at $x,$y"
    double_click "$x" "$y"
    dialog=$(wait_window "Add Event...")
    focus "$dialog"
    # Focus starts on the memo; back from it over "Memo" to the category, and over "Select
    # Recurrence :" to the time.
    type_text "$memo"
    keys shift+Tab shift+Tab
    type_text "$cat" # the category list jumps to the typed name
    keys shift+Tab shift+Tab ctrl+a
    type_text "$time"
    shot "dialog$n" >/dev/null
    keys Return
    wait_gone "Add Event..."

    # The first event adds "count" after the categories; later ones only change its value.
    if [ "$n" -eq 1 ]; then
        ini_lines "[count]" "c=1" >>"$expected"
    else
        sed -i "s/^c=$((n - 1))\r\$/c=$n\r/" "$expected"
    fi
    ini_lines "[$n]" "Date=3/$day/2026" "Time=$stored" "Memo=$memo" "Cat=$cat" >>"$expected"
    expect_file "$expected" "$PROG/Data.ini" "the store after adding \"$memo\""
done

# Each day shows its category's colour, and no other day of the calendar does.
read -r jx jy < <(january_title "$before")
for row in "${rows[@]}"; do
    IFS='|' read -r day week weekday time cat memo stored <<<"$row"
    colour=$(category_colour "$cat")
    read -r x y < <(day_cell_centre "$before" 3 "$week" "$weekday")
    [ -z "$(colour_box "$before" "$colour" "$((jx - 10))" "$jy" 730 440)" ] ||
        fail "$colour is on the calendar before any event"
    deadline=$(($(date +%s) + 10))
    while :; do
        after=$(shot after)
        box=$(colour_box "$after" "$colour" "$((jx - 10))" "$jy" 730 440)
        [ -n "$box" ] && break
        [ "$(date +%s)" -lt "$deadline" ] || fail "3/$day/2026 never took $cat's colour $colour"
        sleep 0.3
    done
    read -r w h left top <<<"$box"
    log "$cat's colour $colour covers ${w}x$h at $left,$top"
    # One day cell, the one that was double-clicked.
    [ "$w" -le 16 ] && [ "$h" -le 14 ] && [ "$w" -ge 10 ] && [ "$h" -ge 9 ] ||
        fail "$cat's colour covers ${w}x$h, not one day cell"
    [ "$x" -ge "$left" ] && [ "$x" -lt $((left + w)) ] && [ "$y" -ge "$top" ] && [ "$y" -lt $((top + h)) ] ||
        fail "$cat's colour is at $left,$top, not on the day clicked at $x,$y"
done
log "passed"
