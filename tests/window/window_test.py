"""The simulator in a real window: what a person at the desk sees and does.

window_test.py VARLO-SIM [FOLDER]: starts an X server of its own and the program in it,
uses mouse, wheel and keyboard, closes the window. Leaves pictures in FOLDER if given.
Exit status 77, which means skipped, where Xvfb is not installed. Needs python3-xlib.
"""
import os
import shutil
import subprocess
import sys
import time

from x_client import Client, Server

TOWN, WHITE = "#1F5F7A", "#FFFFFF"
WIDTH, HEIGHT = 320, 568
ESCAPE, F10, CONTROL, Q = 0xFF1B, 0xFFC7, 0xFFE3, 0x71
TAB, ENTER = 0xFF09, 0xFF0D
PHARMACIES = 9  # rows below the menu's first


def until(what, condition, seconds=60):
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        found = condition()
        if found:
            return found
        time.sleep(0.02)
    raise AssertionError(f"not within {seconds} s: {what}")


class Desk:
    def __init__(self, client, program):
        self.client, self.program = client, program
        self.window = until("a window named InfoVarlo", self._find)

    def _find(self):
        assert self.program.poll() is None, "the program ended before its window was there"
        return self.client.find("InfoVarlo")

    def look(self):
        return self.client.picture(self.window)

    def resting(self):
        """The picture once nothing moves any more."""
        seen = [self.look()]

        def same():
            time.sleep(0.3)  # longer than any pause between two frames of a movement
            seen.append(self.look())
            return seen[-1].bgrx == seen[-2].bgrx

        until("a picture at rest", same)
        return seen[-1]


def play(desk, keep, leave):
    client, window = desk.client, desk.window
    size = window.get_geometry()
    assert (size.width, size.height) == (WIDTH, HEIGHT), size
    until("the bar in the town's colour", lambda: desk.look().at(160, 10) == TOWN)
    until("the home page", lambda: desk.look().at(160, 70) != WHITE)
    home = desk.resting()
    keep("window-home", home)

    client.click(window, 30, 42)
    until("the page dimmed beside the drawer", lambda: desk.look().at(310, 10) != TOWN)
    menu = desk.resting()
    keep("window-menu", menu)
    assert menu.at(140, 10) == TOWN and menu.at(276, 300) == WHITE, "the drawer is open"

    def rows(picture):
        return picture.part(0, 100, 270, 400)

    client.move(window, 120, 300)
    for _ in range(3):
        client.press(5)
        client.release(5)
    until("rows moved by the wheel", lambda: rows(desk.look()) != rows(menu))
    wheeled = desk.resting()
    client.press()
    for y in range(300, 200, -5):
        client.move(window, 120, y)
        time.sleep(0.01)  # a hand is no faster
    client.release()
    until("rows moved by dragging", lambda: rows(desk.look()) != rows(wheeled))
    keep("window-dragged", desk.resting())

    client.key(window, ESCAPE)
    until("the closed drawer", lambda: desk.look().at(310, 10) == TOWN)

    # F10 opens the menu from the keyboard; Ctrl+Q leaves.
    client.key(window, F10)
    until("the menu opened by F10", lambda: desk.look().at(310, 10) != TOWN)
    client.key(window, ESCAPE)
    until("the menu closed again", lambda: desk.look().at(310, 10) == TOWN)
    if leave == "keys":
        by_keys(desk, keep)
        wider(desk, keep)
        client.key(window, Q, CONTROL)
    else:
        by_pointer(desk, keep)
        client.close(window)
    assert desk.program.wait(30) == 0, f"exit status {desk.program.returncode}"


def changed(desk, what, part, since):
    """Waits until a part of the window is another than it was, and for rest."""
    until(what, lambda: desk.look().part(*part) != since.part(*part))
    return desk.resting()


LEFT_OF_BAR = (0, 22, 44, 40)  # the menu's button, or the way back
CONTENT = (0, 64, WIDTH, HEIGHT - 64)


def by_keys(desk, keep):
    """A row of the menu by Tab and Enter, one of its list, and Escape for the way back."""
    client, window = desk.client, desk.window
    home = desk.resting()
    client.key(window, F10)
    menu = changed(desk, "the menu", CONTENT, home)
    for _ in range(PHARMACIES):
        client.key(window, TAB)
    keep("window-keys-menu", changed(desk, "the focus on another row", CONTENT, menu))
    client.key(window, ENTER)
    until("the closed drawer", lambda: desk.look().at(310, 10) == TOWN)
    pharmacies = changed(desk, "the pharmacies", CONTENT, home)
    client.key(window, TAB)
    keep("window-keys-list", changed(desk, "the focus on the first", CONTENT, pharmacies))
    client.key(window, ENTER)
    pharmacy = changed(desk, "a page with a way back", LEFT_OF_BAR, pharmacies)
    keep("window-keys-page", pharmacy)
    client.key(window, ESCAPE)
    back = changed(desk, "the list again", LEFT_OF_BAR, pharmacy)
    assert back.part(*CONTENT) == pharmacies.part(*CONTENT), "as it was"


def wider(desk, keep):
    """A window made wider has its page laid out anew: lines between rows reach out with it."""
    narrow = desk.resting()
    wide = WIDTH + 160
    desk.window.configure(width=wide, height=HEIGHT)
    desk.client.display.sync()
    until("the wider bar", lambda: desk.look().width == wide and desk.look().at(wide - 5, 10) == TOWN)
    page = desk.resting()
    keep("window-wide", page)

    def lines(picture, x):
        return [y for y in range(64, HEIGHT) if picture.at(x, y) != WHITE]

    assert lines(page, wide - 15) == lines(narrow, WIDTH - 15) != [], "lines up to the edge"


def by_pointer(desk, keep):
    """A tap on the menu's second row opens it."""
    client, window = desk.client, desk.window
    home = desk.resting()
    client.click(window, 30, 42)
    changed(desk, "the menu", CONTENT, home)
    client.click(window, 120, 170)
    until("the closed drawer", lambda: desk.look().at(310, 10) == TOWN)
    keep("window-tapped", changed(desk, "the page of the row", CONTENT, home))


def main():
    xvfb = shutil.which("Xvfb")
    if not xvfb:
        print("skipped: Xvfb is not installed (apt-get install xvfb)")
        return 77
    folder = sys.argv[2] if len(sys.argv) > 2 else None

    def keep(name, picture):
        if not folder:
            return
        pixels = bytearray(3 * picture.width * picture.height)
        for i in range(3):
            pixels[i::3] = picture.bgrx[2 - i::4]
        with open(os.path.join(folder, name + ".ppm"), "wb") as file:
            file.write(b"P6 %d %d 255\n" % (picture.width, picture.height) + pixels)

    server = Server(xvfb, 640, 720)
    program = None
    try:
        environment = dict(os.environ, DISPLAY=":" + server.display, QT_QPA_PLATFORM="xcb",
                           QT_QUICK_BACKEND="software")
        environment.pop("WAYLAND_DISPLAY", None)
        for leave in ("button", "keys"):
            program = subprocess.Popen(
                [sys.argv[1], "--size", f"{WIDTH}x{HEIGHT}", "--scale", "1", "--now",
                 "2026-11-21T10:00"], env=environment)
            play(Desk(Client(server.display), program), keep, leave)
    finally:
        if program and program.poll() is None:
            program.kill()
            program.wait()
        server.stop()
    return 0


if __name__ == "__main__":
    sys.exit(main())
