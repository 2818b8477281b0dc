"""Runs the command line as its users do: commonapi_test.py COMMAND SOURCES PLUGIN"""
import os
import pathlib
import pty
import re
import subprocess
import sys
import tempfile
import unittest

command, sources, plugin = sys.argv[1], pathlib.Path(sys.argv[2]), sys.argv[3]


def run(*arguments, input=b"", password="secret", **options):
    result = subprocess.run([command, *arguments], input=input, stdout=subprocess.PIPE,
                            stderr=subprocess.PIPE, env=os.environ | {"PW": password}, **options)
    return result.returncode, result.stdout, result.stderr.decode()


class Command(unittest.TestCase):
    def test_values_come_back(self):
        values = [b"a", b"", "Grüße".encode(), b"x" * 100000, b"12345678", b" blank "]
        lines = b"\n".join(values)
        code, encrypted, errors = run("encrypt", "--password-env", "PW", input=lines)
        self.assertEqual((code, errors), (0, ""))
        self.assertRegex(encrypted, rb"\A(([0-9A-F]{16})*\n){6}\Z")
        self.assertEqual(run("decrypt", "--password-env", "PW", input=encrypted.lower()),
                         (0, lines + b"\n", ""))
        self.assertEqual(run("encrypt", "--password-env", "PW", values[0], values[2])[1],
                         b"".join(encrypted.splitlines(True)[:3:2]))

    def test_sealed_keys(self):
        code, sealed, _ = run("seal-key", "--password-env", "PW")
        with tempfile.NamedTemporaryFile() as file:
            file.write(sealed)
            file.flush()
            self.assertEqual(run("seal-key", "--open", "--password-file", file.name)[1], b"secret\n")
            self.assertEqual(run("encrypt", "--sealed", "--password-file", file.name, "value"),
                             run("encrypt", "--password-env", "PW", "value"))

    def test_refused_values_leave_the_rest_unharmed(self):
        _, good, _ = run("encrypt", "--password-env", "PW", "good")
        _, line_end, _ = run("encrypt", "--password-env", "PW", "two\nlines")
        padded = good.strip() * 2
        for verb, bad, complaint in (
                ("encrypt", b"a\0b", "holds a zero character, at which it would end"),
                ("encrypt", b"x" * (2**20 + 1), "longer than 1048576 characters"),
                ("decrypt", b"0" * 24, "not a multiple of 16 digits long"),
                ("decrypt", good.strip()[:-1] + b"G", "no hexadecimal digit at character 16"),
                ("decrypt", line_end.strip(), "holds a zero character or a line end, or was encrypted"
                                              " with another password"),
                ("decrypt", padded, "holds a zero character or a line end, or was encrypted with"
                                    " another password")):
            value = b"good" if verb == "encrypt" else good.strip()
            code, output, errors = run(verb, "--password-env", "PW",
                                       input=b"\n".join((value, bad, value)))
            self.assertEqual((code, errors), (1, f"commonapi: line 2: {complaint}\n"))
            self.assertEqual(output, (good if verb == "encrypt" else b"good\n") * 2)

    def test_passwords_that_cannot_be_had(self):
        for arguments, password, complaint in (
                (("--password-env", "PW"), "", "the password is empty"),
                (("--password-env", "NO_SUCH"), "", "the environment has no variable NO_SUCH"),
                (("--password-file", "/no/such"), "", "/no/such: cannot be read"),
                (("--password-env", "PW", "--sealed"), "abc", "this is no sealed key in hexadecimal"),
                ((), "", "no terminal to ask at; name a source with --password-file or"
                         " --password-env")):
            self.assertEqual(run("encrypt", *arguments, "x", password=password,
                                 start_new_session=True), (1, b"", f"commonapi: {complaint}\n"))

    def test_the_prompt_does_not_echo(self):
        child, terminal = pty.fork()
        if child == 0:
            os.execv(command, [command, "encrypt", "a"])
        shown = b""
        while not shown.endswith(b"Password: "):
            shown += os.read(terminal, 100)
        os.write(terminal, b"secret\n")
        try:
            while data := os.read(terminal, 100):
                shown += data
        except OSError:
            pass
        self.assertEqual(os.waitpid(child, 0)[1], 0)
        self.assertNotIn(b"secret", shown)
        self.assertIn(run("encrypt", "--password-env", "PW", "a")[1].strip(), shown)

    def test_a_full_disk_is_an_error(self):
        with open("/dev/full", "wb") as full:
            result = subprocess.run([command, "encrypt", "--password-env", "PW", "x"], stdout=full,
                                    stderr=subprocess.PIPE, env=os.environ | {"PW": "secret"})
        self.assertEqual((result.returncode, result.stderr),
                         (1, b"commonapi: the output cannot be written\n"))

    def test_plugins(self):
        code, output, errors = run("plugin", plugin, "absent.so", cwd="/")
        self.assertEqual((code, output.decode()), (1, f"{plugin}: Text Statistics 1.0\n"))
        self.assertEqual(errors, "commonapi: /absent.so: cannot open shared object file: No such file"
                                 " or directory\n")

    def test_manual_and_completion_know_every_option(self):
        texts = [(sources / "tools" / name).read_text().replace("\\-", "-")
                 for name in ("commonapi.1", "commonapi.bash")]
        names = set(re.findall(r"^  ([a-z-]+) ", run("--help")[1].decode(), re.MULTILINE))
        self.assertGreaterEqual(names, {"encrypt", "decrypt", "seal-key", "plugin"})
        options = {option for name in names
                   for option in re.findall(r"--[a-z-]+", run(name, "--help")[1].decode())}
        for word in names | options:
            for text in texts:
                self.assertIn(word, text)


unittest.main(argv=sys.argv[:1])
