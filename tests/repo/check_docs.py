#!/usr/bin/env python3
"""Checks that the documents keep up: links lead somewhere, code in them is code that is built, every file is explained.

A block that starts with ```cpp <file> shows a part of that file.
"""

import pathlib
import re
import sys

import sources

DESCRIBED = sources.CODE_SUFFIXES + (".ts", ".txt", ".qrc", ".zved", ".desktop", ".svg", ".xml")
LINK = re.compile(r"\[[^\]]*\]\(([^)#\s]+)[^)]*\)")
CODE_BLOCK = re.compile(r"^```cpp (\S+)\n(.*?)^```$", re.MULTILINE | re.DOTALL)


def documents():
    yield from (path.relative_to(sources.ROOT) for path in sorted(sources.ROOT.glob("*.md")))
    yield from sources.files("docs", suffixes=(".md",))


def check_document(path, text):
    for target in LINK.findall(text):
        if "://" not in target and not (sources.ROOT / path.parent / target).exists():
            yield f"{path}: {target} does not exist"
    for file, code in CODE_BLOCK.findall(text):
        if code not in sources.read(pathlib.Path(file)):
            yield f"{path}: the code shown is not in {file}"


def check_file_lists():
    """Every file has a line under the heading of its folder, and every line its file."""
    text = sources.read(pathlib.Path("docs/architecture.md"))
    named, folder = set(), ""
    for heading, name in re.findall(r"^### `(.+)`$|^- `([^`]+)`: ", text, re.MULTILINE):
        folder = heading or folder
        if heading and not heading.startswith("hosts/") and f"| `{heading}/` |" not in text:
            yield f"docs/architecture.md: the table of folders lacks {heading}"
        if name:
            named.add(f"{folder}/{name}")
    files = (path for path in sources.files("src", "hosts", suffixes=DESCRIBED) if path.name != "CMakeLists.txt")
    for name in sorted(named ^ {path.with_suffix("").as_posix().removeprefix("src/zolt/") for path in files}):
        yield f"docs/architecture.md: {name} " + ("does not exist" if name in named else "has no line")


def check_promises():
    """The tests that docs/reliability.md names exist."""
    tests = "".join(sources.read(path) for path in sources.files("tests", "fuzzing", suffixes=(".cpp", ".py", ".txt")))
    tables = sources.read(pathlib.Path("docs/reliability.md")).partition("\n## What shows it\n")[2]
    for cell in re.findall(r"^\|.*\|([^|]+)\|$", tables, re.MULTILINE):
        for suite, test, function in re.findall(r"`(?:([A-Z][a-z]\w+)\.(\w*)\*?|(test_\w+|[a-z]+[A-Z]\w+))`", cell):
            if not re.search(rf"\({suite}, {test}" if suite else rf"\b{function}\(", tests):
                yield f"docs/reliability.md: there is no test {suite}.{test}{function}"
        for case_file, folder in re.findall(r"`(?:(\w+\.cases)|regressions/(\w+))`", cell):
            where, name = ("tests", f"**/{case_file}") if case_file else ("fuzzing/regressions", f"{folder}/*")
            if not any((sources.ROOT / where).glob(name)):
                yield f"docs/reliability.md: there is nothing at {where}/{name}"


def main():
    complaints = [*check_file_lists(), *check_promises()]
    for path in documents():
        complaints += check_document(path, sources.read(path))
    return sources.report(complaints)


if __name__ == "__main__":
    sys.exit(main())
