#!/usr/bin/env bash
# An action event whose path holds blanks, quotes and shell syntax: when it comes due the
# program starts that one file, with no arguments, once, and no part of the path runs as a
# command. No alarm window comes with an action.
source "$(dirname "$0")/lib.sh"
e2e_init "$@"

folder="$WORK/act/a b;c \$(touch pwned1) \`touch pwned2\` 'q' & touch pwned3 |"
target="$folder/run me;touch pwned4"
marker=$WORK/marker
mkdir -p "$folder"
# Records each start: its arguments and its working folder.
cat >"$target" <<EOF
#!/bin/sh
{
    echo "start"
    echo "argc=\$#"
    for a in "\$@"; do echo "arg=\$a"; done
    echo "cwd=\$(pwd)"
} >>"$marker"
EOF
chmod +x "$target"

ini_lines "[count]" "c=1" "[1]" "Date=3/3/2026" "Time=9:00 AM" "Memo=&**$target" "Cat=Work" \
    >>"$PROG/Data.ini"

start_program "2026-03-03 08:59:52"
started=$(date +%s)
wait_window "ORVA's Calender" >/dev/null
if [ $(($(date +%s) - started)) -lt 6 ]; then
    [ ! -e "$marker" ] || fail "the action ran before its minute"
fi
wait_until 40 "the action to run" test -e "$marker"
log "the action ran $(($(date +%s) - started))s after the start"
# The rest of the minute: no second start, and no alarm window.
sleep 3
shot after >/dev/null
[ -z "$(find_window Work)" ] || fail "an action showed the alarm window"

expected=$WORK/expected-marker
printf '%s\n' "start" "argc=0" "cwd=$folder" >"$expected"
cmp -s "$expected" "$marker" || {
    diff "$expected" "$marker" >&2 || true
    fail "the action was not started once, alone, in its own folder"
}
# Wherever a shell could have run them: the program's working folder, the action's, the
# program folder, the home folder, all inside the work folder; or the root.
stray=$(find "$WORK" / -maxdepth 1 -name 'pwned*' 2>/dev/null; find "$WORK" -name 'pwned*')
[ -z "$stray" ] || fail "a command inside the path ran: $stray"
program_running || fail "the program ended"
log "passed"
