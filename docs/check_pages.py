"""Compares what the pages show with the programs that are built and what those print or log, the
options of the command with its manual and completion, and the paper sizes with what their script and
the standards say: check_pages.py SOURCE PROGRAMS PLUGIN COMMAND"""
import pathlib
import re
import subprocess
import sys
import tempfile

source, programs, plugin, command = map(pathlib.Path, sys.argv[1:])
failures = []
with tempfile.TemporaryDirectory() as folder:
    program = (source / "examples/first_program.cpp").read_text()
    output = subprocess.check_output([programs / "first_program"], text=True, cwd=folder)
    message = output.splitlines()[0]
    page = (source / "README.md").read_text()
    if f"```cpp\n{program}```" not in page or f"It prints `{message}`" not in page:
        failures.append(f"first_program: {output}")
    log = pathlib.Path(folder, "first_program.log")
    if f"Greeter:  {message}\n" not in log.read_text():
        failures.append(f"first_program logs: {log.read_text()}")
    for name, *arguments in (("plugins", plugin), ("paper_sizes", source / "examples/media.tsv"),
                             ("encryption",), ("values",), ("fatal_signals", log), ("logging", log)):
        page = (source / f"docs/{name}.md").read_text()
        program = (source / f"examples/{name}.cpp").read_text()
        output = subprocess.check_output([programs / name, *arguments], text=True)
        shown = re.findall(r"```text\n(.*?)```", page, re.DOTALL)
        if log in arguments:
            output = re.sub(r"\d\d:\d\d:\d\d", "09:41:07", log.read_text())[-len(shown[0]):]
        if shown != [output] or f"```cpp\n{program}```" not in page:
            failures.append(f"{name}:\n{output}")

def shown_by_help(pattern, *arguments):
    text = subprocess.check_output([command, *arguments, "--help"], text=True)
    return set(re.findall(pattern, text, re.MULTILINE))


words = shown_by_help(r"^  ([a-z-]+) ")
words = words.union(*(shown_by_help(r"--[a-z-]+", name) for name in words))
for file in ("commonapi.1", "commonapi.bash"):
    text = (source / "tools" / file).read_text().replace("\\-", "-")
    failures += [f"{file} lacks {word}" for word in words if word not in text]
if not words >= {"encrypt", "decrypt", "seal-key", "plugin", "--help"}:
    failures.append(f"the help has only {words}")

kept = (source / "examples/media.tsv").read_text()
if kept != subprocess.check_output([sys.executable, source / "scripts/generate_media.py"], text=True):
    failures.append("media.tsv is not what its script makes")
PUBLISHED = {"A4": (210, 297), "A7": (74, 105), "B4": (250, 353), "B10": (31, 44),
             "JIS B5": (182, 257), "Letter": (215.9, 279.4), "Legal": (215.9, 355.6)}
found = {name: (float(width), float(height)) for name, _, _, width, height in
         (line.split("\t") for line in kept.splitlines() if not line.startswith("#"))}
failures += [name for name, size in PUBLISHED.items() if found.get(name) != size]
sys.exit("\n".join(failures) or 0)
