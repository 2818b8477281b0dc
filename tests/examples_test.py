"""Runs the sample programs as a user would: examples_test.py SOURCES PROGRAMS"""
import pathlib
import subprocess
import sys
import tempfile
import unittest

sources, programs = (pathlib.Path(argument) for argument in sys.argv[1:])
settings = sources / "examples/data/client.conf"
text = sources / "examples/data/languages.txt"


class Examples(unittest.TestCase):
    def setUp(self):
        holder = tempfile.TemporaryDirectory()
        self.addCleanup(holder.cleanup)
        self.folder = pathlib.Path(holder.name)

    def run_program(self, name, *arguments):
        return subprocess.run([programs / name, *arguments], cwd=self.folder, capture_output=True,
                              text=True)

    def test_client_round_trips_the_shipped_text(self):
        result = self.run_program("client", settings, text, "--media", sources / "examples/media.tsv",
                                  "--plugin", programs / "plugin/text_statistics.so")
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        content = text.read_bytes()
        self.assertEqual((self.folder / "copy.txt").read_bytes(), content)
        self.assertEqual((self.folder / "copy.hex").read_text(), content.hex().upper())
        log = (self.folder / "client.log").read_text()
        words = len(content.split())
        for line in ("Client:  Greeting: Good morning, 世界", "JIS B5 is 516 by 729 points",
                     "text_statistics.so - Text Statistics 1.0",
                     f"The plug-in says: {len(content.decode())} characters, {words} words"):
            self.assertIn(line + "\n", log)
        self.assertIn(f"{len(content)} bytes hold {len(content.decode())} characters", log)

    def test_client_reports_its_crash(self):
        self.assertEqual(self.run_program("client", settings, text, "--crash").returncode, 0)
        self.assertIn("Signal Code:       Address not mapped to object\n",
                      (self.folder / "client.log").read_text())

    def test_client_refuses_bad_input_in_one_line(self):
        for content, complaint in ((b"Gr\xc3", "the text ends inside a character"),
                                   (b"\xf0\x9f\x98", "the text ends inside a character"),
                                   (b"\xf8\x88\x80", "the text ends inside a character"),
                                   (b"Gr\xfc\xdfe", "not UTF-8 text"),
                                   (b"a\0b", "not UTF-8 text")):
            path = self.folder / "input"
            path.write_bytes(content)
            result = self.run_program("client", settings, path)
            self.assertEqual(result.returncode, 1)
            self.assertEqual(result.stderr, f"client: {path}: {complaint}\n")
            self.assertFalse((self.folder / "copy.txt").exists())
        path.write_bytes(b"a = 1\nno separator\n")
        self.assertEqual(self.run_program("client", path, text).stderr,
                         f"client: {path}:2: no '=' in this line\n")
        self.assertEqual(self.run_program("client", settings, "absent").stderr,
                         "client: absent: cannot be read\n")

    def test_first_program_is_the_one_in_the_readme(self):
        code = (sources / "examples/first_program.cpp").read_text()
        self.assertIn(f"```cpp\n{code}```", (sources / "README.md").read_text())
        result = self.run_program("first_program")
        self.assertEqual(result.stdout, "9 characters: Grüße, 世界\n")
        self.assertIn("Greeter:  9 characters", (self.folder / "first_program.log").read_text())


unittest.main(argv=sys.argv[:1])
