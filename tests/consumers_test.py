"""Uses the library as other projects do: consumers_test.py SOURCES BUILD COMPILER FLAGS

The installed tree is moved, to a path with a blank in it, before anyone uses it.
"""
import os
import pathlib
import shlex
import subprocess
import sys
import tempfile
import unittest

sources, build = (pathlib.Path(argument) for argument in sys.argv[1:3])
compiler, flags = sys.argv[3], sys.argv[4].split()

PROJECT = """
cmake_minimum_required(VERSION 3.25)
project(consumer LANGUAGES CXX)
{how}
add_executable(program "{program}")
target_link_libraries(program PRIVATE CommonAPI::CommonAPI)
"""


def run(*command, **options):
    result = subprocess.run(command, capture_output=True, text=True, **options)
    if result.returncode != 0:
        raise AssertionError(f"{command}:\n{result.stdout}{result.stderr}")
    return result.stdout


class Consumers(unittest.TestCase):
    def setUp(self):
        holder = tempfile.TemporaryDirectory()
        self.addCleanup(holder.cleanup)
        self.folder = pathlib.Path(holder.name)
        self.program = sources / "examples/first_program.cpp"

    def install(self):
        run("cmake", "--install", build, "--prefix", self.folder / "first place")
        return (self.folder / "first place").rename(self.folder / "second place")

    def check(self, program, **options):
        self.assertEqual(run(program, cwd=self.folder, **options), "9 characters: Grüße, 世界\n")

    def build_with_cmake(self, how, *options):
        (self.folder / "CMakeLists.txt").write_text(PROJECT.format(how=how, program=self.program))
        run("cmake", "-S", self.folder, "-B", self.folder / "build", "-G", "Ninja",
            f"-DCMAKE_CXX_COMPILER={compiler}", f"-DCMAKE_CXX_FLAGS={' '.join(flags)}", *options)
        run("cmake", "--build", self.folder / "build")
        self.check(self.folder / "build/program")

    def test_find_package(self):
        self.build_with_cmake("find_package(CommonAPI 0.1 REQUIRED)",
                              f"-DCMAKE_PREFIX_PATH={self.install()}")

    def test_add_subdirectory(self):
        self.build_with_cmake(f"add_subdirectory({sources} CommonAPI)")

    def test_pkg_config(self):
        library = next(self.install().rglob("pkgconfig")).parent
        paths = os.environ | {"PKG_CONFIG_PATH": str(library / "pkgconfig")}
        options = shlex.split(run("pkg-config", "--cflags", "--libs", "CommonAPI", env=paths))
        run(compiler, *flags, "-std=c++17", self.program, *options, "-o", self.folder / "program")
        self.check(self.folder / "program", env=os.environ | {"LD_LIBRARY_PATH": str(library)})


unittest.main(argv=sys.argv[:1])
