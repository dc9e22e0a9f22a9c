#!/usr/bin/env python3
"""Compares what two builds of state_dump write.

usage: compare_states.py <folder with case files> <state_dump here> <command that runs the other one> ...
"""

import itertools
import subprocess
import sys


def dump(command, folder):
    return subprocess.run([*command, folder], stdout=subprocess.PIPE, check=True).stdout.split(b"\n")


def main(folder, here, *other):
    place = b""
    differences = 0
    pairs = itertools.zip_longest(dump([here], folder), dump(other, folder), fillvalue=b"")
    for count, (expected, found) in enumerate(pairs, 1):
        if expected.startswith(b"## "):
            place = expected[3:]
        if expected != found:
            differences += 1
            if differences <= 10:
                print(f"{place.decode()}:\n  here  {expected[:200]}\n  there {found[:200]}")
    print(f"{count} lines, {differences} differ")
    # A corpus has at least this many lines.
    return 1 if differences or count < 5000 else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
