"""Prints values as users of the installed library do: check_gdb.py SOURCES BUILD LIB COMPILER FLAG..."""
import subprocess
import sys
import tempfile

_, build, lib, compiler, *flags = sys.argv[1:]
PROGRAM = """#include <CommonAPI/attribute_map.h>
#include <CommonAPI/byte_array.h>
int main() { ByteArray nothing, bytes; bytes.append("a\\0ü", 4); UnicodeString neither, wide(L"Grüße");
    UnicodeString both(L"世"); both.c_str(); AttributeMap map; map["ü"] = "5"; map["C"]; __builtin_trap(); }"""
EXPECTED = r"""nothing = ByteArray of length 0
bytes = ByteArray of length 4 = {hexadecimal = 6100C3BC, text = "a\000ü"}
neither = UnicodeString, no form
wide = UnicodeString, wide form only = {wide = L"Grüße"}
both = UnicodeString, both forms = {wide = L"世", narrow = "世"}
map = AttributeMap of length 2 = {["C"] = UnicodeString, no form, ["ü"] = UnicodeString, narrow form only = {narrow = "5"}}
$1 = ByteArray of length 4 = {hexadecimal = 6100..., """
with tempfile.TemporaryDirectory() as place:
    subprocess.check_output(["cmake", "--install", build, "--strip", "--prefix", place])
    subprocess.run([compiler, *" ".join(flags).split(), "-g", "-O0", "-fno-eliminate-unused-debug-types",
                    "-xc++", "-", "-Iinclude", f"-L{lib}", f"-Wl,-rpath,{place}/{lib}", "-lCommonAPI"],
                   input=PROGRAM.encode(), check=True, cwd=place)
    shown = subprocess.check_output(
        ["env", "LC_ALL=C.UTF-8", "gdb", "-nx", "-batch", f"-iex=add-auto-load-safe-path {place}", "-ex=run",
         f"-iex=add-auto-load-scripts-directory {place}/share/gdb/auto-load", "-ex=info locals",
         "-ex=set print elements 2", "-ex=print bytes", "a.out"], cwd=place).decode()
sys.exit(0 if EXPECTED in shown else f"{shown}\nis not:\n{EXPECTED}")
