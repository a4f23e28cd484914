#!/usr/bin/env bash
# An iCalendar file of holidays, written by python3-icalendar as other programs write them,
# imported through File > Import from iCalendar... and its preview window. The store gets
# what the preview promised, through the writers of the add dialog, and the year shows it.
source "$(dirname "$0")/lib.sh"
e2e_init "$@"

ics=$WORK/holidays.ics
/usr/bin/python3 - "$ics" <<'EOF'
import sys, datetime, zoneinfo, icalendar
cal = icalendar.Calendar()
cal.add('prodid', '-//Holiday list//EN')
cal.add('version', '2.0')
def add(summary, start, rule=None, category='Holiday'):
    e = icalendar.Event()
    e.add('uid', f'{len(cal.subcomponents)}@holidays')
    e.add('dtstamp', datetime.datetime(2026, 1, 1, tzinfo=datetime.timezone.utc))
    e.add('summary', summary)
    e.add('dtstart', start)
    if rule:
        e.add('rrule', rule)
    if category:
        e.add('categories', [category])
    cal.add_component(e)
for name, month, day in [("New Year's Day", 1, 1), ("Martin Luther King Jr. Day", 1, 19),
                         ("Washington's Birthday", 2, 16), ("Memorial Day", 5, 25),
                         ("Juneteenth", 6, 19), ("Independence Day", 7, 4), ("Labor Day", 9, 7),
                         ("Columbus Day", 10, 12), ("Veterans Day", 11, 11),
                         ("Christmas Day", 12, 25)]:
    add(name, datetime.date(2026, month, day))
add("Thanksgiving Day", datetime.date(2026, 11, 26), {'freq': 'yearly', 'bymonth': 11, 'byday': '4TH'})
add("Christmas Day", datetime.date(2026, 12, 25), {'freq': 'yearly'})
add("Leap Day", datetime.date(2024, 2, 29), {'freq': 'yearly'})
add("Team stand-up", datetime.datetime(2026, 1, 5, 9, 0, tzinfo=zoneinfo.ZoneInfo('Europe/Berlin')),
    {'freq': 'weekly', 'byday': 'MO'}, category=None)
open(sys.argv[1], 'wb').write(cal.to_ical())
EOF

start_program "2026-03-01 10:00:00"
main=$(wait_window "ORVA's Calender")
shot_when before 20 "the calendar" has_calendar >/dev/null

# File > Import from iCalendar..., the fourth item: the menu opens on the first.
focus "$main"
keys alt+f
sleep 0.3
keys Down Down Down Return
picker=$(wait_window "Open an iCalendar File")
focus "$picker"
type_text "$ics"
keys Return
preview=$(wait_window "Import from iCalendar - holidays.ics")
sleep 1
shot preview >/dev/null
focus "$preview"
keys alt+i
wait_gone "Import from iCalendar - holidays.ics"
box=$(wait_window "Import from iCalendar")
focus "$box"
keys Return
wait_gone "Import from iCalendar"

expected=$WORK/expected.ini
cp "$E2E_SOURCE_DATA/Data.ini" "$expected"
ini_lines "[count]" "c=12" >>"$expected"
n=0
for row in "1/1|New Year's Day" "1/19|Martin Luther King Jr. Day" "2/16|Washington's Birthday" \
    "5/25|Memorial Day" "6/19|Juneteenth" "7/4|Independence Day" "9/7|Labor Day" \
    "10/12|Columbus Day" "11/11|Veterans Day" "12/25|Christmas Day" \
    "11/26|Thanksgiving Day (11/26/2026)"; do
    n=$((n + 1))
    ini_lines "[$n]" "Date=${row%%|*}/2026" "Time=00:00" "Memo=${row#*|}" "Cat=Holiday" >>"$expected"
done
ini_lines "[12]" "Date=11/25/2027" "Time=00:00" "Memo=Thanksgiving Day (11/25/2027)" "Cat=Holiday" \
    "[rcount]" "c=1" "[r1]" "Type=Weekly" "Day=Monday" "Time=8:00 AM" "Memo=Team stand-up" \
    "Cat=Work" >>"$expected"
expect_file "$expected" "$PROG/Data.ini" "the store after the import"

# The main window has reloaded: the holidays of 2026 take the Holiday colour.
colour=$(category_colour Holiday)
deadline=$(($(date +%s) + 15))
until [ "$(colour_count "$(shot after)" "$colour" 0 0 1150 800)" -gt 0 ]; do
    [ "$(date +%s)" -lt "$deadline" ] || fail "no day took the Holiday colour $colour"
    sleep 0.3
done
log "passed"
