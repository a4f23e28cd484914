#!/usr/bin/env bash
# The tray: a minimised main window leaves only the tray icon; a single click on the icon
# does nothing, a double click brings the window back, and the icon's menu ends the program.
source "$(dirname "$0")/lib.sh"
e2e_init "$@"

start_program
main=$(wait_window "ORVA's Calender")
wait_until 10 "the tray icon" tray_icon_centre
read -r ix iy < <(tray_icon_centre)
log "tray icon at $ix,$iy"
# The icon is drawn: its cell of the tray is not all one colour.
icon_drawn() {
    [ "$(colour_counts "$1" $((ix - 8)) $((iy - 8)) 16 16 | wc -l)" -gt 4 ]
}
shot_when shown 20 "the tray icon" icon_drawn >/dev/null

xdotool windowminimize "$main"
wait_gone "ORVA's Calender"
shot minimised >/dev/null
program_running || fail "the program ended when minimised"

click "$ix" "$iy"
sleep 1.5
[ -z "$(find_window "ORVA's Calender")" ] || fail "a single click on the tray icon restored the window"

double_click "$ix" "$iy"
main=$(wait_window "ORVA's Calender" 15)
shot_when restored 20 "the restored calendar" has_calendar >/dev/null

# Right button: the icon's menu, whose last item is "Exit". It is one more window of the
# program's, beside the main window and the icon.
windows() { { xdotool search --onlyvisible --classname '^orva-calendar$' || true; } | wc -l; }
shown=$(windows)
menu_open() { [ "$(windows)" -gt "$shown" ]; }
click "$ix" "$iy" 3
wait_until 10 "the tray icon's menu" menu_open
shot menu >/dev/null
keys Up Return
wait_exit 15
[ "$APP_STATUS" -eq 0 ] || fail "Exit from the tray menu ended the program with status $APP_STATUS"
log "passed"
