#!/usr/bin/env python3
"""Checks what no compiler does: sizes, that every source is built, what the core does without."""

import os
import re
import sys

import sources

CORE = ("src/zolt/oss", "src/zolt/common", "src/zolt/algexpr", "src/zolt/ved", "src/zolt/catalogue")
MAX_LINES = {".h": 300, ".cpp": 500}
NOT_IN_CORE = re.compile(
    r"\b(?:throw|try|catch|dynamic_cast|typeid|goto)\b"
    r"|\b(?:abort|assert|exit|terminate|printf|fprintf|puts|setlocale)\s*\("
)


def check_size(path, text):
    lines = text.count("\n")
    if lines > MAX_LINES[path.suffix]:
        yield f"{path}: {lines} lines; {MAX_LINES[path.suffix]} is the most that one {path.suffix} file should have"


def check_core(path, text):
    for number, line in enumerate(sources.code_only(text).splitlines(), 1):
        found = NOT_IN_CORE.search(line)
        if found:
            yield f"{path}:{number}: the core does without {found.group().rstrip('( ')}"


def listed_files():
    """Whatever the CMakeLists.txt files name, relative to the root."""
    for folder in sources.CODE_FOLDERS:
        for lists in (sources.ROOT / folder).rglob("CMakeLists.txt"):
            for word in re.findall(r"[\w./-]+\.(?:cpp|h)\b", lists.read_text(encoding="utf-8")):
                yield os.path.relpath(lists.parent / word, sources.ROOT)


def check_listed(path, listed):
    """A source that no CMakeLists.txt names is built by nobody, a library's header that none names installed by nobody."""
    if (path.suffix == ".cpp" or path.parts[0] == "src") and str(path) not in listed:
        yield f"{path}: listed in no CMakeLists.txt"


def main():
    complaints = []
    listed = set(listed_files())
    for path in sources.files():
        text = sources.read(path)
        if path.suffix == ".h" and "#pragma once\n" not in text:
            complaints.append(f"{path}: no #pragma once")
        complaints += check_listed(path, listed)
        if path.parts[0] != "tests":
            complaints += check_size(path, text)
    for path in sources.files(*CORE):
        complaints += check_core(path, sources.read(path))
    return sources.report(complaints)


if __name__ == "__main__":
    sys.exit(main())
