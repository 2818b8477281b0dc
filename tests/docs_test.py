"""Compares what the pages show with the programs that are built and what those print or log:
docs_test.py SOURCE PROGRAMS PLUGIN"""
import pathlib
import re
import subprocess
import sys
import tempfile

source, programs, plugin = map(pathlib.Path, sys.argv[1:])
failures = []
with tempfile.TemporaryDirectory() as folder:
    log = pathlib.Path(folder, "log")
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
sys.exit("\n".join(failures) or 0)
