"""Runs the command line as its users do: commonapi_test.py SOURCES COMMAND PLUGIN"""
import os
import pathlib
import pty
import re
import subprocess
import sys
import tempfile
import time
import unittest

_, command, plugin = sys.argv[1:]
KEY = ("--password-env", "PW")


def run(*arguments, input="", password="secret", stdout=subprocess.PIPE, **options):
    result = subprocess.run([command, *arguments], input=input.encode(errors="surrogateescape"),
                            stdout=stdout, stderr=subprocess.PIPE,
                            env=os.environ | {"PW": password}, **options)
    return (result.returncode, (result.stdout or b"").decode(errors="surrogateescape"),
            result.stderr.decode())


def at_terminal(arguments, *answers):
    """Each prompt gets the next answer."""
    shown = b""
    left = iter(answers)

    def answer(terminal):
        nonlocal shown
        data = os.read(terminal, 10000)
        shown += data
        if shown.endswith(b": "):
            os.write(terminal, next(left, b""))
        return data

    status = pty.spawn([command, *arguments], answer)
    return os.waitstatus_to_exitcode(status), shown.decode().replace("\r", "")


def file(name, content):
    os.umask(0o077)
    pathlib.Path(name).write_bytes(content)
    return name


class Command(unittest.TestCase):
    def test_values_come_back_under_a_plain_and_a_sealed_key(self):
        lines = "\n".join(("a", "", "Grüße", "x" * 2**20, "12345678", " blank\t", "世界 aΩ"))
        code, encrypted, errors = run("encrypt", *KEY, input=lines)
        self.assertEqual((code, errors), (0, ""))
        self.assertRegex(encrypted, r"\A(([0-9A-F]{16})*\n){7}\Z")
        sealed = ("--password-file", file("sealed", run("seal-key", *KEY)[1].encode()))
        self.assertEqual(run("seal-key", "--open", *sealed)[1], "secret\n")
        self.assertEqual(run("decrypt", "--sealed", *sealed, input=encrypted.lower()),
                         (0, lines + "\n", ""))

    def test_refused_values_leave_the_rest_unharmed(self):
        good = run("encrypt", *KEY, "good")[1].strip()
        for verb, bad, complaint in (
                ("encrypt", "a\0b", "holds a zero character, at which it would end"),
                ("decrypt", good * (2**17 + 1), "longer than 1048576 characters"),
                ("decrypt", "0" * 24, "not a multiple of 16 digits long"),
                ("decrypt", good[:-1] + "G", "no hexadecimal digit at character 16")):
            value, result = ("good", good) if verb == "encrypt" else (good, "good")
            with self.subTest(verb, bad=bad[:30]):
                self.assertEqual(run(verb, *KEY, input="\n".join((value, bad, value))),
                                 (1, f"{result}\n" * 2, f"commonapi: line 2: {complaint}\n"))

    def test_what_is_no_text_decrypts_only_as_it_is(self):
        for value, remark in (("a\r", "carriage return"), ("\x1b[1m", "no text"), ("a\nb", "no text"),
                              ("Latin-1 \udcfc", "no text"), ("overlong \udcc0\udcaf", "no text")):
            with self.subTest(value):
                code, encrypted, errors = run("encrypt", *KEY, value)
                self.assertRegex(errors, rf"\Acommonapi: argument 1: .*{remark}.*\n\Z")
                self.assertEqual(run("decrypt", *KEY, encrypted.strip())[:2], (1, ""))
                self.assertEqual(run("decrypt", "--raw", *KEY, encrypted.strip()),
                                 (0, value + "\n", ""))

    def test_passwords_that_cannot_be_had(self):
        for arguments, password, complaint in (
                (KEY, "", "the password is empty"),
                (("--password-env", "NO_SUCH"), "", "the environment has no variable NO_SUCH"),
                ((*KEY, "--sealed"), "abc", "this is no sealed key in hexadecimal")):
            with self.subTest(arguments):
                self.assertEqual(run("encrypt", *arguments, "x", password=password),
                                 (1, "", f"commonapi: {complaint}\n"))

    def test_passwords_are_typed_unseen_and_twice_to_encrypt(self):
        prompts = "Password to encrypt with: \nThe same again: \n"
        for again, code, output in (
                (b"secret\n", 0, run("encrypt", *KEY, "a")[1]),
                (b"secrets\n", 1, "commonapi: the two are not the same\n")):
            with self.subTest(again):
                self.assertEqual(at_terminal(["encrypt", "a"], b"secret\n", again),
                                 (code, prompts + output))

    def test_mistakes_name_the_culprit_and_show_the_usage(self):
        for arguments, complaint in ((["seal-key", "\x1b"], "unexpected argument '\\x1B'"),
                                     (["seal-key", "--no"], "unknown option '--no'"),
                                     (["seal"], "unknown command 'seal'")):
            with self.subTest(arguments):
                name = " ".join(["commonapi", *arguments[:-1]])
                code, output, errors = run(*arguments)
                self.assertEqual((code, output), (2, ""))
                self.assertRegex(errors, rf"\Acommonapi: {re.escape(complaint)}\n"
                                         rf"Usage: {name} .*\nSee {name} --help\.\n\Z")

    def test_failures_of_the_system_are_reported(self):
        for arguments in (["encrypt", *KEY, "a"], ["encrypt", *KEY], ["decrypt", *KEY, ""],
                          ["seal-key", *KEY], ["plugin", plugin], ["--help"], ["--version"], []):
            with self.subTest(arguments), open("/dev/full", "wb") as full:
                self.assertEqual(run(*arguments, input="a", stdout=full),
                                 (1, "", "commonapi: the output cannot be written\n"))

    def test_plugins_say_who_they_are(self):
        code = pathlib.Path(plugin).read_bytes()
        file("nameless.so", code.replace(b"_KeldaSO", b"_Nothing"))
        file("rude.so", code.replace(b"Text Statistics", b"T\033[2J\tStatistic"))
        self.assertEqual(run("plugin", "absent.so", plugin, "nameless.so", "rude.so"),
                         (1, f"{plugin}: Text Statistics 1.0\nnameless.so:\n"
                             "rude.so: T\\x1B[2J\\x09Statistic 1.0\n",
                          "commonapi: ./absent.so: cannot open shared object file: "
                          "No such file or directory\n"))

    def test_progress_is_shown_at_a_terminal(self):
        master, terminal = pty.openpty()
        process = subprocess.Popen([command, "encrypt", *KEY], stdin=subprocess.PIPE,
                                   stdout=subprocess.PIPE, stderr=terminal,
                                   env=os.environ | {"PW": "secret"})
        for _ in range(2):
            process.stdin.write(b"value\n" * 1024)
            process.stdin.flush()
            process.stdout.read(1)
            time.sleep(1)  # after which it begins
        self.assertIn(b"\r2048 values", os.read(master, 100))
        process.communicate()


with tempfile.TemporaryDirectory() as folder:
    os.chdir(folder)
    unittest.main(argv=sys.argv[:1])
