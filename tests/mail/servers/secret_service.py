#!/usr/bin/env python3
"""secret_service.py answers|asks SECONDS|hangs

A keychain (Secret Service) of one password, "kept", on the session bus. It says "ready" when it is there. With
"asks" it is locked, and whoever wants something has to wait while a person unlocks it, for so long; with
"hangs" it says nothing. It ends when its input ends.
"""
import sys
import threading
import time

import dbus
import dbus.service
from dbus.mainloop.glib import DBusGMainLoop
from gi.repository import GLib

NAME = "org.freedesktop.secrets"
SERVICE, PROMPT = "org.freedesktop.Secret.Service", "org.freedesktop.Secret.Prompt"
ROOT = "/org/freedesktop/secrets"
SESSION, QUESTION = ROOT + "/session/1", ROOT + "/prompt/1"
ITEM = ROOT + "/collection/login/1"
how = sys.argv[1]
seconds = float(sys.argv[2]) if how == "asks" else 0


class Question(dbus.service.Object):
    @dbus.service.method(PROMPT, "s")
    def Prompt(self, _window):
        def answer():
            Keychain.is_locked = False
            self.Completed(False, dbus.Array([dbus.ObjectPath(ITEM)], signature="o"))
        GLib.timeout_add(int(seconds * 1000), answer)

    @dbus.service.method(PROMPT)
    def Dismiss(self):
        pass

    @dbus.service.signal(PROMPT, "bv")
    def Completed(self, dismissed, result):
        pass


class Keychain(dbus.service.Object):
    is_locked = how == "asks"

    @dbus.service.method(SERVICE, "sv", "vo")
    def OpenSession(self, algorithm, _input):
        if algorithm != "plain":
            raise dbus.exceptions.DBusException(name="org.freedesktop.DBus.Error.NotSupported")
        return dbus.String("", variant_level=1), dbus.ObjectPath(SESSION)

    @dbus.service.method(SERVICE, "a{ss}", "aoao")
    def SearchItems(self, _attributes):
        item, nothing = dbus.Array([dbus.ObjectPath(ITEM)], signature="o"), dbus.Array([], signature="o")
        return (nothing, item) if Keychain.is_locked else (item, nothing)

    @dbus.service.method(SERVICE, "ao", "aoo")
    def Unlock(self, _items):
        return dbus.Array([], signature="o"), dbus.ObjectPath(QUESTION)

    @dbus.service.method(SERVICE, "aoo", "a{o(oayays)}")
    def GetSecrets(self, items, session):
        secret = (session, dbus.Array([], signature="y"), dbus.ByteArray(b"kept"), "text/plain")
        return dbus.Dictionary({item: dbus.Struct(secret, signature="oayays") for item in items},
                               signature="o(oayays)")

    @dbus.service.method("org.freedesktop.DBus.Properties", "s", "a{sv}")
    def GetAll(self, _interface):
        return dbus.Dictionary({}, signature="sv")


DBusGMainLoop(set_as_default=True)
bus = dbus.SessionBus()
name = dbus.service.BusName(NAME, bus)
keychain, question = Keychain(bus, ROOT), Question(bus, QUESTION)
loop = GLib.MainLoop()
threading.Thread(target=lambda: (sys.stdin.read(), loop.quit()), daemon=True).start()
print("ready", flush=True)
if how == "hangs":
    time.sleep(60)
loop.run()
