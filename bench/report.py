#!/usr/bin/env python3
"""Prints each goal and what was measured, and draws the plots: report.py RESULTS.json..."""
import json
import pathlib
import subprocess
import sys

DOCS = pathlib.Path(__file__).resolve().parent.parent / "docs"

# Service, ours, what of it is compared, the least ratio of a peer's time to ours.
GOALS = [
    ("encrypt", "avx512vbmi", "65536", 5.0),
    ("decrypt", "avx512vbmi", "65536", 5.0),
    ("encrypt", "portable", "65536", 1.2),
    ("decrypt", "portable", "65536", 1.2),
    ("key schedule", "ours", "", 1.0),
    ("encrypt a setting", "ours", "", 3.0),
    ("decrypt a setting", "ours", "", 3.0),
]
OURS = {"ours", "avx512vbmi", "portable"}
# Elsewhere every peer, and so the fastest of them.
PEER_OF_GOAL = {service: {"openssl"} for service in
                ("key schedule", "encrypt a setting", "decrypt a setting")}

# File, service, title.
PLOTS = [("blowfish.svg", "encrypt", "Blowfish, encryption in place")]


def load(files):
    """{service: {implementation: {argument: nanoseconds}}}, the best of the repetitions, and where
    and when they were taken."""
    times = {}
    for file in files:
        report = json.loads(pathlib.Path(file).read_text())
        for run in report["benchmarks"]:
            if run["run_type"] != "iteration":
                continue
            service, name, *argument = run["run_name"].split("/")
            best = times.setdefault(service, {}).setdefault(name, {})
            key = "".join(argument)
            best[key] = min(best.get(key, float("inf")), run["cpu_time"])
    return times, report["context"]["date"][:10]


def processor():
    for line in open("/proc/cpuinfo"):
        if line.startswith("model name"):
            return line.partition(":")[2].strip()
    return "unknown processor"


def print_goals(times):
    row = "{:<24} {:<12} {:>10}  {:<10} {:>10} {:>7} {:>6}  {}"
    print(row.format("service", "ours", "ns", "peer", "ns", "ratio", "goal", ""))
    for service, ours, argument, goal in GOALS:
        measured = {name: results[argument] for name, results in times.get(service, {}).items()
                    if argument in results}
        if ours not in measured:
            print(f"{service}: no {ours} here")
            continue
        peers = sorted((time, name) for name, time in measured.items() if name not in OURS)
        compared = PEER_OF_GOAL.get(service)
        least = next((name for _, name in peers if compared is None or name in compared), None)
        for time, name in peers:
            ratio = time / measured[ours]
            verdict = ("met" if ratio >= goal else "NOT MET") if name == least else ""
            print(row.format(f"{service} {argument}".strip(), ours, f"{measured[ours]:.1f}", name,
                             f"{time:.1f}", f"{ratio:.2f}", f"{goal:.1f}" if verdict else "",
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


def main(files):
    times, date = load(files)
    print_goals(times)
    draw(times, date)


main(sys.argv[1:])
