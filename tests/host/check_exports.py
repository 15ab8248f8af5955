#!/usr/bin/env python3
"""Reads the symbol table of the built host library and checks that it exports the host interface
and the embedded host, and nothing of what it is made of.

    check_exports.py LIBRARY
"""
import re
import subprocess
import sys

CLASSES = ("Variable", "VarRegister", "VarClass", "Owner", "Token", "Engine", "Processor", "Buffer",
           "TarnAss", "EmbeddedHost", "HostError")
FUNCTIONS = ("TarnError", "GetErrorOffset", "GetOwner", "Rand", "HMALLOC", "HMALLOCZ", "HREALLOC",
             "HFREE")
ALLOWED = re.compile(
    r"^((vtable|typeinfo|typeinfo name) for )?(%s)(::|$)|^(%s)\(" %
    ("|".join(CLASSES), "|".join(FUNCTIONS)))
# Instances of the standard library's templates are common property of all libraries.
STANDARD = re.compile(r"(^|\s)(std|__gnu_cxx)::")

output = subprocess.run(["nm", "-D", "-C", "--defined-only", sys.argv[1]], check=True,
                        capture_output=True, text=True).stdout
names = [line.split(maxsplit=2)[2] for line in output.splitlines()]
wrong = [name for name in names
         if not ALLOWED.match(name) and not STANDARD.search(name.split("(")[0])]
missing = [function for function in FUNCTIONS
           if not any(name.startswith(function + "(") for name in names)]
for name in wrong:
    print("exported, but no part of the interface:", name)
for name in missing:
    print("not exported:", name)
print(len(names), "names checked")
sys.exit(1 if wrong or missing else 0)
