#!/usr/bin/env bash
# Each memo that comes due also goes to the desktop's notification service, here one of our
# own on a private session bus that records every call: two memos due in one minute share
# the alarm window but make two notifications, the category as summary, the memo and its
# when-line as body, without a sound of their own. Reminders missed while the calendar was
# stopped make one summary. Without a service the alarm comes as ever and nothing is said
# about the missing service.
source "$(dirname "$0")/lib.sh"
e2e_bus "$@"
e2e_init "$@"

ini_lines "[count]" "c=3" "[1]" "Date=3/3/2026" "Time=9:00 AM" "Memo=Bread & <butter>" "Cat=Work" \
    "[2]" "Date=3/3/2026" "Time=9:00 AM" "Memo=Dentist" "Cat=Health" \
    "[3]" "Date=3/3/2026" "Time=8:45 AM" "Memo=Standup" "Cat=Work" >>"$PROG/Data.ini"

start_program "2026-03-03 08:59:57"
wait_window Health 40 >/dev/null
sleep 1
stop_program
if grep -iE 'notif|d-?bus' "$WORK/program1.log"; then
    fail "the program spoke of the missing notification service"
fi

# Stopped at 8:30, the calendar missed the reminder at 8:45: one summary for it.
echo "2026-03-03 08:30" >"$PROG/LastSeen.txt"
start_service notifyd notifyd.py
start_program "2026-03-03 08:59:57"
wait_window Health 40 >/dev/null
wait_until 20 "three notifications" test "$(wc -l <"$WORK/notifyd.log")" -ge 3
sleep 2
python3 - "$WORK/notifyd.log" <<'PY' || fail "the notifications were not as expected"
import json, sys
calls = [json.loads(line) for line in open(sys.argv[1], encoding="utf-8")]
expected = [("Missed reminders", "1 reminder came due while the calendar could not show it."),
            ("Work", "Bread &amp; &lt;butter&gt;\n3/3/2026  9:00:00 AM"),
            ("Health", "Dentist\n3/3/2026  9:00:00 AM")]
got = [(c["summary"], c["body"]) for c in calls]
assert got == expected, got
for c in calls:
    assert c["app"] == "ORVA Calendar" and c["icon"] == "orva-calendar", c
    assert c["hints"].get("suppress-sound") is True, c
    assert c["replaces"] == 0 and c["actions"] == [], c
PY
log "passed"
