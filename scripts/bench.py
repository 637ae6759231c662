#!/usr/bin/env python3
"""Runs the benchmarks, each pair in one run, and prints the table of docs/performance.md.

  bench.py [--update] [NAME...]     NAME: a part of a row's name

Every figure is the median of runs that take turns with those of its peer; ratios are of these
medians. A figure's spread stands behind it, the least and the most of its runs: what is said of
two figures whose spreads overlap is said of the machine as well. Exit status 0 however the
figures turn out, 1 if a benchmark could not be run.
"""
import json
import os
import statistics
import subprocess
import sys
import time

import citizen

BIN = "build/release/bin/"
# Many short runs in place of few long ones: whatever else the machine does then falls on both
# sides of a pair alike.
REPETITIONS = "11"
LONG_ENOUGH = "0.1"  # seconds a run


def google(program, *names):
    """Medians and spreads of CPU time in nanoseconds, and counters, by benchmark."""
    out = subprocess.run(
        [BIN + program, "--benchmark_repetitions=" + REPETITIONS, "--benchmark_format=json",
         "--benchmark_min_time=" + LONG_ENOUGH, "--benchmark_enable_random_interleaving=true",
         "--benchmark_filter=^(" + "|".join(names) + ")(/.*)?$"],
        check=True, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL).stdout
    unit = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}
    found = {}
    for b in json.loads(out)["benchmarks"]:
        if b.get("run_type") == "iteration":
            run = found.setdefault(b["run_name"], dict(b, runs=[]))
            run["runs"].append(b["cpu_time"] * unit[b["time_unit"]])
    for run in found.values():
        run["ns"] = Runs(run["runs"])
    for name in names:
        if not any(run == name or run.startswith(name + "/") for run in found):
            raise RuntimeError(f"{program} has no {name}")
    return found


class Runs(float):
    """The median of some runs, which remembers the least and the most of them."""
    def __new__(cls, runs):
        me = super().__new__(cls, statistics.median(runs))
        me.least, me.most = min(runs), max(runs)
        return me


def timed(ns):
    unit, size = next(((u, s) for limit, s, u in ((1e3, 1, "ns"), (1e6, 1e3, "µs"),
                                                  (1e9, 1e6, "ms")) if ns < limit), ("s", 1e9))
    spread = f" ({ns.least / size:.3g}–{ns.most / size:.3g})" if isinstance(ns, Runs) else ""
    return f"{ns / size:.3g} {unit}{spread}"


def pair(what, program, ours, peer, goal, faster=False):
    """One row: ours beside a peer. With faster the ratio says how many times faster."""
    def run():
        m = google(program, ours, peer)
        # Of several sizes the first counts; the runs come in no order.
        a, b = (m[min(k for k in m if k == n or k.startswith(n + "/"))]["ns"]
                for n in (ours, peer))
        ratio = b / a if faster else a / b
        return [(what, timed(a), timed(b), f"{ratio:.2f}", goal)]
    run.title = what
    return run


def events():
    m = google("bench_events", "raiseByName", "mapAndFunction", "toolkitInvokeByName",
               "parkAndWake")
    a = {k: v["ns"] for k, v in m.items()}
    return [
        ("raise an event by name, two parameters / map look-up and std::function",
         timed(a["raiseByName"]), timed(a["mapAndFunction"]),
         f"{a['raiseByName'] / a['mapAndFunction']:.2f}", "≤ 1.5"),
        ("the same / QMetaObject::invokeMethod by name, times faster", timed(a["raiseByName"]),
         timed(a["toolkitInvokeByName"]),
         f"{a['toolkitInvokeByName'] / a['raiseByName']:.1f}", "≥ 3"),
        ("park and wake a resumable sub / one raise", timed(a["parkAndWake"]),
         timed(a["raiseByName"]), f"{a['parkAndWake'] / a['raiseByName']:.2f}", "< 3"),
    ]


def json_rows():
    m = google("bench_json", "json/ours", "json/rapidjson", "json/nlohmann", "json/simdjson")
    a, b, c, d = (m[f"json/{peer}/0"]["ns"] for peer in ("ours", "rapidjson", "nlohmann",
                                                        "simdjson"))
    town, theirs = m["json/ours/2"]["ns"], m["json/simdjson/2"]["ns"]
    walked, their_walk = m["json/ours/walk/0"]["ns"], m["json/simdjson/walk/0"]["ns"]
    return [
        ("JSON text of 0.8 MB of records to maps and lists / simdjson's DOM", timed(a), timed(d),
         f"{a / d:.2f}", "≤ 1.25"),
        ("the same, every value and text looked at / simdjson's", timed(walked),
         timed(their_walk), f"{walked / their_walk:.2f}", ""),
        ("the town's own documents / simdjson's DOM", timed(town), timed(theirs),
         f"{town / theirs:.2f}", "≤ 1.25"),
        ("the records / RapidJSON's DOM", timed(a), timed(b),
         f"{a / b:.2f}", "≤ 1"),
        ("the same / nlohmann-json, times faster", timed(a), timed(c), f"{c / a:.1f}", "≥ 5"),
    ]


def rows():
    m = google("bench_views", "appendRows", "measureRows", "visibleRange")
    a, b = m["appendRows"]["ns"], m["measureRows"]["ns"]
    low, high = m["visibleRange/100"]["ns"], m["visibleRange/10000"]["ns"]
    return [
        ("append 10,000 measured text rows / measuring the texts alone", timed(a), timed(b),
         f"{a / b:.2f}", "≤ 1.3"),
        ("bytes a row beside its text", f"{m['appendRows']['bytes_per_row']:.0f}", "", "",
         "≤ 2048"),
        ("visible range in 10,000 rows / in 100", timed(high), timed(low), f"{high / low:.2f}",
         "logarithmic"),
    ]


def measuring():
    m = google("bench_lists", "measuredByTheHouse", "measuredByShapingAlone")
    a, b = m["measuredByTheHouse"]["ns"], m["measuredByShapingAlone"]["ns"]
    return [("measure 10,000 row texts / HarfBuzz and ICU's breaks alone", timed(a), timed(b),
             f"{a / b:.2f}", "≤ 1.5")]


def scrolling():
    m = google("bench_lists", "scrollRows")
    lines = []
    for name, title in (("scrollRows/0/iterations:1", "scroll 10,000 rows, 99 of 100 frames"),
                        ("scrollRows/1/iterations:1", "the same with a screen reader")):
        for part, whose in (("main_ms", "main thread"), ("renderer_ms", "renderer")):
            lines.append((f"{title}: processor of the {whose}", f"{m[name][part]:.2f} ms", "", "",
                          "≤ 8 ms"))
    return lines


def search():
    m = google("bench_search", "keyInSearchView", "keyInBareLoop", "rowsOnTheScreen",
               "insertAtTheFront")
    ours, bare, seen = (m[n]["ns"] for n in ("keyInSearchView", "keyInBareLoop",
                                             "rowsOnTheScreen"))
    return [
        ("14 keys in the search view, less the rows seen / a bare loop over 5,000 texts",
         timed(ours - seen), timed(bare), f"{(ours - seen) / bare:.2f}", "≤ 3"),
        ("a key in the search view over 5,000 streets", timed(ours / 14), "", "", "≤ 1 ms"),
        ("a row put at the front of 10,000, scrolled away",
         timed(m["insertAtTheFront"]["ns"]), "", "", "≤ 2 ms"),
    ]


def launch():
    ours, empty, engine = [], [], 0
    env = dict(os.environ, QT_QPA_PLATFORM="offscreen", QT_QUICK_BACKEND="software")
    for _ in range(11):
        for kind, times in (("app", ours), ("empty", empty)):
            env["BENCH_START"] = str(time.clock_gettime_ns(time.CLOCK_MONOTONIC))
            out = subprocess.run([BIN + "bench_launch", kind], env=env, check=True,
                                 stdout=subprocess.PIPE, stderr=subprocess.DEVNULL).stdout.split()
            times.append(float(out[0]) * 1e6)
            engine |= kind == "app" and int(out[1])
    a, b = Runs(ours), Runs(empty)
    return [
        ("launch to first frame / an empty Qt Quick window", timed(a), timed(b), f"{a / b:.2f}",
         "≤ 1.5"),
        ("browser engine loaded before the first frame", "yes" if engine else "no", "", "", "no"),
    ]


FEATURES = {50: "news", 51: "newsletter", 55: "acts", 30: "events of the town", 31: "live events",
            32: "sport", 6: "directory", 60: "maps", 4: "pharmacies", 2: "schools",
            5: "daily menus", 3: "pizza prices"}


def features():
    out = subprocess.run([BIN + "bench_features"], check=True, stdout=subprocess.PIPE,
                         stderr=subprocess.DEVNULL).stdout.decode()
    found = []
    for line in out.splitlines():
        value, count, a, b, slow = line.split()
        a, b, slow = float(a), float(b), float(slow)
        found.append((f"tap to the {count} rows of {FEATURES[int(value)]} / its documents by libcurl "
                      "and RapidJSON", f"{a:.2f} ms (nine in ten {slow:.2f})", f"{b:.2f} ms",
                      f"{a / b:.2f}", f"≤ 1.3 × + 5 ms = {1.3 * b + 5:.2f} ms"))
    return found


def maps():
    out = subprocess.run([BIN + "bench_maps"], check=True, stdout=subprocess.PIPE,
                         stderr=subprocess.DEVNULL).stdout.split()
    a, b, ours, bare = (float(x) for x in out)
    return [
        ("tap to 5,000 markers' pins seen / a bare page of the same library", f"{a:.0f} ms",
         f"{b:.0f} ms", f"{a / b:.2f}", "≤ 1.5"),
        ("frames a second while they are panned / on the bare page", f"{ours:.0f}", f"{bare:.0f}",
         f"{ours / bare:.2f}", "≈ 1"),
    ]


def titled(title, run):
    run.title = title
    return run


def http():
    out = subprocess.run([BIN + "bench_http"], check=True, stdout=subprocess.PIPE,
                         stderr=subprocess.DEVNULL).stdout.split()
    rounds = [float(ms) * 1e6 for ms in out]
    a, b = Runs(rounds[::2]), Runs(rounds[1::2])
    return [("1,000 small GETs, 16 in flight / libcurl's multi", timed(a), timed(b),
             f"{a / b:.2f}", "≤ 1.2")]


def text():
    m = google("bench_text", "charAt", "cutLines", "makeText")
    def row(what, name, size=""):
        a, b = m[f"{name}/accents{size}"]["ns"], m[f"{name}/ascii{size}"]["ns"]
        return (what, timed(a), timed(b), f"{a / b:.2f}", "≤ 5")
    return [row("a character by its position, 50,000 accented units / ASCII", "charAt"),
            row("19,000 lines cut out of 380,000 accented units / ASCII", "cutLines"),
            row("a text of 60 units made, with accents / ASCII", "makeText", "/60")]


ROWS = [
    titled("events", events),
    titled("json", json_rows),
    pair("layout of 20 views / the same by QQmlComponent, times faster", "bench_views",
         "layoutOfTwentyViews", "markupOfTwentyViews", "≥ 5", faster=True),
    titled("rows", rows),
    titled("measuring", measuring),
    titled("scrolling", scrolling),
    titled("search", search),
    titled("launch", launch),
    titled("features", features),
    titled("maps", maps),
    titled("citizen", citizen.rows),
    pair("sort a list of 100,000 texts / std::sort of the same", "bench_collections", "sortList",
         "sortStrings", "≤ 1.5"),
    pair("a regular expression in a loop / ICU compiled once", "bench_collections",
         "wholeMatchInALoop", "wholeMatchCompiledOnce", "≤ 1.2"),
    titled("http", http),
    titled("text", text),
    pair("serialize a tree / QDataStream of the same, times faster", "bench_serializer",
         "serializer/write/ours", "serializer/write/qdatastream", "≥ 2", faster=True),
    pair("read it back / QDataStream, times faster", "bench_serializer",
         "serializer/read/ours", "serializer/read/qdatastream", "≥ 2", faster=True),
    pair("compress / zlib itself", "bench_serializer", "zlib/compress/ours",
         "zlib/compress/zlib", "≈ 1"),
    pair("put into the store / prepared statements", "bench_store", "store/put/ours",
         "store/put/sqlite", "≤ 1.2"),
    pair("get from the store / prepared statements", "bench_store", "store/get/ours",
         "store/get/sqlite", "≤ 1.2"),
]

HEADER = """# Performance

Made by `./bench --update` on two shared cores. Each pair runs in one program (or alternately,
for launches) and is compared by medians of CPU time; launches, the features and the GETs by wall
time.

"""


def main():
    arguments = sys.argv[1:]
    update = "--update" in arguments
    wanted = [a for a in arguments if not a.startswith("--")]
    if wanted and not any(w in run.title for run in ROWS for w in wanted):
        sys.exit("no row has " + " or ".join(wanted) + " in its name; there are: "
                 + "; ".join(run.title for run in ROWS))
    lines = ["| what | here | peer | ratio | goal |", "| --- | --- | --- | --- | --- |"]
    failed = False
    for run in ROWS:
        if wanted and not any(w in run.title for w in wanted):
            continue
        try:
            for row in run():
                lines.append("| " + " | ".join(row) + " |")
                print(lines[-1], flush=True)
        except (RuntimeError, subprocess.CalledProcessError, OSError, KeyError) as e:
            print(f"{run.title}: could not be measured: {e}", file=sys.stderr)
            failed = True
    if update and not wanted and not failed:
        # What was measured by hand stands below the table, and stays.
        with open("docs/performance.md", encoding="utf-8") as page:
            by_hand = page.read().partition("\n## ")
        with open("docs/performance.md", "w", encoding="utf-8") as page:
            page.write(HEADER + "\n".join(lines) + "\n" + by_hand[1] + by_hand[2])
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
