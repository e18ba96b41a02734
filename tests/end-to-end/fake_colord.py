# SPDX-License-Identifier: GPL-3.0-or-later
"""The part of the colour management service that programs ask for the profile of a monitor.

Usage: fake_colord.py FILE...

Every monitor has the profile in the first FILE; after each line on standard input, that in the next one. Prints the
name of each monitor that is asked for."""

import sys

from gi.repository import Gio, GLib

SERVICE, PATH = "org.freedesktop.ColorManager", "/org/freedesktop/ColorManager"
DEVICE, PROFILE = PATH + "/devices/monitor", PATH + "/profiles/profile"
INTERFACES = f"""<node>
    <interface name="{SERVICE}">
        <method name="FindDeviceByProperty">
            <arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="o" direction="out"/>
        </method>
        <signal name="DeviceChanged"><arg type="o"/></signal>
    </interface>
    <interface name="{SERVICE}.Device"><property name="Profiles" type="ao" access="read"/></interface>
    <interface name="{SERVICE}.Profile"><property name="Filename" type="s" access="read"/></interface>
</node>"""

files = sys.argv[1:]
bus = Gio.bus_get_sync(Gio.BusType.SYSTEM)


def call(_bus, _sender, _path, _interface, _method, parameters, invocation):
    key, value = parameters.unpack()
    assert key == "XRANDR_name", key
    print(value, flush=True)
    invocation.return_value(GLib.Variant("(o)", (DEVICE,)))


def value_of(_bus, _sender, _path, _interface, name):
    return GLib.Variant("ao", [PROFILE]) if name == "Profiles" else GLib.Variant("s", files[0])


def change(*_):
    sys.stdin.readline()
    files.pop(0)
    bus.emit_signal(None, PATH, SERVICE, "DeviceChanged", GLib.Variant("(o)", (DEVICE,)))
    return len(files) > 1


for path, interface in zip((PATH, DEVICE, PROFILE), Gio.DBusNodeInfo.new_for_xml(INTERFACES).interfaces):
    bus.register_object(path, interface, call, value_of, None)
GLib.io_add_watch(sys.stdin, GLib.IO_IN, change)
Gio.bus_own_name_on_connection(bus, SERVICE, Gio.BusNameOwnerFlags.NONE, lambda *_: print("ready", flush=True), None)
GLib.MainLoop().run()
