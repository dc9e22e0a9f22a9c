#!/usr/bin/env python3
"""Checks every #include below src/zolt against include_rules.txt."""

import pathlib
import re
import sys

import sources

INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]')


class Rules:
    def __init__(self, file):
        self.header = {}
        self.source = {}
        self.core = []
        self.not_in_core = []
        for line in file.read_text(encoding="utf-8").splitlines():
            if not line.strip() or line.startswith("#"):
                continue
            name, _, rest = line.partition(":")
            if name == "core":
                self.core = rest.split()
            elif name == "not in the core":
                self.not_in_core = rest.split()
            else:
                for_headers, _, for_sources = rest.partition("|")
                self.header[name] = for_headers.split()
                self.source[name] = for_headers.split() + for_sources.split()

    def rule_for(self, name):
        fitting = [rule for rule in self.header if within(name, rule)]
        return max(fitting, key=len, default=None)


def within(name, folder):
    return name == folder or name.startswith(folder + "/")


def may_include(user, used, allowed):
    """Whether file `user` may include file `used`, both named below src/zolt."""
    folder, detail, _ = used.partition("/detail/")
    if detail:
        return within(user, folder)
    return any(within(used, entry) for entry in allowed)


def includes(text):
    for number, line in enumerate(text.splitlines(), 1):
        found = INCLUDE.match(line)
        if found:
            yield number, found.group(1) == '"', found.group(2)


def check(rules):
    complaints = []
    for path in sources.files("src/zolt"):
        name = path.relative_to("src/zolt").as_posix()
        rule = rules.rule_for(name)
        if rule is None:
            complaints.append(f"{path}: include_rules.txt says nothing about this folder")
            continue
        in_core = any(within(name, folder) for folder in rules.core)
        public = path.suffix == ".h" and "detail" not in path.parts
        allowed = (rules.header if public else rules.source)[rule] + [rule]
        for number, quoted, target in includes(sources.read(path)):
            place = f"{path}:{number}"
            if not quoted:
                if in_core and (target in rules.not_in_core or not re.fullmatch(r"[a-z_0-9]+", target)):
                    complaints.append(f"{place}: the core does without <{target}>")
            elif not target.startswith("zolt/"):
                complaints.append(f'{place}: "{target}" is not a full path')
            elif not (sources.ROOT / "src" / target).is_file():
                complaints.append(f'{place}: "{target}" does not exist')
            elif not may_include(name, target[len("zolt/") :], allowed):
                complaints.append(f'{place}: {rule} may not include "{target}" here')
    for path in sources.files("hosts", "examples", "bench"):
        for number, quoted, target in includes(sources.read(path)):
            if quoted and target.startswith("zolt/") and "/detail/" in target:
                complaints.append(f'{path}:{number}: "{target}" is internal to its folder')
    return complaints


if __name__ == "__main__":
    here = pathlib.Path(__file__).resolve().parent
    sys.exit(sources.report(check(Rules(here / "include_rules.txt"))))
