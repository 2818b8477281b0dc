"""Uses the library as other projects do, the installed one after it was moved to a path with a blank:
consumers_test.py SOURCES BUILD COMPILER FLAG..."""
import os
import pathlib
import shlex
import subprocess
import sys
import tempfile

sources, build = map(pathlib.Path, sys.argv[1:3])
compiler, flags = sys.argv[3], " ".join(sys.argv[4:])
program = sources / "examples/first_program.cpp"


def run(*command, **options):
    return subprocess.run(command, check=True, stdout=subprocess.PIPE, text=True, **options).stdout


def check(executable, **options):
    if run(executable, cwd=folder, **options) != "9 characters: Grüße, 世界\n":
        sys.exit(f"{executable}: wrong output")


def build_with_cmake(name, how, *options):
    (folder / name).mkdir()
    (folder / name / "CMakeLists.txt").write_text(
        f'cmake_minimum_required(VERSION 3.25)\nproject(consumer LANGUAGES CXX)\n{how}\n'
        f'add_executable(program "{program}")\n'
        'target_link_libraries(program PRIVATE CommonAPI::CommonAPI)\n')
    run("cmake", "-S", folder / name, "-B", folder / name, "-G", "Ninja",
        f"-DCMAKE_CXX_COMPILER={compiler}", f"-DCMAKE_CXX_FLAGS={flags}", *options)
    run("cmake", "--build", folder / name)
    check(folder / name / "program")


with tempfile.TemporaryDirectory() as holder:
    folder = pathlib.Path(holder)
    run("cmake", "--install", build, "--prefix", folder / "first place")
    prefix = (folder / "first place").rename(folder / "second place")
    build_with_cmake("package", "find_package(CommonAPI 0.1 REQUIRED)",
                     f"-DCMAKE_PREFIX_PATH={prefix}")
    build_with_cmake("subdirectory", f"add_subdirectory({sources} CommonAPI)")
    library = next(prefix.rglob("pkgconfig")).parent
    options = run("pkg-config", "--cflags", "--libs", "CommonAPI",
                  env=os.environ | {"PKG_CONFIG_PATH": str(library / "pkgconfig")})
    run(compiler, *flags.split(), "-std=c++17", program, *shlex.split(options), "-o",
        folder / "program")
    check(folder / "program", env=os.environ | {"LD_LIBRARY_PATH": str(library)})
