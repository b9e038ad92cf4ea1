# SPDX-License-Identifier: MIT
"""Libraries to link against that hold nothing but names: those that the declarations promise, one a framework."""
import pathlib
import re
import subprocess

FOLDER = pathlib.Path(__file__).resolve().parent
TARGETS = "[ x86_64-macos, arm64-macos ]"

# What a compiler with reference counting and blocks calls by itself.
RUNTIME = """
    objc_alloc objc_alloc_init objc_allocWithZone objc_autorelease objc_autoreleaseReturnValue objc_copyWeak
    objc_destroyWeak objc_enumerationMutation objc_getProperty objc_initWeak objc_loadWeakRetained objc_msgSend
    objc_msgSendSuper2 objc_msgSendSuper2_stret objc_msgSend_fpret objc_msgSend_stret objc_moveWeak objc_opt_class
    objc_opt_isKindOfClass objc_opt_self objc_release objc_retain objc_retainAutorelease
    objc_retainAutoreleaseReturnValue objc_retainAutoreleasedReturnValue objc_retainBlock objc_storeStrong
    objc_storeWeak objc_unsafeClaimAutoreleasedReturnValue _objc_empty_cache objc_begin_catch objc_end_catch
    objc_autoreleasePoolPop objc_autoreleasePoolPush objc_setProperty_nonatomic_copy __objc_personality_v0
""".split()
BLOCKS = "_NSConcreteGlobalBlock _NSConcreteStackBlock _Block_object_assign _Block_object_dispose".split()

# Of the C library, what is in POSIX.
STANDARD = """
    abort close errno fclose fopen free fstat getpid malloc memchr memcmp memcpy memmove memset mkdir open read round
    lround rint ceil floor snprintf sqrt stat strcmp strlen unlink write pow fabs fmod
""".split()
# What stands for one of these in a Mac's C library: the same by its version, and what the compiler adds.
STANDARD_SUFFIXES = ["", "$INODE64"]
COMPILER = ["__stack_chk_fail", "__stack_chk_guard", "dyld_stub_binder", "_tlv_bootstrap", "__dso_handle", "_Unwind_Resume", "__cxa_atexit"]

# What Qt has on a Mac alone.
QTS_OF_A_MAC = """
    _ZN7QString12fromNSStringEPK8NSString _ZNK7QString10toNSStringEv _ZNK4QUrl7toNSURLEv _ZN4QUrl9fromNSURLEPK5NSURL
    _ZN10QByteArray10fromNSDataEPK6NSData _ZNK10QByteArray8toNSDataEv _ZN9QDateTime10fromNSDateEPK6NSDate
    _ZNK6QRectF8toCGRectEv _ZN6QRectF10fromCGRectE6CGRect _ZN7QPointF11fromCGPointE7CGPoint
    _ZNK6QSizeF8toCGSizeEv _ZN6QSizeF10fromCGSizeE6CGSize _ZNK6QImage9toCGImageEv _ZN5QMenu8toNSMenuEv
""".split()


def write(folder, declared, frameworks):
    """Makes the libraries, and tells which of them each name is in."""
    owners = {}

    def library(path, name, symbols, classes):
        write_library(path, name, symbols, classes)
        every = [*symbols, *(f"_OBJC_{kind}_$_{each}" for each in classes for kind in ("CLASS", "METACLASS"))]
        owners.update(dict.fromkeys(every, path.stem))

    for framework in sorted({entry.framework for entry in declared.classes.values()} | set(frameworks)):
        if framework == "objc":
            continue
        classes = sorted(name for name, entry in declared.classes.items()
                         if entry.framework == framework and not entry.is_protocol and name != "NSObject")
        names = sorted(name for name, (owner, *_) in [*declared.functions.items(), *declared.variables.items()]
                       if owner == framework and name not in declared.inline)
        if framework == "CoreFoundation":
            names.append("__CFConstantStringClassReference")
        place = folder / f"{framework}.framework"
        place.mkdir(parents=True)
        library(place / f"{framework}.tbd", f"/System/Library/Frameworks/{framework}.framework/{framework}",
                ["_" + name for name in names], classes)
    runtime = RUNTIME + [name for name, (owner, *_) in declared.functions.items() if owner == "objc"]
    library(folder / "libobjc.tbd", "/usr/lib/libobjc.A.dylib", ["_" + name for name in runtime], ["NSObject"])
    standard = [name + suffix for name in STANDARD for suffix in STANDARD_SUFFIXES] + BLOCKS + COMPILER
    library(folder / "libSystem.tbd", "/usr/lib/libSystem.B.dylib", ["_" + name for name in standard]
            + ["dyld_stub_binder"], [])
    library(folder / "libc++.tbd", "/usr/lib/libc++.1.dylib", ["_" + name for name in cxx_names()], [])
    library(folder / "libQt.tbd", "/usr/lib/libQt.dylib", ["_" + name for name in qts_names()], [])
    return owners


def qts_names():
    """What Qt defines, by its libraries on this machine."""
    folder = subprocess.run(["qtpaths6", "--query", "QT_INSTALL_LIBS"], capture_output=True, text=True,
                            check=True).stdout.strip()
    files = [f"{folder}/libQt6{module}.so" for module in ("Core", "Gui", "Widgets", "Network", "Svg")]
    return {name.partition("@")[0] for name in defined(files)} | set(QTS_OF_A_MAC)


def defined(libraries):
    run = subprocess.run(["llvm-nm", "-D", "--defined-only", "--format=just-symbols", *libraries],
                         capture_output=True, text=True, check=True)
    return [line for line in run.stdout.split() if not line.endswith(":")]


def write_library(path, name, symbols, classes):
    lines = ["--- !tapi-tbd", "tbd-version: 4", f"targets: {TARGETS}", f"install-name: '{name}'", "exports:",
             f"  - targets: {TARGETS}"]
    if symbols:
        lines.append("    symbols: [ " + ", ".join(f"'{symbol}'" for symbol in sorted(set(symbols))) + " ]")
    if classes:
        lines.append("    objc-classes: [ " + ", ".join(sorted(classes)) + " ]")
    path.write_text("\n".join([*lines, "...", ""]), encoding="utf-8")


def cxx_names():
    """What the C++ library of this machine that is the Mac's defines."""
    folder = sorted(pathlib.Path("/usr/lib").glob("llvm-*/lib/libc++.so.1"))[-1].parent
    return defined([str(folder / "libc++.so.1"), str(folder / "libc++abi.so.1")])


def undefined(objects):
    """The names that these objects leave to others."""
    run = subprocess.run(["llvm-nm", "--format=posix", *map(str, objects)], capture_output=True, text=True, check=True)
    defined, needed = set(), set()
    for name, kind in re.findall(r"^(\S+) (\w)(?: .*)?$", run.stdout, re.MULTILINE):
        (needed if kind == "U" else defined).add(name)
    return needed - defined
