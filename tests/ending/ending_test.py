"""Ctrl+C and SIGTERM: the programs end within 3 s and leave nothing temporary behind.

ending_test.py VARLO-SIM [INFOVARLO]: starts a program with folders of its own, lets it get to
rest or into a download that hangs, sends the signal. Without INFOVARLO there is no Qt screen.
"""
import os
import pathlib
import signal
import socket
import subprocess
import sys
import tempfile
import threading
import time

REST = "wait idle\ndump {reached}\nwait 60000\n"
# The host keeps its answer back for a minute.
DOWNLOAD = """wait idle
fault {{"path":"/InfoVarlo/","kind":"delay","amount":60000}}
menu
wait idle
tap "InfoCittà"
wait 20
dump {reached}
wait idle
"""


def until(reached, process):
    end = time.monotonic() + 60
    while not reached():
        assert process.poll() is None, "it ended by itself"
        assert time.monotonic() < end, "it did not get there"
        time.sleep(0.02)


def ended(process, number):
    """Sends the signal; what has not ended well raises."""
    began = time.monotonic()
    process.send_signal(number)
    status = process.wait(10)
    took = time.monotonic() - began
    assert took < 3, f"it took {took:.1f} s"
    assert status == 128 + number, f"exit status {status}"


def nothing_in(*folders):
    left = [str(p) for folder in folders for p in folder.rglob("*")]
    assert not left, f"left behind: {left}"


class Started:
    """The program, for as long as it is wanted."""

    def __init__(self, command, environment):
        self.process = subprocess.Popen(command, env=environment, stdout=subprocess.DEVNULL,
                                        stderr=subprocess.DEVNULL)

    def __enter__(self):
        return self.process

    def __exit__(self, *_):
        if self.process.poll() is None:
            self.process.kill()
            self.process.wait()


def simulator(program, screen, script, number):
    with tempfile.TemporaryDirectory() as folder:
        folder = pathlib.Path(folder)
        temporary = folder / "tmp"
        temporary.mkdir()
        reached = folder / "reached"
        (folder / "script").write_text(script.format(reached=reached))
        environment = dict(os.environ, TMPDIR=str(temporary))
        if screen == "qt":
            environment["QT_QPA_PLATFORM"] = "offscreen"
        command = [program, "--screen", screen, "--script", str(folder / "script")]
        with Started(command, environment) as process:
            until(reached.exists, process)
            assert list(temporary.glob("varlo-*")), "there was a folder"
            ended(process, number)
        nothing_in(temporary)


class Proxy:
    """The app's hosts are fixed; all of them are reached by way of this. It turns the requests
    away, or keeps them waiting."""

    def __init__(self, answers):
        self.asked, self.answers, self.kept = 0, answers, []
        self.socket = socket.create_server(("127.0.0.1", 0))
        self.url = f"http://127.0.0.1:{self.socket.getsockname()[1]}"
        threading.Thread(target=self._serve, daemon=True).start()

    def _serve(self):
        while True:
            try:
                peer, _ = self.socket.accept()
            except OSError:
                return
            peer.recv(4096)
            if self.answers:
                peer.sendall(b"HTTP/1.1 502 Bad Gateway\r\nContent-Length: 0\r\n"
                             b"Connection: close\r\n\r\n")
                peer.close()
            else:
                self.kept.append(peer)
            self.asked += 1

    def close(self):
        self.socket.close()
        for peer in self.kept:
            peer.close()


def app(program, downloading, number):
    proxy = Proxy(answers=not downloading)
    with tempfile.TemporaryDirectory() as folder:
        folder = pathlib.Path(folder)
        cache, temporary = folder / "cache", folder / "tmp"
        temporary.mkdir()
        environment = dict(
            os.environ, HOME=str(folder), TMPDIR=str(temporary), XDG_CACHE_HOME=str(cache),
            XDG_DATA_HOME=str(folder / "data"), QT_QPA_PLATFORM="offscreen",
            http_proxy=proxy.url, https_proxy=proxy.url)
        for name in ("no_proxy", "NO_PROXY", "DBUS_SESSION_BUS_ADDRESS"):
            environment.pop(name, None)
        try:
            with Started([program], environment) as process:
                until(lambda: proxy.asked >= 2, process)  # the home page and the version
                assert list((cache / "infovarlo" / "tmp").iterdir()), "there was a folder"
                ended(process, number)
            nothing_in(cache / "infovarlo" / "tmp", temporary)
        finally:
            proxy.close()


def main():
    # The headless screen's own time passes at once: it is never at rest for long.
    cases = [(simulator, sys.argv[1], "headless", DOWNLOAD)]
    if len(sys.argv) > 2:
        cases += [(simulator, sys.argv[1], "qt", REST), (simulator, sys.argv[1], "qt", DOWNLOAD),
                  (app, sys.argv[2], False), (app, sys.argv[2], True)]
    for play, *what in cases:
        for number in (signal.SIGINT, signal.SIGTERM):
            try:
                play(*what, number)
            except AssertionError as e:
                print(f"{number.name}, {play.__name__} {what[1:]}: {e}")
                return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
