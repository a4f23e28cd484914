#!/usr/bin/env python3
"""A StatusNotifierItem host for the tests: owns org.kde.StatusNotifierWatcher on the session
bus, says a host is registered, takes the items that register, and on ActivateItem(n) of
its own interface calls Activate on the last item n times, back to back, as a panel does
for n left clicks.

    sni_watcher.py ITEMS-FILE READY-FILE
"""
import dbus
import dbus.service

from busservice import serve

NAME = "org.kde.StatusNotifierWatcher"
PATH = "/StatusNotifierWatcher"
TEST = "org.orva.E2E"
PROPS = "org.freedesktop.DBus.Properties"

# Written out by hand: python-dbus leaves properties out of its own introspection, and Qt
# reads IsStatusNotifierHostRegistered only when the introspection lists it.
INTROSPECTION = """<node>
 <interface name="org.kde.StatusNotifierWatcher">
  <method name="RegisterStatusNotifierItem"><arg name="service" type="s" direction="in"/></method>
  <property name="IsStatusNotifierHostRegistered" type="b" access="read"/>
 </interface>
 <interface name="org.freedesktop.DBus.Properties">
  <method name="Get"><arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="v" direction="out"/></method>
 </interface>
 <interface name="org.orva.E2E">
  <method name="ActivateItem"><arg type="i" direction="in"/></method>
 </interface>
</node>"""


class Watcher(dbus.service.Object):
    def __init__(self, bus, record):
        super().__init__(bus, PATH)
        self.bus = bus
        self.record = record
        self.items = []

    @dbus.service.method("org.freedesktop.DBus.Introspectable", in_signature="",
                         out_signature="s")
    def Introspect(self):
        return INTROSPECTION

    @dbus.service.method(PROPS, in_signature="ss", out_signature="v")
    def Get(self, _interface, _name):
        return dbus.Boolean(True)  # IsStatusNotifierHostRegistered, all Qt asks for

    @dbus.service.method(NAME, in_signature="s", out_signature="", sender_keyword="sender")
    def RegisterStatusNotifierItem(self, service, sender=None):
        # An item names its bus name, or only its object path on the sender's connection.
        service = str(service)
        if service.startswith("/"):
            service = str(sender)
        self.items.append(service)
        with open(self.record, "a", encoding="utf-8") as out:
            out.write(service + "\n")

    @dbus.service.method(TEST, in_signature="i", out_signature="")
    def ActivateItem(self, count):
        item = self.bus.get_object(self.items[-1], "/StatusNotifierItem")
        for _ in range(count):
            item.Activate(dbus.Int32(0), dbus.Int32(0), dbus_interface="org.kde.StatusNotifierItem",
                          ignore_reply=True)


if __name__ == "__main__":
    serve(NAME, Watcher)
