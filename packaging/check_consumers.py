"""Uses the library as its users do, the installed one after it was moved to a path with a blank:
check_consumers.py SOURCES BUILD COMPILER FLAG..."""
import concurrent.futures
import os
import pathlib
import re
import shlex
import shutil
import subprocess
import sys
import tempfile

sources, build, compiler, *flags = sys.argv[1:]
flags = " ".join(flags)
program = f"{sources}/examples/first_program.cpp"
OUTPUT = "9 characters: Grüße, 世界\n"
faults = []


def run(*command, **variables):
    return subprocess.check_output(command, cwd=folder, env=os.environ | variables, text=True,
                                   stderr=subprocess.STDOUT)


def build_with_cmake(name, *options):
    run("cmake", "-S", name, "-B", f"{name}/build", "-G", "Unix Makefiles",
        f"-DCMAKE_CXX_COMPILER={compiler}", f"-DCMAKE_CXX_FLAGS={flags}", *options)
    run("cmake", "--build", f"{name}/build", "--parallel", "2")


def write_project(name, *lines):
    (folder / name).mkdir()
    (folder / name / "CMakeLists.txt").write_text("\n".join((
        "cmake_minimum_required(VERSION 3.25)", "project(consumer LANGUAGES CXX)", *lines)))


def expect(what, seen, expected):
    if expected not in seen:
        faults.append(f"{what}: {seen!r} is not {expected!r}")


def start_command():
    # Distributions, whose trees stay where they are, want no path in it.
    if "CMAKE_SKIP_INSTALL_RPATH:BOOL=ON" in pathlib.Path(build, "CMakeCache.txt").read_text():
        return
    for command in prefix.rglob("bin/commonapi"):
        expect("moved command", run(command, "--version"), "0.1")


def use_pkg_config():
    library = next(prefix.rglob("pkgconfig")).parent
    options = shlex.split(run("pkg-config", "--cflags", "--libs", "CommonAPI",
                              PKG_CONFIG_PATH=f"{library}/pkgconfig"))
    run(compiler, *flags.split(), "-std=c++17", program, *options, "-o", "program")
    path = f"{library}:{os.environ.get('LD_LIBRARY_PATH', '')}"
    expect("pkg-config", run(folder / "program", LD_LIBRARY_PATH=path), OUTPUT)


def use_copied_examples():
    shutil.copytree(next(prefix.rglob("examples")), folder / "examples")
    build_with_cmake("examples", f"-DCMAKE_PREFIX_PATH={prefix}")
    examples = folder / "examples/build"
    expect("copied example", run(examples / "first_program"), OUTPUT)
    expect("copied plug-in", run(examples / "plugins", examples / "plugin/text_statistics.so"),
           "14 characters, 3 words\n")


def use_subdirectory():
    write_project("parent", f'add_subdirectory("{sources}" CommonAPI)',
                  f'add_executable(program "{program}")',
                  "target_link_libraries(program PRIVATE CommonAPI::CommonAPI)")
    build_with_cmake("parent")
    expect("subdirectory", run(folder / "parent/build/program"), OUTPUT)
    cache = (folder / "parent/build/CMakeCache.txt").read_text()
    if "\nBUILD_SHARED_LIBS" in cache:
        faults.append("the parent's BUILD_SHARED_LIBS was set")


def load_a_plugin_with_a_copy_of_its_own():
    libraries = list(prefix.rglob("libCommonAPI.so"))
    if not libraries:
        return
    shutil.copytree(f"{sources}/packaging/static_copy", folder / "static_copy")
    build_with_cmake("static_copy", f"-DSOURCES={sources}", f"-DSHARED_LIBRARY={libraries[0]}")
    plugin = folder / "static_copy/build/libplugin.so"
    expect("messages without a log", run(folder / "static_copy/build/program", plugin),
           "Program:  no log\n")
    for name in ("plugin", "program"):
        expect(f"the {name}'s log", (folder / f"{name}.log").read_text(),
               f"{name.title()}:  its text\nTerminating logging facility\n")
    run(sys.executable, f"{sources}/packaging/check_exports.py", sources, "nm", "--none", plugin)


def ask_for_an_unknown_component():
    write_project("component", "find_package(CommonAPI 0.1 COMPONENTS nonsense)",
                  "if(NOT CommonAPI_FOUND)", "message(refused)", "endif()")
    expect("unknown component", run("cmake", "-S", "component", "-B", "component/build",
                                    f"-DCMAKE_PREFIX_PATH={prefix}"), "\nrefused\n")


def follow_links():
    for page in prefix.rglob("*.md"):
        prose = re.sub(r"```.*?```", "", page.read_text(), flags=re.DOTALL)
        for link in re.findall(r"\]\(([^)#:]+)[)#]", prose):
            if not (page.parent / link).exists():
                faults.append(f"{page.name}: dead link: {link}")


with tempfile.TemporaryDirectory() as holder:
    folder = pathlib.Path(holder)
    try:
        run("cmake", "--install", build, "--prefix", folder / "first place")
        prefix = (folder / "first place").rename(folder / "second place")
        with concurrent.futures.ThreadPoolExecutor(2) as pool:
            checks = [pool.submit(check) for check in (
                load_a_plugin_with_a_copy_of_its_own, use_subdirectory, use_copied_examples,
                use_pkg_config, start_command, ask_for_an_unknown_component, follow_links)]
        for check in checks:
            check.result()
    except subprocess.CalledProcessError as failure:
        sys.exit(f"{failure}\n{failure.output}")
sys.exit("\n".join(faults) or 0)
