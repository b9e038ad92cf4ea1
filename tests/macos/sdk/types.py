# SPDX-License-Identifier: MIT
"""Type descriptions that were generated from the real SDK, and the declarations held against them.

They are an npm package, of which nothing is kept in this repository. They tell the members of classes and protocols,
what can be written, the types of parameters and whether they may be nil, functions, and the values of enumerations;
not whether a result may be nil, and not which version brought what.
"""
import base64
import hashlib
import os
import pathlib
import re
import shutil
import subprocess
import tarfile

PACKAGE = "@nativescript/macos-node-api@0.4.0"
DIGEST = "UQmVtBdeNiEV/gssJPeXYHInb2RibEb59UVMC+VVjdMSpTpInpXzs6QoHmaAGx/gO6P8U6BRwDjYYZ7OQvi1bw=="  # SHA-512
FRAMEWORKS = ["AppKit", "ApplicationServices", "CoreFoundation", "CoreGraphics", "CoreServices", "Foundation",
              "ImageIO", "QuartzCore", "QuickLookThumbnailing", "Runtime", "ServiceManagement"]
PATIENCE = 120  # seconds for the download

CLASS = re.compile(r"^declare (?:abstract )?class (\w+)(?:<[^{]*?>)?(?: extends ([\w.]+)[^{]*)?[^{]*\{\n(.*?)^\}",
                   re.MULTILINE | re.DOTALL)
PROTOCOL = re.compile(r"^(?:declare )?interface (\w+)(?:<[^{]*?>)?[^{]*\{\n(.*?)^\}", re.MULTILINE | re.DOTALL)
FUNCTION = re.compile(r"^declare function (\w+)\((.*)\): (.*);$", re.MULTILINE)
CONSTANT = re.compile(r"^declare const (\w+): (?!\{)(.*);$", re.MULTILINE)
ENUMERATION = re.compile(r"^declare const (\w+): \{\n(.*?)^\};", re.MULTILINE | re.DOTALL)
MEMBER = re.compile(r"^  (static )?(readonly )?(get |set )?(\w+)\??(?:<(?:\w+, )*This .*? => any>)?(\(.*\))?(?:: (.*))?;$",
                    re.MULTILINE)

NUMBERS = {"char", "short", "int", "long", "long long", "unsigned char", "unsigned short", "unsigned int",
           "unsigned long", "unsigned long long", "signed long", "float", "double", "uint32_t", "uint64_t", "uint16_t",
           "int64_t", "size_t", "bool", "signed char"}
OBJECTS_AS_VALUES = {"NSString": "string", "NSArray": "array", "NSMutableArray": "array", "NSDictionary": "dictionary",
                     "NSDate": "NSDate", "NSNumber": "number", "NSData": "NSData", "NSSet": "set"}


class Unavailable(Exception):
    """Why there is nothing to compare with."""


def fetch(cache):
    """The folder with the descriptions; fetched once, and never anything but what the digest names."""
    folder = cache / PACKAGE.rpartition("@")[2]
    if folder.is_dir():
        return folder
    if not shutil.which("npm"):
        raise Unavailable("npm is not installed")
    cache.mkdir(parents=True, exist_ok=True)
    try:
        run = subprocess.run(["npm", "pack", "--silent", PACKAGE, "--pack-destination", str(cache)],
                             cwd=cache, capture_output=True, text=True, timeout=PATIENCE)
    except subprocess.TimeoutExpired:
        raise Unavailable(f"npm did not fetch {PACKAGE} within {PATIENCE} seconds") from None
    archives = sorted(cache.glob("*.tgz"))
    if run.returncode != 0 or len(archives) != 1:
        raise Unavailable(f"npm could not fetch {PACKAGE}: {run.stderr.strip()[:300]}")
    digest = base64.b64encode(hashlib.sha512(archives[0].read_bytes()).digest()).decode()
    if digest != DIGEST:
        archives[0].unlink()
        raise ValueError(f"{PACKAGE} is not the one that was looked at: its SHA-512 is {digest}")
    partial = cache / "partial"
    shutil.rmtree(partial, ignore_errors=True)
    partial.mkdir()
    with tarfile.open(archives[0]) as archive:
        for framework in FRAMEWORKS:
            name = f"{framework}.d.ts"
            (partial / name).write_bytes(archive.extractfile(f"package/types/{name}").read())
    archives[0].unlink()
    partial.rename(folder)
    return folder


class Types:
    """The descriptions, by name. A class has the members of its protocols and bases too."""

    def __init__(self, folder):
        self.members = {}     # class -> {(is static, name): (is readonly, parameters or None, type)}
        self.bases = {}
        self.functions = {}
        self.constants = {}
        self.enumerations = {}
        for path in sorted(pathlib.Path(folder).glob("*.d.ts")):
            text = path.read_text(encoding="utf-8")
            for name, base, body in CLASS.findall(text):
                self.add(name, base, body)
            for name, body in PROTOCOL.findall(text):
                self.add(name, "", body)
            for name, parameters, result in FUNCTION.findall(text):
                self.functions[name] = (split(parameters), result)
            self.constants.update(CONSTANT.findall(text))
            for name, body in ENUMERATION.findall(text):
                self.enumerations[name] = {key: int(value) for key, value
                                           in re.findall(r"^  (\w+): (-?\d+)n?,", body, re.MULTILINE)}

    def add(self, name, base, body):
        members = self.members.setdefault(name, {})
        if base:
            self.bases[name] = base
        for static, readonly, access, member, parameters, kind in MEMBER.findall(body):
            key = (bool(static), member)
            if access.strip() == "set":
                members[key] = (False, None, members[key][2] if key in members else split(parameters[1:-1])[0])
            elif access.strip() == "get":
                members[key] = (key not in members, None, kind)
            else:
                members[key] = (bool(readonly), split(parameters[1:-1]) if parameters else None, kind)

    def find(self, name, static, member):
        while name:
            found = self.members.get(name, {}).get((static, member))
            if found or name == "NSObject":
                return found
            name = self.bases.get(name)
        return None

    def value(self, enumerator, enumeration):
        """The number of an enumerator, which is named here without what all of its enumeration have in common."""
        name = enumerator.removeprefix("k")
        best, number = (0, 0), None
        for candidate, values in self.enumerations.items():
            if enumeration in self.enumerations and candidate != enumeration:
                continue
            shared = len(os.path.commonprefix([name, candidate.rstrip("s")]))
            if shared < 4 and candidate != enumeration:
                continue
            for key, value in values.items():
                if name.endswith(key) or (key in name[shared:] and candidate == enumeration):
                    if (shared, len(key)) > best:
                        best, number = (shared, len(key)), value
        return number


def split(parameters):
    """The types of a parameter list, whose commas may be inside brackets."""
    types, depth, current = [], 0, ""
    previous = ""
    for character in parameters:
        if character in "(<[{":
            depth += 1
        elif character in ")]}" or (character == ">" and previous != "="):
            depth -= 1
        if character == "," and depth == 0:
            types.append(current)
            current = ""
        else:
            current += character
        previous = character
    types.append(current)
    return [part.split(":", 1)[1].strip() for part in types if ":" in part and not part.startswith("this:")]


def described(kind):
    """A described type as the name of what it is."""
    kind = kind.strip()
    if kind.startswith("("):
        return "function"
    kind = re.sub(r" \| null$", "", kind)
    enumeration = re.match(r"interop\.Enum<typeof (\w+)>", kind)
    if enumeration:
        return "number"
    if "Array<" in kind or kind == "NSArray":
        return "array"
    if kind.startswith(("NSDictionary", "Map", "Record")) or "Record<" in kind:
        return "dictionary"
    if kind in ("interop.Object", "this", "NSObject"):
        return "object"
    if kind.startswith("interop.Pointer"):
        return "pointer"
    return re.sub(r"<.*", "", kind)


def is_nullable(kind):
    return kind.strip().endswith("| null")


def spelled(kind, typedefs):
    """A declared type as the name of the same."""
    kind = re.sub(r"API_\w+\((?:[^()]|\([^()]*\))*\)", "", kind)
    kind = re.sub(r"\b(_Nonnull|_Nullable|_Null_unspecified|__strong|__weak|__unsafe_unretained|__kindof|const|struct|"
                  r"enum)\b", "", kind)
    kind = re.sub(r"\s+", " ", kind).strip()
    if "(^" in kind or "(*" in kind:
        return "function"
    if kind.endswith("*") or kind.endswith("]"):
        kind = re.sub(r"<.*>", "", kind)
        pointed = kind.rstrip("*[] ").strip()
        if kind.count("*") > 1 or not re.match(r"^[A-Z]{2}\w+$", pointed) or pointed in typedefs:
            return "pointer"
        return OBJECTS_AS_VALUES.get(pointed, pointed)
    if kind in ("id", "Class", "instancetype") or kind.startswith("id<"):
        return "object"
    if kind == "SEL":
        return "string"
    if kind == "BOOL":
        return "boolean"
    if kind in NUMBERS:
        return "number"
    if kind in typedefs and typedefs[kind] != kind:
        target = typedefs[kind]
        if target.startswith("enum "):
            return "number"
        if target.startswith("struct ") and not target.endswith("*"):
            return re.sub(r"^struct ", "", target)
        if re.match(r"(const )?(void|struct \w+) ?\*$", target):
            return "reference"
        return spelled(target, typedefs)
    return kind


# Descriptions are coarser than declarations in these.
SAME = {("reference", "object"), ("reference", "pointer"), ("boolean", "number"), ("number", "boolean"),
        ("string", "object"), ("object", "string"), ("pointer", "object"), ("number", "NSNumber"), ("object", "InstanceType")}


def agree(declared, described_as):
    if declared == described_as or (declared, described_as) in SAME:
        return True
    return declared == "object"


def faults(declared, types):
    """How many declarations were compared, those that no description tells of, and what differs."""
    compared = 0
    unknown = []
    found = []
    for entry in declared.classes.values():
        if entry.name not in types.members:
            found.append(f"{entry.name}: there is no such class or protocol")
            continue
        for item in entry.properties:
            compared += 1
            member = types.find(entry.name, item.is_class, item.name) or types.find(entry.name, False, item.name)
            if not member or member[1] is not None:
                found.append(f"{entry.name}.{item.name}: there is no such property")
                continue
            if member[0] == item.is_writable:
                found.append(f"{entry.name}.{item.name}: it is {'read-only' if member[0] else 'writable'}")
            compare_types(found, f"{entry.name}.{item.name}", item.type, member[2], declared, types)
        for method in entry.methods:
            compared += 1
            name = joined(method.selector)
            member = types.find(entry.name, method.is_class, name)
            if not member:
                if entry.name == "NSObject":
                    unknown.append(f"{entry.name} {method.selector}")
                else:
                    found.append(f"{entry.name} {method.selector}: there is no such method")
                continue
            if member[1] is None:
                # A property that is declared as its getter.
                continue
            compare_parameters(found, f"{entry.name} {method.selector}", method.parameters, member[1], declared, types)
            if method.result not in ("void", "instancetype") and not method.result.startswith("instancetype"):
                compare_types(found, f"{entry.name} {method.selector}", method.result, member[2], declared, types)
    for name, (_, result, parameters) in declared.functions.items():
        if name not in types.functions:
            unknown.append(name)
            continue
        compared += 1
        expected, kind = types.functions[name]
        compare_parameters(found, name, parameters, expected, declared, types, nullability=False)
        if result != "void":
            compare_types(found, name, result, kind, declared, types)
    for name in declared.variables:
        if name not in types.constants:
            unknown.append(name)
        else:
            compared += 1
    for name, (_, enumeration, number) in declared.values.items():
        if name in types.constants:
            compared += 1
            continue
        value = types.value(name, enumeration)
        if value is None:
            unknown.append(name)
            continue
        compared += 1
        if value != number and value % 2 ** 64 != number % 2 ** 64:
            found.append(f"{name}: it is {value}, not {number}")
    return compared, unknown, found


def joined(selector):
    first, *rest = selector.rstrip(":").split(":")
    return first + "".join(part[:1].upper() + part[1:] for part in rest)


def compare_parameters(found, what, declared_types, expected, declared, types, nullability=True):
    if len(declared_types) != len(expected):
        found.append(f"{what}: it takes {len(expected)} parameters, not {len(declared_types)}")
        return
    for place, (ours, theirs) in enumerate(zip(declared_types, expected), 1):
        compare_types(found, f"{what}, parameter {place}", ours, theirs, declared, types)
        # A block's own nil is told apart from that of what it returns by the brackets alone, which are left out.
        # Of what is pointed to, nothing is told.
        is_plain = "(^" not in ours and spelled(ours, declared.typedefs) != "pointer"
        if nullability and is_plain and is_nullable(theirs) != ("_Nullable" in ours.split("<")[-1]):
            found.append(f"{what}, parameter {place}: it {'may' if is_nullable(theirs) else 'may not'} be nil")


def compare_types(found, what, ours, theirs, declared, types):
    mine, other = spelled(ours, declared.typedefs), described(theirs)
    if not agree(mine, other):
        found.append(f"{what}: it is {theirs.strip()}, not {ours.strip()}")
