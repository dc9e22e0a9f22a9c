#!/usr/bin/env python3
"""Checks that shared libraries export what the public headers declare, no more and no less.

usage: check_exports.py <list of public names> <installed headers> <folder of shared libraries> <static library> ...

The static libraries tell which of the declared names have any code that could be exported.
"""

import pathlib
import re
import subprocess
import sys

# "vtable for X", "non-virtual thunk to X::f()", "guard variable for X::f()::x": about X.
ABOUT = re.compile(r"^(?:vtable|VTT|typeinfo|typeinfo name|(?:non-)?virtual thunk|guard variable) (?:for|to) ")
STRONG = "TDBR"


def symbols(kinds, *arguments):
    """Demangled names without arguments, "zolt::oss::PointerTC" for all that is about templates."""
    output = subprocess.run(["nm", "-C", "--defined-only", *arguments], capture_output=True, text=True, check=True).stdout
    for kind, name in re.findall(r"^[0-9a-f]+ (\w) (.+)$", output, re.MULTILINE):
        if kind in kinds:
            yield re.split(r"[(\[<]", ABOUT.sub("", name), maxsplit=1)[0]


def declared(header):
    """Classes with a body and functions at namespace level; the names are qualified."""
    open_blocks = []
    for line in re.sub(r"//[^\n]*", "", header.read_text(encoding="utf-8")).splitlines():
        line = line.rstrip().replace("[[nodiscard]] ", "")
        namespace = re.match(r"namespace ([\w:]+) \{$", line)
        name = re.match(r"(?:class|struct) (?:Q_DECL_EXPORT )?(\w+)[^;]*$", line) or re.match(
            r"(?!inline|constexpr|template|using|typedef|class|struct|namespace)\w[\w:<>,&* ]*\W(\w+)\(", line
        )
        if name:
            yield "::".join([*filter(None, open_blocks), name.group(1)])
        if re.match(r"\w.*\{$", line):
            open_blocks.append(namespace and namespace.group(1))
        elif line.startswith("}") and open_blocks:
            open_blocks.pop()


def owner(name, names):
    """The listed class or function that a symbol belongs to."""
    while name and name not in names:
        name = name.rpartition("::")[0]
    return name


def main(listing, headers, libraries, *static):
    names = {line for line in pathlib.Path(listing).read_text().splitlines() if line and not line.startswith("#")}
    if not (pathlib.Path(libraries) / "libzolt_qt.so").exists():
        names = {name for name in names if not name.startswith("zolt::qt::")}
    complaints = []
    exported = set()
    for library in sorted(pathlib.Path(libraries).glob("libzolt_*.so")):
        for name in symbols("TDBRVWui", "-D", library):
            found = owner(name, names)
            exported.add(found)
            if not found:
                complaints.append(f"{library.name} exports {name}")
    public = {name for header in pathlib.Path(headers).rglob("*.h") for name in declared(header)}
    with_code = {prefix for name in symbols(STRONG, *static) for prefix in (name, name.rpartition("::")[0])}
    complaints += [f"{name} is public, but not exported" for name in public & with_code - exported]
    complaints += [f"{name} is listed, but in no public header" for name in names - public]
    complaints += [f"{name} is listed, but has nothing to export" for name in names - exported]
    print("\n".join(sorted(complaints)) or f"{len(names)} public names")
    return 1 if complaints else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
