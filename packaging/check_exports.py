"""Compares what the shared object exports with the allow-list, and checks that no program of ours
needs the `strtof` that it replaces: check_exports.py SOURCES NM LIBRARY PROGRAM...
Or checks that what a static library was linked into exports nothing of it:
check_exports.py SOURCES NM --none LINKED"""
import re
import subprocess
import sys

sources, nm, library, *programs = sys.argv[1:]


def symbols(file, which):
    """Kind and name of each dynamic symbol."""
    listing = subprocess.check_output([nm, "-D", "--demangle", which, file], text=True)
    return re.findall(r"^[0-9a-f ]* (\w) (.+)$", listing, re.MULTILINE)


allowed = re.findall(r'^\s+"?(\w.*?)"?;$', open(f"{sources}/src/exports.map").read(), re.MULTILINE)
if library == "--none":
    ours = {re.match(r"\w+", name)[0] for name in allowed} - {"operator"} | {"CommonAPI"}
    faults = {f"exported: {name}" for _, name in symbols(*programs, "--defined-only")
              if ours & set(re.findall(r"\w+", name))}
else:
    defined = symbols(library, "--defined-only")
    faults = {f"not both exported and listed: {name}"
              for name in {name for _, name in defined} ^ set(allowed)}
    faults |= {f"keeps the library from being unloaded: {name}" for kind, name in defined if kind == "u"}
    faults |= {f"needs strtof: {program}" for program in programs
               for _, name in symbols(program, "--undefined-only") if name.partition("@")[0] == "strtof"}
sys.exit("\n".join(sorted(faults)) or 0)
