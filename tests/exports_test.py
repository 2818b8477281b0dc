"""Compares what the shared object exports with the allow-list: exports_test.py NM MAP LIBRARY"""
import re
import subprocess
import sys

nm, allow_list, library = sys.argv[1:]
listing = subprocess.run([nm, "-D", "--demangle", "--defined-only", library], check=True,
                         capture_output=True, text=True).stdout
symbols = [line.split(maxsplit=2)[1:] for line in listing.splitlines()]
exported = {name for _, name in symbols}
unique = sorted(name for kind, name in symbols if kind == "u")
allowed = {quoted or plain for quoted, plain in
           re.findall(r'^\s+(?:"(.+)"|(\w+));$', open(allow_list).read(), re.MULTILINE)}
for title, names in (("exported by accident", exported - allowed),
                     ("listed but not exported", allowed - exported),
                     ("keeps the library from being unloaded", unique)):
    for name in sorted(names):
        print(f"{title}: {name}")
sys.exit(exported != allowed or bool(unique))
