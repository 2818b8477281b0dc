"""Runs the command line as its users do: commonapi_test.py SOURCES COMMAND PLUGIN"""
import os
import pty
import subprocess
import sys
import tempfile
import unittest

_, command, plugin = sys.argv[1:]
KEY = ("--password-env", "PW")


def run(*arguments, input="", password="secret", stdout=subprocess.PIPE, **options):
    result = subprocess.run([command, *arguments], input=input, stdout=stdout, encoding="utf-8",
                            stderr=subprocess.PIPE, env=os.environ | {"PW": password}, **options)
    return result.returncode, result.stdout, result.stderr


class Command(unittest.TestCase):
    def test_values_come_back_under_a_plain_and_a_sealed_key(self):
        lines = "\n".join(("a", "", "Grüße", "x" * 100000, "12345678", " blank "))
        code, encrypted, errors = run("encrypt", *KEY, input=lines)
        self.assertEqual((code, errors), (0, ""))
        self.assertRegex(encrypted, r"\A(([0-9A-F]{16})*\n){6}\Z")
        with tempfile.NamedTemporaryFile(buffering=0) as file:
            file.write(run("seal-key", *KEY)[1].encode())
            sealed = ("--password-file", file.name)
            self.assertEqual(run("seal-key", "--open", *sealed)[1], "secret\n")
            self.assertEqual(run("decrypt", "--sealed", *sealed, input=encrypted.lower()),
                             (0, lines + "\n", ""))
        self.assertEqual(run("encrypt", *KEY, "a", "", "Grüße")[1].splitlines(),
                         encrypted.splitlines()[:3])

    def test_refused_values_leave_the_rest_unharmed(self):
        good, line_end = (run("encrypt", *KEY, text)[1].strip() for text in ("good", "two\nlines"))
        unfit = "holds a zero character or a line end, or was encrypted with another password"
        for verb, bad, complaint in (
                ("encrypt", "a\0b", "holds a zero character, at which it would end"),
                ("encrypt", "x" * (2**20 + 1), "longer than 1048576 characters"),
                ("decrypt", "0" * 24, "not a multiple of 16 digits long"),
                ("decrypt", good[:-1] + "G", "no hexadecimal digit at character 16"),
                ("decrypt", line_end, unfit), ("decrypt", good * 2, unfit)):
            value, result = ("good", good) if verb == "encrypt" else (good, "good")
            self.assertEqual(run(verb, *KEY, input="\n".join((value, bad, value))),
                             (1, f"{result}\n" * 2, f"commonapi: line 2: {complaint}\n"))

    def test_passwords_that_cannot_be_had(self):
        for arguments, password, complaint in (
                (KEY, "", "the password is empty"),
                (("--password-env", "NO_SUCH"), "", "the environment has no variable NO_SUCH"),
                (("--password-file", "/no/such"), "", "/no/such: cannot be read"),
                ((*KEY, "--sealed"), "abc", "this is no sealed key in hexadecimal"),
                ((), "", "no terminal to ask at; name a source with --password-file or"
                         " --password-env")):
            self.assertEqual(run("encrypt", *arguments, "x", password=password,
                                 start_new_session=True), (1, "", f"commonapi: {complaint}\n"))

    def test_the_prompt_does_not_echo(self):
        shown = bytearray()

        def answer(terminal):
            shown.extend(data := os.read(terminal, 100))
            if shown.endswith(b"Password: "):
                os.write(terminal, b"secret\n")
            return data

        self.assertEqual(pty.spawn([command, "encrypt", "a"], answer), 0)
        self.assertNotIn(b"secret", shown)
        self.assertIn(run("encrypt", *KEY, "a")[1].strip().encode(), shown)

    def test_failures_of_the_system_are_reported(self):
        with open("/dev/full", "wb") as full:
            self.assertEqual(run("encrypt", *KEY, "x", stdout=full),
                             (1, None, "commonapi: the output cannot be written\n"))
        self.assertEqual(run("plugin", plugin, "absent.so", cwd="/"),
                         (1, f"{plugin}: Text Statistics 1.0\n", "commonapi: /absent.so: cannot open"
                          " shared object file: No such file or directory\n"))


unittest.main(argv=sys.argv[:1])
