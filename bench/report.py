#!/usr/bin/python3
"""Prints each goal and what was measured, and draws the plots: report.py FOLDER"""
import itertools
import json
import pathlib
import sys

import matplotlib
from matplotlib import pyplot, ticker

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
NAMES = {"botan": "Botan", "crypto++": "Crypto++", "libgcrypt": "Libgcrypt", "nettle": "Nettle",
         "openssl": "OpenSSL"}
UNITS = {1 << 30: "GiB", 1 << 20: "MiB", 1 << 10: "KiB", 1: "B"}
COLOURS = ["#0b62c4", "#0d8a72", "#7a3fc0", "#b3541e", "#a8327e"]  # ours; the peers are grey
GREY = "#5f6b78"
# The background stays opaque, so that a plot can be read wherever it is shown.
IN_THE_DARK = "@media (prefers-color-scheme: dark) { svg { filter: invert(.89) hue-rotate(180deg) } }"
# Texts stay texts, and the same numbers give the same file.
matplotlib.rcParams.update({"svg.fonttype": "none", "svg.hashsalt": "", "font.size": 12,
                            "axes.titlesize": 14, "figure.constrained_layout.w_pad": 0.2,
                            "figure.constrained_layout.h_pad": 0.2})


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


def bytes_text(size, _=None):
    unit = next(unit for unit in (1 << 30, 1 << 20, 1 << 10, 1) if size >= unit)
    return f"{size / unit:g} {UNITS[unit]}"


def put_names(axes, curves):
    """Writes each curve's name beside its end, as far from the other names as it takes."""
    axes.figure.draw_without_rendering()
    height = axes.bbox.height * 72 / axes.figure.dpi  # in points, as sizes of letters are
    to_axes = axes.transData + axes.transAxes.inverted()
    ends = sorted((to_axes.transform(points[-1])[1] * height, points[-1], name, colour)
                  for name, (points, colour) in curves.items())
    places = [end[0] for end in ends]
    gap = 1.3 * matplotlib.rcParams["font.size"]
    for _ in range(1000):
        places[0] = max(places[0], gap / 2)
        for i in range(len(places) - 1):
            lack = max(0, gap - places[i + 1] + places[i])
            places[i] -= lack / 2
            places[i + 1] += lack / 2
    for place, (_, point, name, colour) in zip(places, ends):
        axes.annotate(name, point, (1.04, place / height), textcoords="axes fraction", color=colour,
                      va="center", weight="normal" if colour == GREY else "bold",
                      arrowprops={"arrowstyle": "-", "color": colour, "linewidth": 0.8, "shrinkA": 2,
                                  "shrinkB": 4, "relpos": (0, 0.5)})


def draw_curves(axes, title, subtitle, curves):
    for points, colour in curves.values():
        axes.plot(*zip(*points), color=colour, linewidth=1.4 if colour == GREY else 3, marker="o",
                  markersize=3 if colour == GREY else 5, clip_on=False)
    axes.set_xscale("log")
    axes.set_title(f"{title}\n", loc="left", weight="bold")
    axes.text(0, 1.03, subtitle, transform=axes.transAxes, color=GREY, size="small")
    axes.spines[["top", "right", "left"]].set_visible(False)
    axes.tick_params(length=0)
    axes.grid(axis="y", color="#e2e5e9")
    axes.set_axisbelow(True)


def mark_bytes(axes):
    sizes = [size for size in (1 << power for power in (3, 6, 10, 15, 20, 25, 30))
             if axes.dataLim.x0 <= size <= axes.dataLim.x1]
    axes.set_xticks(sizes, map(bytes_text, sizes))
    axes.minorticks_off()


def save(figure, file):
    figure.savefig(DOCS / file, metadata={"Date": None, "Creator": None})
    drawing = (DOCS / file).read_text()
    (DOCS / file).write_text(drawing.replace("<defs>", f"<style>{IN_THE_DARK}</style>\n <defs>", 1))
    print(f"drawn: docs/{file}")


def draw(times, date):
    for file, service, title in PLOTS:
        if service not in times:
            continue
        ours = dict(zip(sorted(OURS & times[service].keys()), itertools.cycle(COLOURS)))
        curves = {}
        for name, results in times[service].items():
            label = NAMES.get(name, name) if name not in ours else \
                "ours" if name == "ours" else f"ours, {name}"
            points = sorted((int(size), 1000 * int(size) / time) for size, time in results.items())
            curves[label] = points, ours.get(name, GREY)
        figure, axes = pyplot.subplots(figsize=(6.5, 4.2), layout="constrained")
        draw_curves(axes, title, f"MB/s by size of the buffer, more is better. {processor()}, {date}",
                    curves)
        axes.set_ylim(bottom=0)
        mark_bytes(axes)
        put_names(axes, curves)
        save(figure, file)


def draw_growth(file, date):
    times, memory = {}, {}
    for name, *point in (line.split("\t") for line in file.read_text().splitlines()):
        size, time, grown = map(float, point)
        unit = 1e-9 if name.startswith(("log", "map")) else 1
        times.setdefault(name, []).append((size, time * unit))
        if size >= 1 << 20:  # below, pages are too coarse a measure
            memory.setdefault(name, []).append((size, grown))
    counted = {name for name in times if name.startswith(("log", "map"))}
    buffers = times.keys() - counted
    figure, (content, count, beside) = pyplot.subplots(3, figsize=(6.5, 11.5), layout="constrained")
    for axes, title, subtitle, names, points in (
            (content, "Time for a byte", f"by size of the buffer. {processor()}, {date}", buffers,
             times),
            (count, "Time for a log line or a look-up in a map",
             "by number of lines or entries", counted, times),
            (beside, "Memory for a byte: its result, nothing else",
             "bytes beside the input, by size of the buffer", buffers, memory)):
        curves = {name: (points[name], colour)
                  for name, colour in zip(sorted(names & points.keys()), itertools.cycle(COLOURS))}
        draw_curves(axes, title, subtitle, curves)
        if points is times:
            axes.set_yscale("log")
            axes.yaxis.set_major_formatter(ticker.EngFormatter("s") if names is counted else "{x:g} ns")
        else:
            axes.set_ylim(-0.2, 4.5)
            axes.set_yticks(range(5))
        if names is buffers:
            mark_bytes(axes)
        else:
            axes.set_xticks([1, 1e3, 1e6], ["1", "1,000", "1 million"])
            axes.minorticks_off()
        put_names(axes, curves)
    save(figure, "growth.svg")


def main(folder):
    times, date = load(sorted(folder.glob("*.json")))
    print_goals(times)
    draw(times, date)
    if (folder / "growth.tsv").exists():
        draw_growth(folder / "growth.tsv", date)


main(pathlib.Path(sys.argv[1]))
