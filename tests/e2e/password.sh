#!/usr/bin/env bash
# The password: created from the Options menu, it is in the store as its length and one
# character code a key; from the next start on it is asked for first. A wrong one (here only
# in case) ends the program after "Wrong Password", so does closing the prompt, and only the
# right one opens the main window. Nothing of that writes to the store.
source "$(dirname "$0")/lib.sh"
e2e_init "$@"

password=Secret
start_program
main=$(wait_window "ORVA's Calender")
focus "$main"
keys alt+o
sleep 0.5
shot options-menu >/dev/null
keys Return # "Create Password", the first item
dialog=$(wait_window "Create Password")
focus "$dialog"
type_text "$password"
keys Tab
type_text "$password"
keys Return
wait_gone "Create Password"

expected=$WORK/expected.ini
cp "$E2E_SOURCE_DATA/Data.ini" "$expected"
codes=()
for ((i = 0; i < ${#password}; i++)); do
    codes+=("$((i + 1))=$(printf '%d' "'${password:i:1}")")
done
ini_lines "[pcount]" "c=${#password}" "[pass]" "${codes[@]}" >>"$expected"
expect_file "$expected" "$PROG/Data.ini" "the store after creating the password"

choose_exit "$main"
wait_exit 15
[ "$APP_STATUS" -eq 0 ] || fail "File > Exit ended the program with status $APP_STATUS"

# Rows: the password typed at start, the key that ends the prompt, and what follows.
rows=("secret|Return|refused" "|alt+F4|ended" "$password|Return|opens")
for row in "${rows[@]}"; do
    IFS='|' read -r typed key outcome <<<"$row"
    log "typing \"$typed\", then $key"
    start_program
    prompt=$(wait_window Password)
    focus "$prompt"
    [ -z "$typed" ] || type_text "$typed"
    keys "$key"
    case $outcome in
    refused)
        box=$(wait_window "Wrong Password")
        [ -z "$(find_window "ORVA's Calender")" ] || fail "the calendar opened for \"$typed\""
        sleep 0.3
        shot wrong-password >/dev/null
        focus "$box"
        keys Return
        wait_exit 15
        ;;
    ended) # closing the prompt is no way in
        wait_exit 15
        ;;
    opens)
        main=$(wait_window "ORVA's Calender")
        [ -z "$(find_window "Wrong Password")" ] || fail "\"$typed\" was refused"
        choose_exit "$main"
        wait_exit 15
        ;;
    esac
    [ "$APP_STATUS" -eq 0 ] || fail "the program ended with status $APP_STATUS"
    expect_file "$expected" "$PROG/Data.ini" "the store after typing \"$typed\""
done
log "passed"
