#!/usr/bin/env python3
"""Reads the symbol tables of the built module and holds them against what it may export and import.

    check_symbols.py LIBRARY

Exported are exactly the names in exported_names.txt beside this script, each line of which is a
function or object by its name, or "class NAME" for a class with all its members. Imported is
nothing but the operations of the host interface and the C and C++ run-time libraries.
"""
import pathlib
import re
import subprocess
import sys

HOST_CLASSES = ("Variable", "VarRegister", "VarClass", "Owner", "Token", "Engine", "Processor",
                "Buffer", "TarnAss")
HOST_FUNCTIONS = ("TarnError", "GetErrorOffset", "GetOwner", "Rand", "HMALLOC", "HMALLOCZ",
                  "HREALLOC", "HFREE")
RUN_TIME = re.compile(r"@(GLIBC|GLIBCXX|CXXABI|GCC|LIBC)")
# Weak references that start-up code makes and the loader may leave unresolved.
START_UP = ("_ITM_", "__gmon_start__", "__cxa_finalize")
CLASS_DATA = re.compile(r"^(vtable|typeinfo|typeinfo name|VTT|guard variable) for ")


def symbols(library, which):
    output = subprocess.run(["nm", "-D", "-C", which, library], check=True, capture_output=True,
                            text=True).stdout
    for line in output.splitlines():
        match = re.match(r"^(?:[0-9a-f]+)?\s+(\S)\s+(.*)$", line)
        yield match.group(1), match.group(2)


def owner_and_name(symbol):
    """("T_Array<int>", ...) for a member of a class, (None, "LnGamma") for a free function."""
    text = CLASS_DATA.sub("class-data-of ", symbol)
    if text.startswith("class-data-of "):
        target = text[len("class-data-of "):]
        return target.rpartition("::")[0] or target, target
    text = re.sub(r"@.*$", "", text).replace("[abi:cxx11]", "")
    depth, last, end = 0, None, len(text)
    for position, character in enumerate(text):
        if character == "<":
            depth += 1
        elif character == ">" and text[:position].count("operator") == 0:
            depth -= 1
        elif character == "(" and depth == 0:
            end = position
            break
        elif text.startswith("::", position) and depth == 0:
            last = position
    # A template function's symbol begins with its return type.
    name = text[:end]
    if last is None:
        return None, re.sub(r"^.* (?=\S+$)", "", re.sub(r"<.*>$", "", name))
    return name[:last].split(" ")[-1], name[last + 2:]


def read_allowed(path):
    lines = [line.strip() for line in path.read_text().splitlines()]
    entries = [line for line in lines if line and not line.startswith("#")]
    classes = {entry[len("class "):] for entry in entries if entry.startswith("class ")}
    return classes, {entry for entry in entries if not entry.startswith("class ")}


def check_exports(library, classes, names):
    seen = set()
    for _, symbol in symbols(library, "--defined-only"):
        owner, name = owner_and_name(symbol)
        entry = f"class {owner}" if owner else name
        if (owner in classes) if owner else (name in names):
            seen.add(entry)
        else:
            yield f"exports {symbol}"
    for entry in sorted(names | {f"class {name}" for name in classes}):
        if entry not in seen:
            yield f"does not export {entry}"


def check_imports(library):
    for kind, symbol in symbols(library, "--undefined-only"):
        if RUN_TIME.search(symbol) or symbol.startswith(START_UP):
            continue
        owner, name = owner_and_name(symbol)
        if owner in HOST_CLASSES or (owner is None and name in HOST_FUNCTIONS):
            continue
        yield f"imports {symbol} ({kind})"


def main():
    library = sys.argv[1]
    classes, names = read_allowed(pathlib.Path(__file__).with_name("exported_names.txt"))
    found = [*check_exports(library, classes, names), *check_imports(library)]
    print("\n".join(found) or f"{len(classes)} classes and {len(names)} other names, as listed")
    return 1 if found else 0


sys.exit(main())
