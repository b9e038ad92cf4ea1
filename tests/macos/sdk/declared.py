# SPDX-License-Identifier: MIT
"""What tests/macos/declarations declares, as the compiler understands it."""
import dataclasses
import json
import pathlib
import re
import subprocess


@dataclasses.dataclass
class Method:
    selector: str
    is_class: bool
    result: str
    parameters: list


@dataclasses.dataclass
class Property:
    name: str
    type: str
    is_class: bool
    is_writable: bool


@dataclasses.dataclass
class Class:
    name: str
    framework: str
    base: str = ""
    is_protocol: bool = False
    methods: list = dataclasses.field(default_factory=list)
    properties: list = dataclasses.field(default_factory=list)


@dataclasses.dataclass
class Declared:
    classes: dict = dataclasses.field(default_factory=dict)      # name -> Class, protocols among them
    functions: dict = dataclasses.field(default_factory=dict)    # name -> (framework, result, parameters)
    variables: dict = dataclasses.field(default_factory=dict)    # name -> (framework, type)
    values: dict = dataclasses.field(default_factory=dict)       # enumerator -> (framework, enumeration, number)
    typedefs: dict = dataclasses.field(default_factory=dict)     # name -> type
    inline: set = dataclasses.field(default_factory=set)         # functions and values without a symbol


def read(folder, command):
    """All of the declarations in `folder`. `command` compiles Objective-C++ against them."""
    headers = sorted(path.relative_to(folder) for path in folder.glob("*/*.h"))
    text = "".join(f"#include <{header}>\n" for header in headers if header.parts[0] != "os")
    dump = subprocess.run([*command, "-x", "objective-c++", "-fsyntax-only", "-Xclang", "-ast-dump=json", "-"],
                          input=text, capture_output=True, text=True, check=True)
    reader = Reader(folder)
    reader.visit(json.loads(dump.stdout))
    return reader.declared


class Reader:
    """Walks the compiler's tree in its order, in which a place names its file only where that changes."""

    def __init__(self, folder):
        self.folder = str(folder)
        self.file = ""
        self.declared = Declared()

    def place(self, where):
        if not isinstance(where, dict):
            return
        for key, value in where.items():
            if key == "file":
                self.file = value
            elif key in ("spellingLoc", "expansionLoc", "begin", "end"):
                self.place(value)

    def visit(self, node, within=None):
        self.place(node.get("loc"))
        file = self.file
        self.place(node.get("range"))
        inside = within
        if file.startswith(self.folder + "/"):
            framework = pathlib.Path(file).relative_to(self.folder).parts[0]
            inside = self.note(node, framework, within)
        for child in node.get("inner", []):
            self.visit(child, inside)

    def note(self, node, framework, within):
        kind, name, declared = node.get("kind"), node.get("name", ""), self.declared
        if kind in ("ObjCInterfaceDecl", "ObjCProtocolDecl"):
            # A class that is only named beforehand has nothing inside.
            entry = declared.classes.setdefault(name, Class(name, framework, is_protocol=kind == "ObjCProtocolDecl"))
            if node.get("inner") or node.get("super"):
                entry.framework = framework
                entry.base = node.get("super", {}).get("name", "")
            return entry
        if kind == "ObjCCategoryDecl":
            return declared.classes[node["interface"]["name"]]
        if kind == "ObjCMethodDecl" and within and not node.get("isImplicit"):
            within.methods.append(Method(name, not node.get("instance", False), type_of(node, "returnType"),
                                         parameters_of(node)))
        elif kind == "ObjCPropertyDecl" and within:
            within.properties.append(Property(name, type_of(node), bool(node.get("class")),
                                              not node.get("readonly", False)))
        elif kind == "FunctionDecl":
            declared.functions[name] = (framework, node["type"]["qualType"].split("(")[0].strip(), parameters_of(node))
            if node.get("inline") or any(child.get("kind") == "CompoundStmt" for child in node.get("inner", [])):
                declared.inline.add(name)
        elif kind == "VarDecl" and not isinstance(within, Class):
            declared.variables[name] = (framework, type_of(node))
            if node.get("storageClass") == "static":
                declared.inline.add(name)
        elif kind == "TypedefDecl":
            declared.typedefs[name] = node["type"]["qualType"]
        elif kind == "EnumDecl":
            self.enumerators(node, framework)
        return within

    def enumerators(self, node, framework):
        name = node.get("name") or node.get("fixedUnderlyingType", {}).get("qualType", "")
        number = -1
        for child in node.get("inner", []):
            if child.get("kind") != "EnumConstantDecl":
                continue
            stated = value_in(child)
            number = number + 1 if stated is None else stated
            self.declared.values[child["name"]] = (framework, name, number)


def value_in(node):
    if node.get("kind") == "ConstantExpr" and "value" in node:
        return int(node["value"])
    for child in node.get("inner", []):
        value = value_in(child)
        if value is not None:
            return value
    return None


def type_of(node, key="type"):
    return re.sub(r"\s+", " ", node.get(key, {}).get("qualType", ""))


def parameters_of(node):
    return [type_of(child) for child in node.get("inner", []) if child.get("kind") == "ParmVarDecl"]
