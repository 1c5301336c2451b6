"""client.py FOLDER: another program of the desktop (GTK), with which pictures and files are exchanged. Its window "Client"
is dragged from; Ctrl+C and Ctrl+V in it copy and paste. A line of the input says what it offers: "picture FILE" or
"files FILE". What was pasted is written to pasted.png in the folder and said on the output."""

import os
import sys

import gi

gi.require_version("Gdk", "3.0")
gi.require_version("Gtk", "3.0")
from gi.repository import Gdk, GdkPixbuf, GLib, Gtk  # noqa: E402

FOLDER = sys.argv[1]
SIZE = 200  # logical pixels
URI_LIST = "text/uri-list"


class Client(Gtk.Window):
    def __init__(self):
        super().__init__(title="Client")
        self.kind, self.file = None, None
        self.set_default_size(SIZE, SIZE)
        self.set_resizable(False)
        self.set_keep_above(True)  # seen beside a window that fills the screen
        self.box = Gtk.EventBox()
        self.box.add(Gtk.Label(label="Drag me"))
        self.box.set_size_request(SIZE, SIZE)
        self.box.drag_source_set(Gdk.ModifierType.BUTTON1_MASK, [Gtk.TargetEntry.new(URI_LIST, 0, 0)],
                                 Gdk.DragAction.COPY)
        self.box.connect("drag-data-get", lambda _, __, data, *rest: data.set_uris([self.uri()]))
        self.box.connect("drag-end", lambda *_: print("dragged", flush=True))
        self.add(self.box)
        self.clipboard = Gtk.Clipboard.get(Gdk.SELECTION_CLIPBOARD)
        self.connect("key-press-event", self.key)
        self.connect("selection-get", lambda _, data, *rest: data.set_uris([self.uri()]))
        self.connect("destroy", Gtk.main_quit)
        GLib.io_add_watch(sys.stdin, GLib.IO_IN | GLib.IO_HUP, self.listen)

    def uri(self):
        return GLib.filename_to_uri(os.path.abspath(self.file), None)

    def listen(self, source, _):
        line = source.readline()
        if not line:
            Gtk.main_quit()
            return False
        self.kind, self.file = line.rstrip("\n").split(" ", 1)
        print("ready", flush=True)
        return True

    def key(self, _, event):
        if event.state & Gdk.ModifierType.CONTROL_MASK and event.keyval in (Gdk.KEY_c, Gdk.KEY_C):
            self.copy(event)
        elif event.state & Gdk.ModifierType.CONTROL_MASK and event.keyval in (Gdk.KEY_v, Gdk.KEY_V):
            self.clipboard.request_contents(Gdk.Atom.intern("image/png", False), self.paste)

    def copy(self, event):
        if self.kind == "picture":
            self.clipboard.set_image(GdkPixbuf.Pixbuf.new_from_file(self.file))
        else:
            Gtk.selection_owner_set(self, Gdk.SELECTION_CLIPBOARD, event.time)
            Gtk.selection_add_target(self, Gdk.SELECTION_CLIPBOARD, Gdk.Atom.intern(URI_LIST, False), 0)
        print("copied", flush=True)

    def paste(self, _, data):
        picture = data.get_data()
        with open(f"{FOLDER}/pasted.png", "wb") as file:
            file.write(picture)
        print("pasted", flush=True)


Client().show_all()
Gtk.main()
