#!/usr/bin/env python3
"""Sums up ctest's result files: every case of a GoogleTest program counts, any other test counts as one.

usage: count_results.py <junit file> ...
Names what failed and what was skipped; the last line is "N passed, N failed", with ", N skipped" when there are any.
"""

import re
import sys
import xml.etree.ElementTree as ElementTree


def count_cases(verdict, output):
    """How many cases a GoogleTest program's last lines give this verdict; None when they do not speak of it."""
    found = re.findall(r"^\[ +%s +\] (\d+) tests?\b" % verdict, output, re.MULTILINE)
    return sum(map(int, found)) if found else None


def main(files):
    passed = failed = skipped = 0
    for file in files:
        try:
            tests = list(ElementTree.parse(file).getroot().iter("testcase"))
        except (OSError, ElementTree.ParseError) as error:
            print(f"failed: no results ({error})")
            failed += 1
            continue
        for test in tests:
            output = test.findtext("system-out") or ""
            name = f"{test.get('name')} ({file})"
            cases = count_cases("PASSED", output)
            if test.get("status") == "run":
                passed += 1 if cases is None else cases
                skipped += count_cases("SKIPPED", output) or 0
            elif test.get("status") == "fail":
                print(f"failed: {name}")
                passed += cases or 0
                failed += count_cases("FAILED", output) or 1
            elif not (test.find("skipped").get("message") or "").startswith("SKIP_"):
                print(f"failed: {name}, which could not be run")
                failed += 1
            else:
                print(f"skipped: {name}")
                skipped += 1
    print(f"{passed} passed, {failed} failed" + (f", {skipped} skipped" if skipped else ""))
    return 0 if passed and not failed else 1


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
