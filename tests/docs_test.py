"""Compares the examples that the pages show with the programs that are built, and runs those:
docs_test.py SOURCE PROGRAMS PLUGIN"""
import pathlib
import re
import subprocess
import sys
import tempfile

source, programs, plugin = map(pathlib.Path, sys.argv[1:])
failures = []


def check(name, what, held):
    if not held:
        failures.append(f"{name}: {what}")


def run(name, *arguments):
    page = (source / f"docs/{name}.md").read_text()
    program = (source / f"examples/{name}.cpp").read_text()
    check(name, "the page shows another program", f"```cpp\n{program}```" in page)
    result = subprocess.run([programs / name, *arguments], capture_output=True, text=True)
    check(name, f"exit status {result.returncode}", result.returncode == 0)
    return result.stdout, re.findall(r"```text\n(.*?)```", page, re.DOTALL)


output, shown = run("plugins", plugin)
check("plugins", output, shown == [output])
for name in ("encryption", "values"):
    output, shown = run(name)
    check(name, output, shown == [output])
output, shown = run("paper_sizes", source / "examples/media.tsv")
check("paper_sizes", output, shown == [output])
with tempfile.TemporaryDirectory() as folder:
    log = pathlib.Path(folder, "log")
    for name in ("fatal_signals", "logging"):
        _, shown = run(name, log)
        lines = re.sub(r"\d\d:\d\d:\d\d", "09:41:07", log.read_text())
        check(name, lines, len(shown) == 1 and lines.endswith(shown[0]))
print(*failures, sep="\n")
sys.exit(bool(failures))
