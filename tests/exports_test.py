"""Compares what the shared object exports with the allow-list, and checks that no program of ours
needs the `strtof` that it replaces: exports_test.py NM MAP LIBRARY PROGRAM..."""
import re
import subprocess
import sys

nm, allow_list, library, *programs = sys.argv[1:]


def symbols(file, which):
    """Kind and name of each dynamic symbol."""
    listing = subprocess.run([nm, "-D", "--demangle", which, file], check=True,
                             capture_output=True, text=True).stdout
    return re.findall(r"^[0-9a-f ]* (\w) (.+)$", listing, re.MULTILINE)


defined = symbols(library, "--defined-only")
exported = {name for _, name in defined}
allowed = {quoted or plain for quoted, plain in
           re.findall(r'^\s+(?:"(.+)"|(\w+));$', open(allow_list).read(), re.MULTILINE)}
faults = [f"exported by accident: {name}" for name in exported - allowed]
faults += [f"listed but not exported: {name}" for name in allowed - exported]
faults += [f"keeps the library from being unloaded: {name}" for kind, name in defined if kind == "u"]
faults += [f"needs strtof: {program}" for program in programs
           if any(name.partition("@")[0] == "strtof"
                  for _, name in symbols(program, "--undefined-only"))]
print("\n".join(sorted(faults)))
sys.exit(bool(faults))
