"""Uses the library as other projects do, the installed one after it was moved to a path with a blank:
check_consumers.py SOURCES BUILD COMPILER FLAG..."""
import os
import pathlib
import shlex
import subprocess
import sys
import tempfile

sources, build, compiler, *flags = sys.argv[1:]
flags = " ".join(flags)
program = f"{sources}/examples/first_program.cpp"


def run(*command, **variables):
    return subprocess.check_output(command, cwd=folder, env=os.environ | variables, text=True)


def build_with_cmake(name, how, *options):
    (folder / name).mkdir()
    (folder / name / "CMakeLists.txt").write_text(
        f'cmake_minimum_required(VERSION 3.25)\nproject(consumer LANGUAGES CXX)\n{how}\n'
        f'add_executable(program "{program}")\n'
        'target_link_libraries(program PRIVATE CommonAPI::CommonAPI)\n')
    run("cmake", "-S", name, "-B", name, "-G", "Ninja", f"-DCMAKE_CXX_COMPILER={compiler}",
        f"-DCMAKE_CXX_FLAGS={flags}", *options)
    run("cmake", "--build", name)
    return run(folder / name / "program")


with tempfile.TemporaryDirectory() as holder:
    folder = pathlib.Path(holder)
    run("cmake", "--install", build, "--prefix", folder / "first place")
    prefix = (folder / "first place").rename(folder / "second place")
    library = next(prefix.rglob("pkgconfig")).parent
    options = shlex.split(run("pkg-config", "--cflags", "--libs", "CommonAPI",
                              PKG_CONFIG_PATH=f"{library}/pkgconfig"))
    run(compiler, *flags.split(), "-std=c++17", program, *options, "-o", "program")
    outputs = (build_with_cmake("package", "find_package(CommonAPI 0.1 REQUIRED)",
                                f"-DCMAKE_PREFIX_PATH={prefix}"),
               build_with_cmake("subdirectory", f"add_subdirectory({sources} CommonAPI)"),
               run(folder / "program", LD_LIBRARY_PATH=f"{library}:{os.environ.get('LD_LIBRARY_PATH', '')}"))
if outputs != ("9 characters: Grüße, 世界\n",) * 3:
    sys.exit(f"wrong output: {outputs}")
