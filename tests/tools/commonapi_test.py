"""Runs the command line as its users do: commonapi_test.py SOURCES COMMAND PLUGIN"""
import os
import pty
import subprocess
import sys
import tempfile
import unittest

_, command, plugin = sys.argv[1:]
KEY = ("--password-env", "PW")


def run(*arguments, input=b"", password="secret", stdout=subprocess.PIPE, **options):
    result = subprocess.run([command, *arguments], input=input, stdout=stdout,
                            stderr=subprocess.PIPE, env=os.environ | {"PW": password}, **options)
    return result.returncode, result.stdout, result.stderr.decode()


class Command(unittest.TestCase):
    def test_values_come_back(self):
        lines = "\n".join(("a", "", "Grüße", "x" * 100000, "12345678", " blank ")).encode()
        code, encrypted, errors = run("encrypt", *KEY, input=lines)
        self.assertEqual((code, errors), (0, ""))
        self.assertRegex(encrypted, rb"\A(([0-9A-F]{16})*\n){6}\Z")
        self.assertEqual(run("decrypt", *KEY, input=encrypted.lower()), (0, lines + b"\n", ""))
        self.assertEqual(run("encrypt", *KEY, "a", "", "Grüße")[1].splitlines(),
                         encrypted.splitlines()[:3])

    def test_sealed_keys(self):
        with tempfile.NamedTemporaryFile() as file:
            file.write(run("seal-key", *KEY)[1])
            file.flush()
            sealed = ("--password-file", file.name)
            self.assertEqual(run("seal-key", "--open", *sealed)[1], b"secret\n")
            self.assertEqual(run("encrypt", "--sealed", *sealed, "x"), run("encrypt", *KEY, "x"))

    def test_refused_values_leave_the_rest_unharmed(self):
        good, line_end = (run("encrypt", *KEY, text)[1].strip() for text in ("good", "two\nlines"))
        unfit = "holds a zero character or a line end, or was encrypted with another password"
        for verb, bad, complaint in (
                ("encrypt", b"a\0b", "holds a zero character, at which it would end"),
                ("encrypt", b"x" * (2**20 + 1), "longer than 1048576 characters"),
                ("decrypt", b"0" * 24, "not a multiple of 16 digits long"),
                ("decrypt", good[:-1] + b"G", "no hexadecimal digit at character 16"),
                ("decrypt", line_end, unfit), ("decrypt", good * 2, unfit)):
            value, result = (b"good", good) if verb == "encrypt" else (good, b"good")
            self.assertEqual(run(verb, *KEY, input=b"\n".join((value, bad, value))),
                             (1, (result + b"\n") * 2, f"commonapi: line 2: {complaint}\n"))

    def test_passwords_that_cannot_be_had(self):
        for arguments, password, complaint in (
                (KEY, "", "the password is empty"),
                (("--password-env", "NO_SUCH"), "", "the environment has no variable NO_SUCH"),
                (("--password-file", "/no/such"), "", "/no/such: cannot be read"),
                ((*KEY, "--sealed"), "abc", "this is no sealed key in hexadecimal"),
                ((), "", "no terminal to ask at; name a source with --password-file or"
                         " --password-env")):
            self.assertEqual(run("encrypt", *arguments, "x", password=password,
                                 start_new_session=True), (1, b"", f"commonapi: {complaint}\n"))

    def test_the_prompt_does_not_echo(self):
        shown = bytearray()

        def answer(terminal):
            shown.extend(data := os.read(terminal, 100))
            if shown.endswith(b"Password: "):
                os.write(terminal, b"secret\n")
            return data

        self.assertEqual(pty.spawn([command, "encrypt", "a"], answer), 0)
        self.assertNotIn(b"secret", shown)
        self.assertIn(run("encrypt", *KEY, "a")[1].strip(), shown)

    def test_failures_of_the_system_are_reported(self):
        with open("/dev/full", "wb") as full:
            self.assertEqual(run("encrypt", *KEY, "x", stdout=full),
                             (1, None, "commonapi: the output cannot be written\n"))
        code, output, errors = run("plugin", plugin, "absent.so", cwd="/")
        self.assertEqual((code, output.decode()), (1, f"{plugin}: Text Statistics 1.0\n"))
        self.assertEqual(errors, "commonapi: /absent.so: cannot open shared object file: No such file"
                                 " or directory\n")


unittest.main(argv=sys.argv[:1])
