"""Runs the command line as its users do: commonapi_test.py SOURCES COMMAND PLUGIN"""
import os
import pathlib
import pty
import random
import resource
import signal
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


def at_terminal(script, answers):
    """Runs a shell there; each prompt gets its answer."""
    shown = b""

    def answer(terminal):
        nonlocal shown
        data = os.read(terminal, 10000)
        shown += data
        for prompt in answers:
            if shown.endswith(prompt):
                os.write(terminal, answers[prompt])
        return data

    status = pty.spawn(["sh", "-c", script.replace("commonapi", command)], answer)
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
        digits = random.Random(1).randbytes(8 * 100000).hex(" ", 8).replace(" ", "\n")
        wrong_password = run("decrypt", *KEY, input=digits)[1]
        self.assertLess(wrong_password.count("\n"), 100)

    def test_passwords_that_cannot_be_had(self):
        for arguments, password, complaint in (
                (KEY, "", "the password is empty"),
                (("--password-env", "NO_SUCH"), "", "the environment has no variable NO_SUCH"),
                (("--password-file", "/"), "", "/: Is a directory"),
                ((*KEY, "--sealed"), "abc", "this is no sealed key in hexadecimal")):
            with self.subTest(arguments):
                self.assertEqual(run("encrypt", *arguments, "x", password=password),
                                 (1, "", f"commonapi: {complaint}\n"))

    def test_long_passwords_are_pointed_out(self):
        remark = "commonapi: only the first 72 bytes of the password count\n"
        for verb in (["encrypt", "a"], ["seal-key"]):
            with self.subTest(verb):
                self.assertEqual(run(*verb, *KEY, password="x" * 72)[2], "")
                self.assertEqual(run(*verb, *KEY, password="x" * 73)[2], remark)

    def test_passwords_are_typed_unseen_and_twice_to_encrypt(self):
        encrypted = run("encrypt", *KEY, "a")[1]
        sealed = run("seal-key", *KEY)[1].encode()
        ask, again, secret = b"Password to encrypt with: ", b"The same again: ", b"secret\n"
        for script, answers, code, output in (
                (f"decrypt {encrypted}", {b"Password to decrypt with: ": secret}, 0, "a\n"),
                ("encrypt --sealed a", {b"Sealed key to encrypt with: ": sealed}, 0, encrypted),
                ("encrypt a", {ask: secret, again: secret}, 0, encrypted),
                ("encrypt a", {ask: secret, again: b"secrets\n"},
                 1, "commonapi: the two are not the same\n")):
            with self.subTest(answers):
                prompts = "".join(prompt.decode() + "\n" for prompt in answers)
                self.assertEqual(at_terminal(f"commonapi {script}", answers), (code, prompts + output))

    def test_mistakes_name_the_culprit_and_show_the_usage(self):
        for argument, complaint in (("\x1b", "unexpected argument '\\x1B'"),
                                    ("--password-file", "--password-file: needs a FILE")):
            with self.subTest(argument):
                self.assertEqual(run("seal-key", argument),
                                 (2, "", f"commonapi: {complaint}\n"
                                         "Usage: commonapi seal-key [OPTION...]\n"
                                         "See commonapi seal-key --help.\n"))

    def test_failures_of_the_system_are_reported(self):
        for arguments in (["encrypt", *KEY, "a"], ["encrypt", *KEY], ["decrypt", *KEY, ""],
                          ["seal-key", *KEY], ["plugin", plugin], ["--help"], ["--version"], []):
            with self.subTest(arguments), open("/dev/full", "wb") as full:
                self.assertEqual(run(*arguments, input="a", stdout=full),
                                 (1, "", "commonapi: the output cannot be written\n"))

    def test_plugins_say_who_they_are(self):
        code = pathlib.Path(plugin).read_bytes()
        file("nameless.so", code.replace(b"_KeldaSO", b"_LDldaSO"))  # of the same hash
        file("rude.so", code.replace(b"Text Statistics", b"T\033[2J\tStatistic"))
        self.assertEqual(run("plugin", "absent.so", plugin, "nameless.so", "rude.so"),
                         (1, f"{plugin}: Text Statistics 1.0\nnameless.so: publishes no name\n"
                             "rude.so: T\\x1B[2J\\x09Statistic 1.0\n",
                          "commonapi: ./absent.so: cannot open shared object file: "
                          "No such file or directory\n"))

    def test_plugins_that_end_the_process_are_named(self):
        hook, code = b"__gmon_start__\0", pathlib.Path(plugin).read_bytes()
        for ending, end in ((b"exit", "the process while it was loaded"), (b"abort", "by Aborted")):
            file("fatal.so", code.replace(hook, ending.ljust(len(hook), b"\0")))  # called first
            with self.subTest(ending):
                self.assertEqual(run("plugin", plugin, "fatal.so", plugin),
                                 (1, f"{plugin}: Text Statistics 1.0\n" * 2,
                                  f"commonapi: fatal.so: ended {end}\n"))

    def test_progress_is_shown_at_a_terminal_and_no_core_file_left(self):
        master, terminal = pty.openpty()
        hard = resource.getrlimit(resource.RLIMIT_CORE)[1]
        resource.setrlimit(resource.RLIMIT_CORE, (hard, hard))
        process = subprocess.Popen([command, "encrypt", *KEY], stdin=subprocess.PIPE,
                                   stdout=subprocess.PIPE, stderr=terminal,
                                   env=os.environ | {"PW": "secret"})
        for _ in range(2):
            process.stdin.write(b"value\n" * 1024)
            process.stdin.flush()
            process.stdout.read(1)
            time.sleep(1)  # after which it begins
        self.assertIn(b"\r2048 values", os.read(master, 100))
        process.send_signal(signal.SIGQUIT)
        self.assertFalse(os.WCOREDUMP(os.waitpid(process.pid, 0)[1]))


with tempfile.TemporaryDirectory() as folder:
    os.chdir(folder)
    unittest.main(argv=sys.argv[:1])
