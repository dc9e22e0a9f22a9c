#!/usr/bin/env python3
"""Checks that the documents keep up: links lead somewhere, code in them is code that is built, the folder table is complete.

A block that starts with ```cpp <file> shows a part of that file.
"""

import pathlib
import re
import sys

import sources

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


def check_folder_table():
    rules = (sources.ROOT / "tests/repo/include_rules.txt").read_text(encoding="utf-8")
    table = sources.read(pathlib.Path("docs/architecture.md"))
    for folder in re.findall(r"^([a-z/0-9]+):.*\|", rules, re.MULTILINE):
        if (sources.ROOT / "src/zolt" / folder).is_dir() and f"| `{folder}/` |" not in table:
            yield f"docs/architecture.md: the table lacks {folder}"


def main():
    complaints = list(check_folder_table())
    for path in documents():
        complaints += check_document(path, sources.read(path))
    return sources.report(complaints)


if __name__ == "__main__":
    sys.exit(main())
