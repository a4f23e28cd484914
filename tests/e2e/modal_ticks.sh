#!/usr/bin/env bash
# Ticks go on under a modal alarm: a daily memo at 9:00 (Health) is left open past 9:01. The
# one-off memo of 9:01 (Work) takes the shared window at once; the daily memo of 9:01
# (Birthday) waits for that window to be closed and then has its own; nothing comes twice.
source "$(dirname "$0")/lib.sh"
e2e_init "$@"

ini_lines "[count]" "c=1" "[1]" "Date=3/3/2026" "Time=9:01 AM" "Memo=Call" "Cat=Work" \
    "[rcount]" "c=2" "[r1]" "Type=Daily" "Time=9:00 AM" "Memo=Stretch" "Cat=Health" \
    "[r2]" "Type=Daily" "Time=9:01 AM" "Memo=Water" "Cat=Birthday" >>"$PROG/Data.ini"

set_clock "2026-03-03 09:00:00"
start_program clock-file
alarm=$(wait_window Health 40)
set_clock "2026-03-03 09:01:00"
log "the clock is at 9:01 under the open alarm"
[ "$(wait_window Work 20)" = "$alarm" ] || fail "the one-off memo did not take the shared window"
[ -z "$(find_window Health)" ] || fail "the daily memo of 9:00 is still shown beside the one-off"
[ -z "$(find_window Birthday)" ] || fail "a second modal alarm was stacked on the first"
shot one-off-over-modal >/dev/null

focus "$alarm"
keys Return
wait_window Birthday 20 >/dev/null
shot waiting-memo >/dev/null
focus "$(find_window Birthday)"
keys Return
wait_gone Birthday
# The rest of the minute passes without any of them again.
sleep 3
[ -z "$(find_window Health)$(find_window Work)$(find_window Birthday)" ] ||
    fail "an alarm came twice"
program_running || fail "the program ended"
log "passed"
