"""Runs the sample programs as a user would: examples_test.py SOURCES PROGRAMS"""
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

sources, programs = map(pathlib.Path, sys.argv[1:])
settings, text, media = (sources / "examples" / name
                         for name in ("data/client.conf", "data/languages.txt", "media.tsv"))


class Examples(unittest.TestCase):
    def setUp(self):
        os.chdir(self.enterContext(tempfile.TemporaryDirectory()))

    def expect(self, errors, *arguments, program="client"):
        result = subprocess.run([programs / program, *arguments], capture_output=True, text=True,
                                timeout=60)
        self.assertEqual((result.returncode, result.stderr), (bool(errors), errors))

    def test_client_round_trips_the_shipped_text_and_reports_its_crash(self):
        self.expect("", settings, text)
        self.expect("", settings, text, "--media", media, "--plugin",
                    programs / "plugin/text_statistics.so", "--crash")
        content = text.read_bytes()
        length = f"{len(content.decode())} characters"
        self.assertEqual(pathlib.Path("copy.txt").read_bytes(), content)
        self.assertEqual(pathlib.Path("copy.hex").read_text(), content.hex().upper())
        log = pathlib.Path("client.log").read_text()
        lines = ("Client:  Greeting: Good morning, 世界\n", f"{len(content)} bytes hold {length}",
                 "JIS B5 is 516 by 729 points\n", "text_statistics.so - Text Statistics 1.0\n",
                 f"The plug-in says: {length}, {len(content.split())} words\n",
                 "Signal Code:       Address not mapped to object\n")
        self.assertEqual([line for line in lines if line not in log], [])

    def test_client_refuses_bad_input_in_one_line(self):
        for content, complaint in ((b"Gr\xc3", ", or cut inside a character"),
                                   (b"a\xe2\0b", ", or cut inside a character"),
                                   (b"\xe0A", ", or cut inside a character"),
                                   (b"Gr\xfc\xdf und mehr", ""),
                                   (b"a\0b", "")):
            pathlib.Path("input").write_bytes(content)
            self.expect(f"client: input: not UTF-8 text{complaint}\n", settings, "input")
            self.assertFalse(os.path.exists("copy.txt"))
        pathlib.Path("input").write_text("a = 1\nno separator\n")
        self.expect("client: input:2: no '=' in this line\n", "input", text)
        missing = "absent: No such file or directory\n"
        self.expect(f"client: {missing}", settings, "absent")
        self.expect("client: /: Is a directory\n", "/", text)
        self.expect("client: absent/client.log: No such file or directory\n", settings, text,
                    "--output", "absent")
        self.expect(f"paper_sizes: {missing}", "absent", program="paper_sizes")
        self.expect("/: Is a directory\n", "/", program="logging")

    def test_a_plug_in_is_looked_for_where_its_path_says(self):
        os.symlink(programs / "plugin/text_statistics.so", "statistics.so")
        self.expect("", "statistics.so", program="plugins")
        self.expect("plugins: /: cannot read file data: Is a directory\n", "/", program="plugins")
        self.expect(f"client: {os.getcwd()}/absent.so: cannot open shared object file: "
                    "No such file or directory\n", settings, text, "--plugin", "absent.so")


unittest.main(argv=sys.argv[:1])
