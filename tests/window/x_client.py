"""A person at an X server: finds a window, looks at it, and is a mouse and a keyboard (XTEST)
for it."""
import os
import subprocess

from Xlib import X, display
from Xlib.ext import xtest
from Xlib.protocol.event import ClientMessage


class Server:
    """An Xvfb of its own on a free display."""

    def __init__(self, program, width, height):
        reading, writing = os.pipe()
        self.process = subprocess.Popen(
            [program, "-displayfd", str(writing), "-screen", "0", f"{width}x{height}x24",
             "-nolisten", "tcp", "-noreset"],
            pass_fds=[writing], stderr=subprocess.DEVNULL)
        os.close(writing)
        with os.fdopen(reading) as pipe:
            self.display = pipe.readline().strip()
        if not self.display:
            raise RuntimeError("Xvfb did not start")

    def stop(self):
        self.process.terminate()
        self.process.wait()


class Client:
    def __init__(self, name):
        self.display = display.Display(":" + name)
        self.root = self.display.screen().root

    def find(self, title):
        """The visible window of that title, or None."""
        atom = self.display.intern_atom("_NET_WM_NAME")
        for window in self.root.query_tree().children:
            name = window.get_full_property(atom, X.AnyPropertyType)
            viewable = window.get_attributes().map_state == X.IsViewable
            if viewable and name and name.value.decode() == title:
                return window
        return None

    def picture(self, window):
        size = window.get_geometry()
        image = window.get_image(0, 0, size.width, size.height, X.ZPixmap, 0xFFFFFFFF)
        return Picture(size.width, size.height, image.data)

    def _fake(self, kind, detail=0, x=0, y=0):
        xtest.fake_input(self.display, kind, detail, x=x, y=y)
        self.display.sync()

    def move(self, window, x, y):
        place = window.get_geometry()
        self._fake(X.MotionNotify, 0, place.x + x, place.y + y)

    def press(self, button=1):
        self._fake(X.ButtonPress, button)

    def release(self, button=1):
        self._fake(X.ButtonRelease, button)

    def click(self, window, x, y, button=1):
        self.move(window, x, y)
        self.press(button)
        self.release(button)

    def key(self, window, keysym, *held):
        """Without a window manager, the window is given the keyboard first. Held: keysyms of
        keys that are down meanwhile."""
        window.set_input_focus(X.RevertToParent, X.CurrentTime)
        codes = [self.display.keysym_to_keycode(symbol) for symbol in (*held, keysym)]
        for code in codes:
            self._fake(X.KeyPress, code)
        for code in reversed(codes):
            self._fake(X.KeyRelease, code)

    def close(self, window):
        """What a window manager sends when its close button is pressed."""
        protocols, delete = map(self.display.intern_atom, ("WM_PROTOCOLS", "WM_DELETE_WINDOW"))
        window.send_event(ClientMessage(window=window, client_type=protocols,
                                        data=(32, [delete, X.CurrentTime, 0, 0, 0])))
        self.display.sync()


class Picture:
    def __init__(self, width, height, bgrx):
        self.width, self.height, self.bgrx = width, height, bgrx

    def at(self, x, y):
        b, g, r = self.bgrx[4 * (y * self.width + x):][:3]
        return f"#{r:02X}{g:02X}{b:02X}"

    def part(self, x, y, width, height):
        rows = (4 * (row * self.width + x) for row in range(y, y + height))
        return b"".join(self.bgrx[row:row + 4 * width] for row in rows)
