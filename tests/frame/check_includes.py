#!/usr/bin/env python3
"""Fails when a folder includes one above it, naming the line.

    check_includes.py SOURCE-FOLDER
"""
import pathlib
import re
import sys

# What each layer may include besides itself. "base" is frame/ without the entries, which stand on
# top of the functions that they hand to the host.
ALLOWED = {
    "base": set(),
    "special": {"base"},
    "arrays": {"base"},
    "linalg": {"base", "arrays"},
    "tfunc": {"base", "linalg"},
    "optim": {"base", "special", "arrays", "linalg"},
    "stat": {"base", "special", "arrays", "linalg", "tfunc", "optim"},
    "entry": {"base", "special"},
    "host": {"base", "entry"},
    "app": {"base", "host"},
}
INCLUDE = re.compile(r'^\s*#\s*include\s*"([^"]+)"')


def layer_of(path):
    """The layer of a project path such as "frame/host.h"; None for files outside the layers."""
    folder, _, name = path.partition("/")
    if folder == "frame":
        return "entry" if name.startswith(("module_entry", "script_")) else "base"
    return folder if folder in ALLOWED else None


def violations_in(root, file):
    source = file.relative_to(root).as_posix()
    layer = layer_of(source)
    for number, line in enumerate(file.read_text().splitlines(), 1):
        match = INCLUDE.match(line)
        if not match:
            continue
        target = layer_of(match.group(1))
        if target is None:
            yield f"{source}:{number}: not the path of a project header: {match.group(1)}"
        elif target != layer and target not in ALLOWED[layer]:
            yield f"{source}:{number}: {layer} must not include {target} ({match.group(1)})"


def main():
    root = pathlib.Path(sys.argv[1])
    files = [
        file
        for folder in ("frame", "special", "arrays", "linalg", "tfunc", "optim", "stat", "host", "app")
        for pattern in ("*.h", "*.cpp")
        for file in sorted((root / folder).rglob(pattern))
    ]
    found = [text for file in files for text in violations_in(root, file)]
    print("\n".join(found) or f"{len(files)} files, every include points downwards")
    return 1 if found or not files else 0


sys.exit(main())
