#!/usr/bin/env bash
# A save on a full disk: the program folder on a small file system that fills up while the
# calendar runs. Adding an event leaves Data.ini as it was, and one message says what could
# not be saved.
source "$(dirname "$0")/lib.sh"
e2e_init "$@"

saved=$WORK/saved
mkdir "$saved"
cp -p "$PROG"/* "$saved/"
if ! mount -t tmpfs -o size=$(($(du -sk "$saved" | cut -f1) + 512))k tmpfs "$PROG" 2>/dev/null; then
    log "skipped: no file system can be mounted here"
    exit 77
fi
trap 'status=$?; stop_program; umount -l "$PROG"; (exit $status); e2e_cleanup' EXIT
cp -p "$saved"/* "$PROG/"

start_program "2026-03-01 10:00:00"
main=$(wait_window "ORVA's Calender")
# The disk fills up after the start, whose backup copy of the store is then the newest: the
# change below needs no new copy, so only the store's own write can fail.
wait_until 20 "the start's backup copy" sh -c "ls '$PROG/Backups' | grep -q ."
dd if=/dev/zero of="$PROG/.filler" bs=4k >/dev/null 2>&1 || true
before=$(shot_when before 20 "the calendar" has_calendar)
read -r x y < <(day_cell_centre "$before" 3 0 2)
double_click "$x" "$y"
focus "$(wait_window "Add Event...")"
# Focus starts on the memo; back over "Memo" to the category, over the recurrence to the time.
type_text "Dentist"
keys shift+Tab shift+Tab
type_text "Health"
keys shift+Tab shift+Tab ctrl+a
type_text "9:00 AM"
keys Return

box=$(wait_window "ORVA Calendar")
shot message >/dev/null
focus "$box"
keys Return
wait_gone "ORVA Calendar"
wait_gone "Add Event..."
sleep 1
[ -z "$(find_window "ORVA Calendar")" ] || fail "the failure was reported more than once"
expect_file "$saved/Data.ini" "$PROG/Data.ini" "the store after a save on a full disk"
log "passed"
