# SPDX-FileCopyrightText: 2026 The Tonewright Authors
# SPDX-License-Identifier: GPL-3.0-or-later
"""A desktop's settings portal that answers one question. Prints its bus's address, then takes a color-scheme a line."""
import subprocess
import sys

from gi.repository import Gio, GLib

INTERFACE = """<node><interface name="org.freedesktop.portal.Settings">
  <method name="Read"><arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="v" direction="out"/></method>
  <signal name="SettingChanged"><arg type="s"/><arg type="s"/><arg type="v"/></signal>
</interface></node>"""
PATH, NAMESPACE, KEY = "/org/freedesktop/portal/desktop", "org.freedesktop.appearance", "color-scheme"

bus = subprocess.Popen(["dbus-daemon", "--session", "--nofork", "--nopidfile", "--print-address=1"],
                       stdout=subprocess.PIPE, text=True)
address = bus.stdout.readline().strip()
connection = Gio.DBusConnection.new_for_address_sync(
    address, Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION, None, None)
scheme = int(sys.argv[1])


def call(_connection, _sender, _path, _interface, _method, parameters, invocation):
    if parameters.unpack() == (NAMESPACE, KEY):
        invocation.return_value(GLib.Variant("(v)", (GLib.Variant("v", GLib.Variant("u", scheme)),)))
    else:
        invocation.return_dbus_error("org.freedesktop.portal.Error.NotFound", "no such setting")


def command(source, _condition):
    global scheme
    line = source.readline()
    if not line:
        loop.quit()
        return False
    scheme = int(line)
    connection.emit_signal(None, PATH, "org.freedesktop.portal.Settings", "SettingChanged",
                           GLib.Variant("(ssv)", (NAMESPACE, KEY, GLib.Variant("u", scheme))))
    return True


connection.register_object(PATH, Gio.DBusNodeInfo.new_for_xml(INTERFACE).interfaces[0], call, None, None)
Gio.bus_own_name_on_connection(connection, "org.freedesktop.portal.Desktop", Gio.BusNameOwnerFlags.NONE,
                               lambda *_: print(address, flush=True), None)
loop = GLib.MainLoop()
GLib.io_add_watch(sys.stdin, GLib.PRIORITY_DEFAULT, GLib.IO_IN | GLib.IO_HUP, command)
loop.run()
bus.terminate()
