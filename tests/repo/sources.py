"""The project's files, as the source checks see them."""

import pathlib
import re

ROOT = pathlib.Path(__file__).resolve().parents[2]
CODE_FOLDERS = ("src", "hosts", "examples", "tests", "fuzzing", "bench")
CODE_SUFFIXES = (".h", ".cpp")


def files(*folders, suffixes=CODE_SUFFIXES):
    """Every file with one of the suffixes below the folders, relative to the root, in a stable order."""
    for folder in folders or CODE_FOLDERS:
        for path in sorted((ROOT / folder).rglob("*")):
            if path.suffix in suffixes and path.is_file() and "node_modules" not in path.parts:
                yield path.relative_to(ROOT)


def read(path):
    return (ROOT / path).read_bytes().decode("utf-8")


_NOT_CODE = re.compile(
    r"""//[^\n]* | /\*.*?\*/ | R"(\w*)\(.*?\)\1" | "(?:\\.|[^"\\\n])*" | '(?:\\.|[^'\\\n])+'""",
    re.DOTALL | re.VERBOSE,
)


def code_only(text):
    """The text with comments and literals blanked; line numbers stay."""

    def blank(match):
        # The ' of a digit separator opens no literal.
        before = text[match.start() - 1 : match.start()]
        if match.group().startswith("'") and before.isalnum() and before not in "uUL8":
            return match.group()
        return re.sub(r"[^\n]", " ", match.group())

    return _NOT_CODE.sub(blank, text)


def report(complaints):
    """Prints the complaints; the exit status for them."""
    for complaint in complaints:
        print(complaint)
    return 1 if complaints else 0
