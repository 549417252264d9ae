"""A desktop's portal whose user answers every save dialog with the file named on the command line."""

import sys

from gi.repository import Gio, GLib

SERVICE = "org.freedesktop.portal.Desktop"
PATH = "/org/freedesktop/portal/desktop"
CHOOSER = """<node><interface name="org.freedesktop.portal.FileChooser">
<method name="SaveFile"><arg type="s" direction="in"/><arg type="s" direction="in"/>
<arg type="a{sv}" direction="in"/><arg type="o" direction="out"/></method>
<property name="version" type="u" access="read"/></interface></node>"""


def save_file(bus, sender, _path, _interface, _method, parameters, invocation):
    _parent, title, options = parameters.unpack()
    print(title, options["current_name"], sep="|", flush=True)
    request = f"{PATH}/request/{sender[1:].replace('.', '_')}/{options['handle_token']}"
    invocation.return_value(GLib.Variant("(o)", (request,)))
    answer = {"uris": GLib.Variant("as", [Gio.File.new_for_path(sys.argv[1]).get_uri()])}
    bus.emit_signal(sender, request, "org.freedesktop.portal.Request", "Response",
                    GLib.Variant("(ua{sv})", (0, answer)))


bus = Gio.bus_get_sync(Gio.BusType.SESSION)
chooser = Gio.DBusNodeInfo.new_for_xml(CHOOSER).interfaces[0]
bus.register_object(PATH, chooser, save_file, lambda *_: GLib.Variant("u", 3), None)
Gio.bus_own_name_on_connection(bus, SERVICE, Gio.BusNameOwnerFlags.NONE,
                               lambda *_: print("Ready", flush=True), None)
GLib.MainLoop().run()
