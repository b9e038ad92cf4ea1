# SPDX-License-Identifier: MIT
"""The build of the macOS preset with a stand-in for the Mac's toolchain: all of it but for linking.

What comes of it stays in build/macos-check, so that the next run builds only what has changed.
"""
import json
import os
import pathlib
import re
import shlex
import subprocess

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent.parent
DECLARATIONS = ROOT / "tests/macos/declarations"

# The second has everything compiled, the first what tells the two apart: Objective-C, in which the type of truth values
# depends on the processor.
PROCESSORS = ["x86_64", "arm64"]
PROGRAMS_PROCESSOR = "arm64"

REFERENCE_COUNTING = ["-fobjc-arc", "-fblocks"]

# What this machine's user has set for other builds.
FOREIGN = {"CXXFLAGS", "CFLAGS", "CPPFLAGS", "OBJCXXFLAGS", "LDFLAGS", "CMAKE_GENERATOR"}


def compiler(processor):
    """Clang for macOS 13, with the Mac's C++ library and the C library of this machine under the Mac's declarations."""
    probe = subprocess.run(["clang++", "-x", "c++", "-E", "-v", "/dev/null"],
                           capture_output=True, text=True, check=True)
    system = re.search(r"search starts here:\n((?: .*\n)*)End", probe.stderr)[1].split("\n")
    folders = [os.path.normpath(line.strip()) for line in system if line.strip()]
    library = sorted(pathlib.Path("/usr/lib").glob("llvm-*/include/c++/v1"))[-1:]
    rest = [folder for folder in folders if "/c++/" not in folder and "/clang/" not in folder]
    command = ["clang++", "-target", f"{processor}-apple-macosx13.0", "-std=c++20"]
    # A compiler for the Mac knows __nonnull itself, and one for Linux _GNU_SOURCE, for names that a Mac's has anyway.
    command += ["-U__nonnull", "-D_GNU_SOURCE", "-stdlib=libc++", "-nostdinc++", "-nostdlibinc"]
    # Debian's build of the C++ library keeps the algorithms of std::ranges back; a Mac's has them.
    command += ["-D_LIBCPP_ENABLE_EXPERIMENTAL"]
    for folder in [*library, ROOT / "tests/macos/clibrary", DECLARATIONS]:
        command += ["-isystem", str(folder)]
    for folder in rest:
        command += ["-idirafter", folder]
    return command


class Build:
    """The build for one processor."""

    def __init__(self, processor):
        self.processor = processor
        self.folder = ROOT / "build/macos-check" / processor
        self.environment = {name: value for name, value in os.environ.items() if name not in FOREIGN}

    def configure(self):
        """What went wrong, if anything."""
        flags = shlex.join([*compiler(self.processor)[1:], "-Wunguarded-availability"])
        command = ["cmake", "--preset", "macos", "-B", str(self.folder), "-Wno-dev",
                   f"-DCMAKE_TOOLCHAIN_FILE={ROOT}/tests/macos/toolchain.cmake",
                   f"-DCMAKE_OSX_ARCHITECTURES={self.processor}", "-DCMAKE_BUILD_TYPE=None",
                   # A cache of compilations does not see a header that is new before another of its name.
                   "-DCMAKE_CXX_COMPILER_LAUNCHER=", "-DCMAKE_OBJCXX_COMPILER_LAUNCHER=",
                   f"-DCMAKE_CXX_FLAGS={flags}", f"-DCMAKE_OBJCXX_FLAGS={flags}",
                   "-DPARKLET_TESTS=ON", "-DPARKLET_WERROR=ON"]
        run = subprocess.run(command, cwd=ROOT, env=self.environment, capture_output=True, text=True)
        return f"{shlex.join(command)}\n{run.stdout}{run.stderr}" if run.returncode else ""

    def compilations(self):
        """The command of each object; a source of several targets has several."""
        entries = json.loads((self.folder / "compile_commands.json").read_text(encoding="utf-8"))
        commands = [shlex.split(entry["command"]) for entry in entries]
        return {command[command.index("-o") + 1]: command for command in commands}

    def sources(self):
        return {command[-1] for command in self.compilations().values()}

    def objects(self):
        """The objects to make: all, or those of what talks to the platform and of the tests of that."""
        everything = {target: command for target, command in self.compilations().items() if target.endswith(".o")}
        # A bundle has its icon before any of its own files is generated, and a Mac's tools make that.
        everything.pop("app/CMakeFiles/parklet.dir/parklet_autogen/mocs_compilation.cpp.o", None)
        if self.processor == PROGRAMS_PROCESSOR:
            return everything
        return {target: command for target, command in everything.items()
                if command[-1].endswith(".mm") or f"{ROOT}/platform/common/" in command[-1]}

    def compile(self):
        """What went wrong, if anything."""
        objects = self.objects()
        # That icon is not waited for.
        alone = {target for target in objects if target.startswith("app/CMakeFiles/parklet.dir/")}
        faults = [self.run(["ninja", "-k", "0", *sorted(objects.keys() - alone)])]
        for target in sorted(alone):
            (self.folder / target).parent.mkdir(parents=True, exist_ok=True)
            faults.append(self.run(objects[target]))
        return "\n".join(filter(None, faults))

    def run(self, command):
        run = subprocess.run(command, cwd=self.folder, env=self.environment, capture_output=True, text=True)
        if run.returncode == 0:
            return ""
        return re.sub(r"^\[\d+/\d+\] .*\n|^ninja: Entering.*\n", "", run.stdout, flags=re.MULTILINE) + run.stderr

    def made(self):
        """The objects of the program."""
        targets = [target for target in self.objects() if re.search(r"CMakeFiles/parklet(_core\w*)?\.dir/", target)]
        return [self.folder / target for target in targets if (self.folder / target).is_file()]
