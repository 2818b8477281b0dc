"""Generates the paper sizes again and compares them with those kept: media_test.py SOURCE"""
import pathlib
import subprocess
import sys

source = pathlib.Path(sys.argv[1])
kept = (source / "examples/media.tsv").read_text()
made = subprocess.check_output([sys.executable, source / "scripts/generate_media.py"], text=True)
# Figures as the standards print them.
PUBLISHED = {"A4": (210, 297), "A7": (74, 105), "B4": (250, 353), "B10": (31, 44),
             "JIS B5": (182, 257), "Letter": (215.9, 279.4), "Legal": (215.9, 355.6)}
found = {name: (float(width), float(height)) for name, _, _, width, height in
         (line.split("\t") for line in kept.splitlines() if not line.startswith("#"))}
wrong = [name for name, size in PUBLISHED.items() if found.get(name) != size]
sys.exit(f"{made}\nwrong: {wrong}" if kept != made or wrong else 0)
