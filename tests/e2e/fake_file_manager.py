"""A stand-in for the desktop's file manager on the session bus: it owns
org.freedesktop.FileManager1, answers its three methods, and writes each call as one line of
JSON ([method, uris, startup id]) to the file named by its argument. It prints "ready" once it
owns the name, and "lost" (and exits 1) when it cannot.

Run with /usr/bin/python3 (GLib's Gio through the distribution's python3-gi)."""
import json
import sys

from gi.repository import Gio, GLib

INTERFACE = "org.freedesktop.FileManager1"
PATH = "/org/freedesktop/FileManager1"
XML = f"""<node><interface name="{INTERFACE}">
  <method name="ShowFolders"><arg type="as" direction="in"/><arg type="s" direction="in"/></method>
  <method name="ShowItems"><arg type="as" direction="in"/><arg type="s" direction="in"/></method>
  <method name="ShowItemProperties"><arg type="as" direction="in"/><arg type="s" direction="in"/>
  </method>
</interface></node>"""


def main(log_path):
    loop = GLib.MainLoop()
    bus = Gio.bus_get_sync(Gio.BusType.SESSION, None)

    def on_call(_connection, _sender, _path, _interface, method, parameters, invocation):
        uris, startup_id = parameters.unpack()
        with open(log_path, "a") as log:
            log.write(json.dumps([method, uris, startup_id]) + "\n")
        invocation.return_value(None)

    interface = Gio.DBusNodeInfo.new_for_xml(XML).interfaces[0]
    bus.register_object(PATH, interface, on_call, None, None)

    def acquired(*_):
        print("ready", flush=True)

    def lost(*_):
        print("lost", flush=True)
        loop.quit()

    Gio.bus_own_name_on_connection(bus, INTERFACE, Gio.BusNameOwnerFlags.DO_NOT_QUEUE, acquired,
                                   lost)
    loop.run()
    return 1  # only a lost name ends the loop


if __name__ == "__main__":
    sys.exit(main(sys.argv[1]))
