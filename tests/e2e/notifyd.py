#!/usr/bin/env python3
"""A desktop notification service for the tests: owns org.freedesktop.Notifications on the
session bus and appends every Notify call to a file, one JSON object a line.

    notifyd.py RECORD-FILE READY-FILE
"""
import json

import dbus
import dbus.service

from busservice import serve

NAME = "org.freedesktop.Notifications"


class Service(dbus.service.Object):
    def __init__(self, bus, record):
        super().__init__(bus, "/org/freedesktop/Notifications")
        self.record = record
        self.last_id = 0

    @dbus.service.method(NAME, in_signature="", out_signature="as")
    def GetCapabilities(self):
        # With markup, so that a memo's "&" or "<" must come escaped.
        return ["body", "body-markup"]

    @dbus.service.method(NAME, in_signature="susssasa{sv}i", out_signature="u")
    def Notify(self, app, replaces, icon, summary, body, actions, hints, timeout):
        self.last_id += 1
        call = {
            "app": str(app), "replaces": int(replaces), "icon": str(icon),
            "summary": str(summary), "body": str(body), "actions": [str(a) for a in actions],
            "hints": {str(k): (bool(v) if isinstance(v, dbus.Boolean) else str(v))
                      for k, v in hints.items()},
            "timeout": int(timeout),
        }
        with open(self.record, "a", encoding="utf-8") as out:
            out.write(json.dumps(call) + "\n")
        return dbus.UInt32(self.last_id)


if __name__ == "__main__":
    serve(NAME, Service)
