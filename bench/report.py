#!/usr/bin/env python3
"""Prints each goal and what was measured, and draws the plots: report.py FOLDER"""
import json
import pathlib
import subprocess
import sys

DOCS = pathlib.Path(__file__).resolve().parent.parent / "docs"

# Service, ours, what of it is compared, the least ratio of a peer's time to ours, the peers that the
# goal is held against (none named: all, and so the fastest).
GOALS = [
    ("key schedule", "ours", "", 1.0, "openssl"),
    ("encrypt a setting", "ours", "", 3.0, "openssl"),
    ("decrypt a setting", "ours", "", 3.0, "openssl"),
    ("line below every threshold", "ours", "", 1 / 3, "empty call"),
    ("line filtered by its module", "ours", "", 20.0),
    ("client start", "ours", "", 1 / 1.1),
    ("process start", "ours", "", 1 / 1.1, "without the library"),
    ("getASCIIHex", "ours", "16", 1.0),
]
GOALS += [(direction, kernel, size, goal) for direction in ("encrypt", "decrypt")
          for kernel, sizes, goal in (("avx512vbmi", "65536 1048576", 4.6), ("portable", "65536", 1.2),
                                      ("avx512vbmi", "256 320 384 512 672 768 1024", 1.0),
                                      ("portable", "64 72 128 192 256 320 384 512 672 768 1024", 1.0),
                                      ("portable", "8", 1 / 1.05))
          for size in sizes.split()]
GOALS += [(f"log line, TZ {zone}", "ours", "", goal, peer) for zone in ("set", "unset")
          for goal, peer in ((1.0, "spdlog"), (1 / 1.1, "fwrite + fflush"))]
GOALS += [(service, "ours", size, goal) for size in ("1024", "16384", "1048576")
          for service, goal in (("getASCIIHex", 5.0), ("loadASCIIHex", 10.0))]
GOALS += [(f"{service}, growing", "ours", size, 5.0, "OpenSSL") for size in ("1024", "16384", "1048576")
          for service in ("getASCIIHex", "loadASCIIHex")]
GOALS += [(f"find in {kind} bytes", "ours", size, 1.0) for kind in ("random", "equal")
          for size in ("1", "8", "64")]
GOALS += [(f"{form} of {kind}", "ours", size, goal) for form in ("c_str", "wc_str")
          for kind in ("ASCII", "mixed text")
          for size, goal in (("8", 0.5), ("1024", 1 / 1.15), ("16384", 1 / 1.15), ("65536", 1 / 1.15))]
GOALS += [(f"load {kind}", "ours", size, 1 / 1.1) for kind in ("int", "bool", "text")
          for size in ("8", "1000")]
OURS = {"ours", "avx512vbmi", "portable"}

# File, service, title.
PLOTS = [("blowfish.svg", "encrypt", "Blowfish, encryption in place"),
         ("hexadecimal.svg", "loadASCIIHex", "Hexadecimal text to bytes")]


def load(files):
    """{service: {implementation: {argument: nanoseconds}}}, the best of the repetitions, and where
    and when they were taken."""
    times = {}
    for file in files:
        if file.stat().st_size == 0:  # a filter left it without a case
            continue
        report = json.loads(file.read_text())
        for run in report["benchmarks"]:
            if run["run_type"] != "iteration":
                continue
            run_name, clock, _ = run["run_name"].partition("/manual_time")
            service, name, *argument = run_name.split("/")
            best = times.setdefault(service, {}).setdefault(name, {})
            key = "".join(argument)
            time = run["real_time" if clock else "cpu_time"]
            best[key] = min(best.get(key, float("inf")), time)
    return times, report["context"]["date"][:10]


def processor():
    for line in open("/proc/cpuinfo"):
        if line.startswith("model name"):
            return line.partition(":")[2].strip()
    return "unknown processor"


def print_goals(times):
    row = "{:<28} {:<10} {:>10}  {:<16} {:>10} {:>7} {:>5}  {}"
    print(row.format("service", "ours", "ns", "peer", "ns", "ratio", "goal", ""))
    for service, ours, argument, goal, *against in GOALS:
        measured = {name: results[argument] for name, results in times.get(service, {}).items()
                    if argument in results}
        if ours not in measured:
            print(f"{service}: no {ours} here")
            continue
        peers = sorted((time, name) for name, time in measured.items() if name not in OURS)
        least = next((name for _, name in peers if not against or name in against), None)
        for time, name in peers:
            ratio = time / measured[ours]
            verdict = ("met" if round(ratio, 2) >= round(goal, 2) else "NOT MET") if name == least else ""
            print(row.format(f"{service} {argument}".strip(), ours, f"{measured[ours]:.1f}", name,
                             f"{time:.1f}", f"{ratio:.2f}", f"{goal:.2f}" if verdict else "",
                             verdict))


def draw(times, date):
    for file, service, title in PLOTS:
        if service not in times:
            continue
        curves, data = [], []
        for name, results in times[service].items():
            points = sorted((int(size), 1000 * int(size) / time) for size, time in results.items())
            width = 3 if name in OURS else 1
            curves.append(f"'-' with linespoints linewidth {width} title '{name}'")
            data += [f"{size} {speed}" for size, speed in points] + ["e"]
        script = [f"set terminal svg size 800,500 background 'white'; set output '{DOCS / file}'",
                  f'set title "{title}\\n{processor()}, {date}"',
                  "set logscale x 2; set logscale y; set grid; set key outside",
                  "set xlabel 'bytes'; set ylabel 'MB/s'", "plot " + ", ".join(curves), *data]
        subprocess.run(["gnuplot"], input="\n".join(script), text=True, check=True)
        print(f"drawn: docs/{file}")


def draw_growth(file, date):
    series = {}
    for line in file.read_text().splitlines():
        name, *point = line.split("\t")
        series.setdefault(name, []).append(point)
    buffers = [name for name in series if not name.startswith(("log", "map"))]
    script = [f"set terminal svg size 900,900 background 'white'; set output '{DOCS / 'growth.svg'}'",
              f'set multiplot layout 2,1 title "{processor()}, {date}"',
              "set logscale xy; set format xy '10^{%T}'; set grid; set key outside"]
    for column, names, labels in ((1, series, "set xlabel 'lines, entries or bytes'; set ylabel "
                                              "'nanoseconds per line, look-up or byte'"),
                                  (2, buffers, "set xlabel 'bytes'; set ylabel 'bytes of memory per "
                                               "byte, beside the input'; unset logscale y; "
                                               "set format y '%g'; set yrange [0:5]")):
        script += [labels, "plot " + ", ".join(f"'-' with linespoints title '{name}'" for name in names)]
        for name in names:
            script += [f"{point[0]} {point[column]}" for point in series[name]] + ["e"]
    subprocess.run(["gnuplot"], input="\n".join(script), text=True, check=True)
    print("drawn: docs/growth.svg")


def main(folder):
    times, date = load(sorted(folder.glob("*.json")))
    print_goals(times)
    draw(times, date)
    if (folder / "growth.tsv").exists():
        draw_growth(folder / "growth.tsv", date)


main(pathlib.Path(sys.argv[1]))
