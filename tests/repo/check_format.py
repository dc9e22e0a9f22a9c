#!/usr/bin/env python3
"""Checks that clang-format would change nothing. usage: check_format.py <clang-format>

Exits with 77 (skipped) for another major version than the one the files are formatted with: they differ in details.
"""

import re
import subprocess
import sys

import sources

VERSION = "14"


def main(clang_format):
    version = subprocess.run([clang_format, "--version"], capture_output=True, text=True, check=True).stdout
    if re.search(r"version (\d+)", version).group(1) != VERSION:
        print(f"formatted with clang-format {VERSION}; this is {version.strip()}")
        return 77
    paths = [str(path) for path in sources.files()]
    return subprocess.run([clang_format, "--dry-run", "--Werror", *paths], cwd=sources.ROOT, check=False).returncode


if __name__ == "__main__":
    sys.exit(main(sys.argv[1]))
