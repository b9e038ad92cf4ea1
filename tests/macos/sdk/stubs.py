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

# Of the C library, what is in POSIX, and how a Mac's has errno and the standard streams.
STANDARD = """
    _exit abort ceil close closedir fabs fclose fcntl fflush floor fmod fopen fputs free fstat getpid llround lround malloc
    memchr memcmp memcpy memmove memset mkdir open opendir perror pipe pow raise read readdir rint round setitimer
    sigaction sigemptyset snprintf sqrt stat strcmp strlen unlink write
    pthread_create pthread_detach pthread_getspecific pthread_join pthread_key_create pthread_once pthread_self
    pthread_setspecific
    __error __stdinp __stdoutp __stderrp
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


def write(folder, declared, frameworks, needed):
    """Makes the libraries, and tells which of them each name is in. Of Qt's, those that are `needed`."""
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
    library(folder / "libQt.tbd", "/usr/lib/libQt.dylib", qts_names(needed), [])
    return owners


def qts_names(needed):
    """Those of the needed names that Qt defines, by its libraries on this machine."""
    folder = subprocess.run(["qtpaths6", "--query", "QT_INSTALL_LIBS"], capture_output=True, text=True,
                            check=True).stdout.strip()
    files = [f"{folder}/libQt6{module}.so" for module in ("Core", "Gui", "Widgets", "Network", "Svg")]
    names = [name.partition("@")[0] for name in defined(files)]
    spelled = {spelling for spelling in spellings(names + QTS_OF_A_MAC)}
    candidates = sorted(needed)
    return [name for name, spelling in zip(candidates, spellings([name[1:] for name in candidates]))
            # Every object asks for the mark of Qt's version, which has another name on each platform.
            if spelling in spelled or name.startswith("_qt_version_tag")]


def spellings(names):
    """The declarations of these names, in which the C++ library's own are the same for all C++ libraries."""
    run = subprocess.run(["llvm-cxxfilt"], input="\n".join(names), capture_output=True, text=True, check=True)
    return [re.sub(r"\bstd::(__1|__cxx11)::", "std::", line).replace("[abi:cxx11]", "")
            for line in run.stdout.splitlines()]


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


# What a compiler calls by itself, and no line of a source does.
MEMORY = re.compile(r"_objc_(retain|release|autorelease|storeStrong|\w*Weak|unsafeClaim|enumerationMutation|opt_self)\w*$")


def calls(objects, owners):
    """How often these objects, which are for ARM, call the platform: its functions, and methods of its objects."""
    run = subprocess.run(["llvm-objdump", "--reloc", *map(str, objects)], capture_output=True, text=True, check=True)
    called = re.findall(r"ARM64_RELOC_BRANCH26\s+(_\S+)", run.stdout)
    foreign = {"libQt", "libc++", "libSystem"}
    return sum(name in owners and owners[name] not in foreign and not MEMORY.match(name) for name in called)
