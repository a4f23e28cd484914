#!/usr/bin/env bash
# A first start, with the store the program ships and with none at all: the splash, then the
# calendar with a legend of the store's categories; closing the window or File > Exit ends
# the program, and a run in which nothing was changed leaves the program folder as it was,
# without creating a store; only the last minute the calendar saw is kept, in a file of its
# own.
source "$(dirname "$0")/lib.sh"
e2e_init "$@"

categories=(More Work Personal Birthday Health Holiday Bills)

# legend_lists CATEGORY... SHOT: the legend, right of the twelve months, has a box in the
# colour of each category.
legend_lists() {
    local picture=${!#} jx jy cat counts
    has_calendar "$picture" || return 1
    read -r jx jy < <(january_title "$picture")
    counts=$(colour_counts "$picture" $((jx + 720)) "$jy" 150 300)
    for cat in "${@:1:$#-1}"; do
        awk -v c="$(category_colour "$cat")" '$1 == c && $2 > 20 {found = 1} END {exit !found}' \
            <<<"$counts" || return 1
    done
}

# Rows: the store at start, and how the program is ended.
rows=("shipped|menu" "none|window")
for row in "${rows[@]}"; do
    IFS='|' read -r store ending <<<"$row"
    log "store: $store, ended by: $ending"
    [ "$store" = shipped ] || rm "$PROG/Data.ini"
    rm -f "$PROG/LastSeen.txt"
    # The copy of the store kept at every start is a change every run may make.
    before=$(folder_state "$PROG" | grep -v ' \./Backups/')

    start_program
    wait_window Form2 10 >/dev/null # the splash
    main=$(wait_window "ORVA's Calender")
    [ -z "$(find_window Form2)" ] || fail "the splash is still shown beside the calendar"
    if [ "$store" = shipped ]; then
        shot_when "$store" 20 "a legend of every category" legend_lists "${categories[@]}" >/dev/null
    else
        picture=$(shot_when "$store" 20 "the calendar" has_calendar)
        for cat in "${categories[@]}"; do
            ! legend_lists "$cat" "$picture" || fail "the legend shows $cat without a store"
        done
    fi

    if [ "$ending" = window ]; then
        focus "$main"
        keys alt+F4 # the window manager's close
    else
        choose_exit "$main"
    fi
    wait_exit 15
    [ "$APP_STATUS" -eq 0 ] || fail "the program ended with status $APP_STATUS"
    grep -qE '^[0-9]{4}-[0-9]{2}-[0-9]{2} [0-9]{2}:[0-9]{2}$' "$PROG/LastSeen.txt" ||
        fail "the last minute seen was not kept"
    rm "$PROG/LastSeen.txt"
    after=$(folder_state "$PROG" | grep -v ' \./Backups/')
    [ "$before" = "$after" ] || {
        diff <(echo "$before") <(echo "$after") >&2 || true
        fail "the program folder changed in a run that changed nothing"
    }
done
log "passed"
