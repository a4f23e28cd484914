#!/usr/bin/env bash
# A first start, with the store the program ships and with none at all: the splash, then the
# calendar with a legend of the store's categories; closing the window or File > Exit ends
# the program, and a run in which nothing was changed leaves the program folder as it was,
# without creating a store.
source "$(dirname "$0")/lib.sh"
e2e_init "$@"

categories=(More Work Personal Birthday Health Holiday Bills)
# Rows: the store at start, and how the program is ended.
rows=("shipped|menu" "none|window")
for row in "${rows[@]}"; do
    IFS='|' read -r store ending <<<"$row"
    log "store: $store, ended by: $ending"
    [ "$store" = shipped ] || rm "$PROG/Data.ini"
    before=$(folder_state "$PROG")

    start_program
    wait_window Form2 10 >/dev/null # the splash
    main=$(wait_window "ORVA's Calender")
    [ -z "$(find_window Form2)" ] || fail "the splash is still shown beside the calendar"
    sleep 0.5
    picture=$(shot "$store")
    read -r jx jy < <(january_title "$picture")
    # The legend, right of the twelve months.
    for cat in "${categories[@]}"; do
        n=$(colour_count "$picture" "$(category_colour "$cat")" $((jx + 720)) "$jy" 150 300)
        if [ "$store" = shipped ]; then
            [ "$n" -gt 20 ] || fail "the legend has no box for $cat"
        else
            [ "$n" -eq 0 ] || fail "the legend shows $cat without a store"
        fi
    done

    if [ "$ending" = window ]; then
        focus "$main"
        keys alt+F4 # the window manager's close
    else
        choose_exit "$main"
    fi
    wait_exit 15
    [ "$APP_STATUS" -eq 0 ] || fail "the program ended with status $APP_STATUS"
    after=$(folder_state "$PROG")
    [ "$before" = "$after" ] || {
        diff <(echo "$before") <(echo "$after") >&2 || true
        fail "the program folder changed in a run that changed nothing"
    }
done
log "passed"
