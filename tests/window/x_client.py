"""A small client of an X server: finds a window, looks at it, and is a mouse and a
keyboard (XTEST) for it. Little-endian, local servers without authority."""
import os
import socket
import struct
import subprocess


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
    def __init__(self, display):
        self.socket = socket.socket(socket.AF_UNIX)
        self.socket.connect(f"/tmp/.X11-unix/X{display}")
        self.socket.sendall(struct.pack("<BxHHHHxx", ord("l"), 11, 0, 0, 0))
        ok, length = struct.unpack("<BxxxxxH", self._read(8))
        setup = self._read(4 * length)
        if ok != 1:
            raise RuntimeError("the X server refuses: " + setup.decode("latin1"))
        vendor, formats = struct.unpack_from("<H", setup, 16)[0], setup[21]
        self.root, = struct.unpack_from("<I", setup, 32 + (vendor + 3) // 4 * 4 + 8 * formats)
        self.first_key = setup[26]
        self.xtest = self._ask(98, 0, struct.pack("<HxxHxxx", 5, 0)[:4] + b"XTEST\0\0\0")[9]

    def _read(self, count):
        data = b""
        while len(data) < count:
            part = self.socket.recv(count - len(data))
            if not part:
                raise RuntimeError("the X server went away")
            data += part
        return data

    def _send(self, opcode, detail, body=b""):
        body += b"\0" * (-len(body) % 4)
        self.socket.sendall(struct.pack("<BBH", opcode, detail, 1 + len(body) // 4) + body)

    def _ask(self, opcode, detail, body=b""):
        self._send(opcode, detail, body)
        while True:
            head = self._read(32)
            if head[0] == 0:
                raise RuntimeError(f"X error {head[1]} of request {head[10]}")
            if head[0] == 1:
                return head + self._read(4 * struct.unpack_from("<I", head, 4)[0])

    def atom(self, name):
        reply = self._ask(16, 0, struct.pack("<Hxx", len(name)) + name.encode())
        return struct.unpack_from("<I", reply, 8)[0]

    def property(self, window, name):
        reply = self._ask(20, 0, struct.pack("<IIIII", window, self.atom(name), 0, 0, 256))
        return reply[32:32 + struct.unpack_from("<I", reply, 16)[0] * reply[1] // 8]

    def find(self, title):
        """The visible window of that title, or None."""
        reply = self._ask(15, 0, struct.pack("<I", self.root))
        for window in struct.unpack_from(f"<{struct.unpack_from('<H', reply, 16)[0]}I", reply, 32):
            viewable = self._ask(3, 0, struct.pack("<I", window))[26] == 2
            if viewable and self.property(window, "_NET_WM_NAME").decode() == title:
                return window
        return None

    def geometry(self, window):
        """x, y, width, height on the screen."""
        return struct.unpack_from("<hhHH", self._ask(14, 0, struct.pack("<I", window)), 12)

    def picture(self, window):
        _, _, width, height = self.geometry(window)
        reply = self._ask(73, 2, struct.pack("<IhhHHI", window, 0, 0, width, height, 0xFFFFFFFF))
        return Picture(width, height, reply[32:])

    def _fake(self, kind, detail, x=0, y=0):
        self._send(self.xtest, 2, struct.pack("<BBxxII8xhh8x", kind, detail, 0, self.root, x, y))

    def move(self, window, x, y):
        left, top, _, _ = self.geometry(window)
        self._fake(6, 0, left + x, top + y)

    def press(self, button=1):
        self._fake(4, button)

    def release(self, button=1):
        self._fake(5, button)

    def click(self, window, x, y, button=1):
        self.move(window, x, y)
        self.press(button)
        self.release(button)

    def key(self, window, keysym, *held):
        """Without a window manager, the window is given the keyboard first. Held: keysyms of
        keys that are down meanwhile."""
        self._send(42, 2, struct.pack("<II", window, 0))
        reply = self._ask(101, 0, struct.pack("<BBxx", self.first_key, 256 - self.first_key))
        per = reply[1]
        symbols = struct.unpack_from(f"<{(256 - self.first_key) * per}I", reply, 32)
        codes = [self.first_key + symbols.index(symbol) // per for symbol in (*held, keysym)]
        for code in codes:
            self._fake(2, code)
        for code in reversed(codes):
            self._fake(3, code)

    def close(self, window):
        """What a window manager sends when its close button is pressed."""
        event = struct.pack("<BBHIIII12x", 33, 32, 0, window, self.atom("WM_PROTOCOLS"),
                            self.atom("WM_DELETE_WINDOW"), 0)
        self._send(25, 0, struct.pack("<II", window, 0) + event)
        self.geometry(self.root)  # it has been sent


class Picture:
    def __init__(self, width, height, bgrx):
        self.width, self.height, self.bgrx = width, height, bgrx

    def at(self, x, y):
        b, g, r = self.bgrx[4 * (y * self.width + x):][:3]
        return f"#{r:02X}{g:02X}{b:02X}"

    def part(self, x, y, width, height):
        rows = (4 * (row * self.width + x) for row in range(y, y + height))
        return b"".join(self.bgrx[row:row + 4 * width] for row in rows)
