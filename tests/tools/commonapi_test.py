"""Runs the command line as its users do: commonapi_test.py SOURCES COMMAND PLUGIN"""
import os
import pathlib
import pty
import re
import signal
import subprocess
import sys
import tempfile
import unittest

_, command, plugin = sys.argv[1:]
KEY = ("--password-env", "PW")


def run(*arguments, input="", password="secret", stdout=subprocess.PIPE):
    result = subprocess.run([command, *arguments], input=input.encode(errors="surrogateescape"),
                            stdout=stdout, stderr=subprocess.PIPE,
                            env=os.environ | {"PW": password})
    return (result.returncode, (result.stdout or b"").decode(errors="surrogateescape"),
            result.stderr.decode())


def at_terminal(*command_line, answers):
    """Each prompt gets the next answer."""
    shown = bytearray()

    def answer(terminal):
        data = os.read(terminal, 10000)
        shown.extend(data)
        if shown.endswith((b": ", b" values")) and answers:
            os.write(terminal, answers.pop(0))
        return data

    status = pty.spawn(command_line, answer)
    return os.waitstatus_to_exitcode(status), shown.decode().replace("\r\n", "\n")


def file(name, content):
    os.umask(0o077)
    pathlib.Path(name).write_bytes(content)
    return name


class Command(unittest.TestCase):
    def test_values_come_back_under_a_plain_and_a_sealed_key(self):
        lengths = "\u00a0\u07ff\u0800\ud7ff\ue000\uffff\U00010000\U0010ffff"
        lines = "\n".join(("a", "", "x" * 2**20, "12345678", " blank\t", "世界 aΩ", lengths))
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
                ("decrypt", good[:-1] + "G", "no hexadecimal digit at character 16"),
                ("decrypt", ":" + good[1:], "no hexadecimal digit at character 1")):
            value, result = ("good", good) if verb == "encrypt" else (good, "good")
            with self.subTest(verb, bad=bad[:30]):
                self.assertEqual(run(verb, *KEY, input="\n".join((value, bad, value))),
                                 (1, f"{result}\n" * 2, f"commonapi: line 2: {complaint}\n"))

    def test_what_is_no_text_decrypts_only_as_it_is(self):
        for value, remark in (("a\r", "carriage return"), ("\x1b[1m", "no text"), ("a\nb", "no text"),
                              ("Latin-1 \udcfc", "no text"), ("overlong \udcc0\udcaf", "no text"),
                              ("surrogate \udced\udcbf\udcbf", "no text")):
            with self.subTest(value):
                code, encrypted, errors = run("encrypt", *KEY, value)
                self.assertRegex(errors, rf"\Acommonapi: argument 1: .*{remark}.*\n\Z")
                self.assertEqual(run("decrypt", *KEY, encrypted.strip())[:2], (1, ""))
                self.assertEqual(run("decrypt", "--raw", *KEY, encrypted.strip()),
                                 (0, value + "\n", ""))

    def test_passwords_that_do_not_serve_are_pointed_out(self):
        for arguments, password, code, complaint in (
                (KEY, "", 1, "the password is empty"),
                (KEY, "x" * 73, 0, "only the first 72 bytes of the password count"),
                (("--password-env", "NO_SUCH"), "", 1, "the environment has no variable NO_SUCH"),
                (("--password-file", "absent"), "", 1, "absent: No such file or directory"),
                ((*KEY, "--sealed"), "abc", 1, "this is no sealed key in hexadecimal")):
            with self.subTest(complaint):
                self.assertEqual(run("encrypt", *arguments, "", password=password),
                                 (code, "" if code else "\n", f"commonapi: {complaint}\n"))
        self.assertEqual(run("encrypt", *KEY, "", password="x" * 72)[2], "", "of 72 bytes")

    def test_passwords_are_typed_unseen_and_twice_to_encrypt(self):
        prompts = "Password to encrypt with: \nThe same again: \n"
        encrypted = run("encrypt", *KEY, "a")[1]
        for again, code, output in (
                (b"secret\n", 0, encrypted),
                (b"secrets\n", 1, "commonapi: the two are not the same\n")):
            with self.subTest(again):
                self.assertEqual(at_terminal(command, "encrypt", "a", answers=[b"secret\n", again]),
                                 (code, prompts + output))
        sealed = run("seal-key", *KEY)[1].encode()
        self.assertEqual(at_terminal(command, "encrypt", "--sealed", "a", answers=[sealed]),
                         (0, "Sealed key to encrypt with: \n" + encrypted), "asked for once")

    def test_the_terminal_is_left_as_it_was(self):
        prompt = "Password to decrypt with: \n"
        command_line = f"stty -g >before; {command} decrypt ''; stty -g | cmp - before"
        self.assertEqual(at_terminal("sh", "-c", command_line, answers=[b"secret\n"]),
                         (0, prompt + "\n"))
        self.assertEqual(at_terminal(command, "decrypt", "", answers=[b"\3"]),
                         (-signal.SIGINT, prompt))

    def test_help_is_wrapped(self):
        code, output, _ = run("encrypt", "--help")
        self.assertEqual((code, max(map(len, output.splitlines()))), (0, 80))
        self.assertIn("Without any, one value a line from standard input", " ".join(output.split()))

    def test_mistakes_name_the_culprit_and_show_the_usage(self):
        for line, complaint in (("seal-key \x1b", "unexpected argument '\\x1B'"),
                                ("seal-key --password-file", "--password-file: needs a FILE"),
                                ("seal", "unknown command 'seal'")):
            with self.subTest(line):
                name = " ".join(["commonapi", *line.split()[:-1]])
                code, output, errors = run(*line.split())
                self.assertEqual((code, output), (2, ""))
                self.assertRegex(errors, rf"\Acommonapi: {re.escape(complaint)}\n"
                                         rf"Usage: {name} .*\nSee {name} --help\.\n\Z")

    def test_failures_of_the_system_are_reported(self):
        for arguments in (["encrypt", *KEY, "a"], ["encrypt", *KEY], ["decrypt", *KEY, ""],
                          ["seal-key", *KEY], ["plugin", plugin], ["--help"], ["--version"], []):
            with self.subTest(arguments), open("/dev/full", "wb") as full:
                self.assertEqual(run(*arguments, input="a", stdout=full),
                                 (1, "", "commonapi: the output cannot be written\n"))

    def test_plugins_say_who_they_are_and_leave_the_others_unharmed(self):
        code = pathlib.Path(plugin).read_bytes()
        known = f"{plugin}: Text Statistics 1.0\n"
        first = b"__gmon_start__\0"  # is called first
        for name, old, new, output, errors in (
                ("nameless", b"_KeldaSO", b"_LDldaSO", "nameless: publishes no name\n", ""),
                ("rude", b"Text Statistics", b"T\33[2J\t", "rude: T\\x1B[2J\\x09 1.0\n", ""),
                ("end", first, b"exit", "", "end: ended the process while it was loaded\n"),
                ("fatal", first, b"abort", "", "fatal: ended by Aborted\n"),
                ("zeros", code, b"", "", "./zeros: invalid ELF header\n")):
            file(name, code.replace(old, new.ljust(len(old), b"\0")))
            with self.subTest(name):
                self.assertEqual(run("plugin", plugin, name, plugin),
                                 (int(errors != ""), known + output + known,
                                  errors and f"commonapi: {errors}"))

    def test_progress_is_shown_at_a_terminal(self):
        endless = f"ulimit -t 20; yes | PW=secret {command} encrypt --password-env PW >/dev/null"
        _, shown = at_terminal("sh", "-c", endless, answers=[b"\3"])
        self.assertRegex(shown, r"\A\r[1-9]\d* values")
        self.assertEqual(int(shown.split()[0]) % 1024, 0, shown)


with tempfile.TemporaryDirectory() as folder:
    os.chdir(folder)
    unittest.main(argv=sys.argv[:1])
