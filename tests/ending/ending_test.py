"""Ctrl+C and SIGTERM: the simulator ends within 3 s and leaves no folder behind.

ending_test.py VARLO-SIM: starts the program with a temporary folder of its own, lets it get
to rest or into a download that hangs, sends the signal.
"""
import os
import pathlib
import signal
import subprocess
import sys
import tempfile
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


def play(program, screen, script, number):
    with tempfile.TemporaryDirectory() as folder:
        folder = pathlib.Path(folder)
        temporary = folder / "tmp"
        temporary.mkdir()
        reached = folder / "reached"
        (folder / "script").write_text(script.format(reached=reached))
        environment = dict(os.environ, TMPDIR=str(temporary))
        if screen == "qt":
            environment["QT_QPA_PLATFORM"] = "offscreen"
        process = subprocess.Popen(
            [program, "--screen", screen, "--script", str(folder / "script")], env=environment,
            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        try:
            end = time.monotonic() + 60
            while not reached.exists():
                assert process.poll() is None, "it ended by itself"
                assert time.monotonic() < end, "the script did not get there"
                time.sleep(0.02)
            assert list(temporary.glob("varlo-*")), "there was a folder"
            began = time.monotonic()
            process.send_signal(number)
            status = process.wait(10)
            took = time.monotonic() - began
        finally:
            if process.poll() is None:
                process.kill()
                process.wait()
        assert took < 3, f"it took {took:.1f} s"
        assert status == 128 + number, f"exit status {status}"
        left = [str(p.relative_to(temporary)) for p in temporary.rglob("*")]
        assert not left, f"left behind: {left}"


def main():
    # The headless screen's own time passes at once: it is never at rest for long.
    cases = (("headless", "in a download", DOWNLOAD), ("qt", "at rest", REST),
             ("qt", "in a download", DOWNLOAD))
    for screen, name, script in cases:
        for number in (signal.SIGINT, signal.SIGTERM):
            try:
                play(sys.argv[1], screen, script, number)
            except AssertionError as e:
                print(f"{number.name} {name} on {screen}: {e}")
                return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
