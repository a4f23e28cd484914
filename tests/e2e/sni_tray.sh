#!/usr/bin/env bash
# A StatusNotifierItem tray, as on KDE Plasma or GNOME with AppIndicator: the icon goes to
# a host of our own on a private session bus, which reports each click as Activate. One
# Activate leaves the minimised window in the tray; two in a row bring it back.
source "$(dirname "$0")/lib.sh"
e2e_bus "$@"
e2e_init "$@"

start_service watcher sni_watcher.py
start_program
main=$(wait_window "ORVA's Calender")
wait_until 20 "the item's registration" test -s "$WORK/watcher.log"
log "item registered as $(cat "$WORK/watcher.log")"
xdotool windowminimize "$main"
wait_gone "ORVA's Calender"

activate() {
    dbus-send --session --print-reply --dest=org.kde.StatusNotifierWatcher /StatusNotifierWatcher \
        org.orva.E2E.ActivateItem "int32:$1" >/dev/null
}
activate 1
sleep 1.5
[ -z "$(find_window "ORVA's Calender")" ] || fail "a single click on the item restored the window"
activate 2
wait_window "ORVA's Calender" 15 >/dev/null
shot_when restored 20 "the restored calendar" has_calendar >/dev/null
log "passed"
