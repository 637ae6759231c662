"""What a citizen pays: time, memory, processor and bytes of the app on the Qt screen, beside an
empty window with an empty web view. Used by bench.py; milliseconds, megabytes.
"""
import os
import pathlib
import statistics
import subprocess
import tempfile
import time

BIN = "build/release/bin/"
ENV = dict(os.environ, QT_QPA_PLATFORM="offscreen", QT_QUICK_BACKEND="software")
LAUNCHES = 7
ROUNDS = 10
REST = 30  # seconds

# Each row of the menu that opens a page of its own, and the way back.
ROWS = ["Comune di Varlo", "Newsletter Varlo", "Storico Atti Varlo", "Live in Varlo", "Sport",
        "InfoCittà", "Mappe", "Farmacia di turno", "Menu Scuola", "Menu del Giorno", "PizzaPrezzi",
        "Disclaimer"]
ROUND = "".join(f'menu\nwait idle\ntap "{row}"\nwait idle\n' for row in ROWS)
HOME = 'menu\nwait idle\ntap "Home"\nwait idle\n'


def children(pid):
    found = [pid]
    for task in pathlib.Path(f"/proc/{pid}/task").glob("*/children"):
        for child in task.read_text().split():
            found += children(int(child))
    return found


def memory(pid):
    """PSS of the program and of all that it started."""
    total = 0
    for each in children(pid):
        try:
            for line in pathlib.Path(f"/proc/{each}/smaps_rollup").read_text().splitlines():
                if line.startswith("Pss:"):
                    total += int(line.split()[1])
        except (FileNotFoundError, ProcessLookupError):
            pass  # gone meanwhile
    return total / 1024


def processor(pid):
    """Seconds of processor time so far."""
    total = 0
    for each in children(pid):
        fields = pathlib.Path(f"/proc/{each}/stat").read_text().rpartition(")")[2].split()
        total += int(fields[11]) + int(fields[12])
    return total / os.sysconf("SC_CLK_TCK")


def launches(kind):
    times = []
    for _ in range(LAUNCHES):
        start = dict(ENV, BENCH_START=str(time.clock_gettime_ns(time.CLOCK_MONOTONIC)))
        with subprocess.Popen([BIN + "bench_launch", kind], env=start, stdout=subprocess.PIPE,
                              stderr=subprocess.DEVNULL) as program:
            times.append(float(program.stdout.readline().split()[0]))
            program.kill()
    return statistics.median(times)


def empty_web_view():
    with subprocess.Popen([BIN + "bench_launch", "web"], env=ENV, stdout=subprocess.PIPE,
                          stderr=subprocess.DEVNULL) as program:
        program.stdout.readline()
        time.sleep(2)  # the engine's helpers come to rest
        used = memory(program.pid)
        program.kill()
    return used


def a_day(town):
    """The app through its day: memory at home, after each row once and after ten rounds."""
    with tempfile.TemporaryDirectory() as folder:
        def mark(name):
            return f"dump {folder}/{name}\nwait 4000\n"

        script = (f"wait idle\n{mark('home')}{ROUND}{HOME}{mark('once')}"
                  + (ROUND + HOME) * (ROUNDS - 1)
                  + mark('rounds'))
        path = pathlib.Path(folder, "day.script")
        path.write_text(script, encoding="utf-8")
        with subprocess.Popen([BIN + "varlo-sim", "--town", town, "--script", str(path)], env=ENV,
                              stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL) as program:
            def reach(name):
                while not pathlib.Path(folder, name).exists():
                    if program.poll() is not None:
                        raise RuntimeError(f"the day ended before {name}")
                    time.sleep(0.05)

            used = {}
            for name in ("home", "once", "rounds"):
                reach(name)
                time.sleep(2)
                used[name] = memory(program.pid)
            program.kill()
    return used


def share_at_rest(town):
    """Of one processor, with the home page open and nobody there. Without a script, which would
    look around while it waits."""
    with subprocess.Popen([BIN + "varlo-sim", "--town", town], env=ENV,
                          stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL) as program:
        time.sleep(10)
        before = processor(program.pid)
        time.sleep(REST)
        share = (processor(program.pid) - before) / REST
        program.kill()
    return share


def bytes_of_a_pharmacy(town):
    """The bodies of the page of the pharmacies on duty, as the desk's host sends them; one that
    compresses sends a tenth."""
    return sum(int(subprocess.run(
        ["curl", "-s", "--compressed", "-o", "/dev/null", "-w", "%{size_download}",
         f"{town}/InfoVarlo/farmacie/master/{name}"],
        check=True, stdout=subprocess.PIPE, text=True).stdout)
        for name in ("farmacie.json", "turni.json"))


def rows():
    # A host of its own, as a citizen's phone has none in it.
    with subprocess.Popen([BIN + "varlo-townhost"], stdout=subprocess.PIPE,
                          stderr=subprocess.DEVNULL, text=True) as host:
        try:
            return measured(host.stdout.readline().strip())
        finally:
            host.terminate()


def measured(town):
    ENV["BENCH_TOWN"] = town
    home, web = launches("home"), launches("web")
    used, share = a_day(town), share_at_rest(town)
    empty = empty_web_view()
    flat = used["rounds"] / used["once"]
    return [
        ("launch to the home page's text / an empty window with an empty web view",
         f"{home:.0f} ms", f"{web:.0f} ms", f"{home / web:.2f}", "≤ 1.1"),
        ("memory (PSS) at home / the same empty window", f"{used['home']:.0f} MB",
         f"{empty:.0f} MB", f"{used['home'] / empty:.2f}", "≤ 1.15"),
        ("memory after ten rounds of the menu / after one", f"{used['rounds']:.0f} MB",
         f"{used['once']:.0f} MB", f"{flat:.3f}", "≤ 1.01"),
        ("processor in 30 s of rest", f"{share * 100:.2f} %", "", "", "≤ 0.2 %"),
        ("bytes fetched for the pharmacies on duty", f"{bytes_of_a_pharmacy(town)}", "", "", ""),
    ]
