"""What the tests' own D-Bus services share: each runs as SCRIPT RECORD-FILE READY-FILE,
keeps its record in RECORD-FILE and creates READY-FILE once its name is on the bus."""
import sys

import dbus
import dbus.service
from dbus.mainloop.glib import DBusGMainLoop
from gi.repository import GLib


def serve(name, make):
    """Runs make(bus, record-file) under the well-known name until killed."""
    DBusGMainLoop(set_as_default=True)
    bus = dbus.SessionBus()
    service = make(bus, sys.argv[1])
    owned = dbus.service.BusName(name, bus, do_not_queue=True)
    open(sys.argv[2], "w").close()
    GLib.MainLoop().run()
    del service, owned
