#!/usr/bin/python3
"""The program as a screen reader sees it, read over the accessibility bus with at-spi2's
GObject introspection bindings. For the end-to-end scripts:

  atspi_view.py names            every control of the main window, "role: name" a line
  atspi_view.py focus-day TEXT   focuses the day whose name contains TEXT; prints its name
  atspi_view.py focused          "role: name" of what has the keyboard focus
  atspi_view.py day TEXT         the name of the day whose name contains TEXT

Every answer is read afresh: nothing is taken from the client's cache. Exits 1 when what
was asked for is not there.
"""
import sys

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi  # noqa: E402

APP = "ORVA Calendar"
MAIN = "ORVA's Calender"
WEEKDAYS = ("Sunday ", "Monday ", "Tuesday ", "Wednesday ", "Thursday ", "Friday ", "Saturday ")


def fresh(node):
    node.clear_cache()
    return node


def application():
    desktop = Atspi.get_desktop(0)
    for i in range(desktop.get_child_count()):
        app = desktop.get_child_at_index(i)
        if app is not None and fresh(app).get_name() == APP:
            return app
    sys.exit(f"no application {APP!r} on the accessibility bus")


def walk(node):
    yield node
    for i in range(node.get_child_count()):
        child = node.get_child_at_index(i)
        if child is not None:
            yield from walk(fresh(child))


def main_window():
    app = application()
    for i in range(app.get_child_count()):
        window = fresh(app.get_child_at_index(i))
        if window.get_name() == MAIN:
            return window
    sys.exit(f"no window {MAIN!r}")


def days():
    for node in walk(main_window()):
        if node.get_role_name() == "push button" and node.get_name().startswith(WEEKDAYS):
            yield node


def day(text):
    for node in days():
        if text in node.get_name():
            return node
    sys.exit(f"no day whose name contains {text!r}")


def line(node):
    return f"{node.get_role_name()}: {node.get_name()}"


def main(args):
    command = args[0] if args else ""
    if command == "names":
        for node in walk(main_window()):
            print(line(node))
    elif command == "focus-day" and len(args) == 2:
        node = day(args[1])
        if not node.grab_focus():
            sys.exit("the day would not take the focus")
        print(node.get_name())
    elif command == "focused":
        for node in walk(application()):
            if node.get_state_set().contains(Atspi.StateType.FOCUSED):
                print(line(node))
                return
        sys.exit("nothing has the focus")
    elif command == "day" and len(args) == 2:
        print(day(args[1]).get_name())
    else:
        sys.exit(__doc__)


if __name__ == "__main__":
    main(sys.argv[1:])
