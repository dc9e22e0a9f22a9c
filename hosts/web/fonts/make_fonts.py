#!/usr/bin/env python3
"""Makes the fonts of the web host from installed font files.

  make_fonts.py metrics <output.cpp> <folder>...   the measures of the faces, as a source file
  make_fonts.py woff2 <output folder> <folder>...  the faces to paint with, cut down to what formulas show

The measures are font files without outlines, as `SfntFontC` reads them: advances, the map of characters, and of
each glyph whose ink reaches beyond its advance how far it does."""

import pathlib
import struct
import sys

from fontTools import subset
from fontTools.ttLib import TTFont

# The faces in the order of FontSetC::load, with the characters that are wanted of each (None: all it has) and what
# they are for (FaceUseE).
# What the other faces lack: letters with accents, Cyrillic, letter-like signs, arrows, operators.
OTHERS = [
    *range(0xA1, 0x180), *range(0x370, 0x400), *range(0x400, 0x460), *range(0x2010, 0x2060), *range(0x2070, 0x20A0),
    *range(0x2100, 0x2150), *range(0x2190, 0x2200), *range(0x2200, 0x2300), *range(0x2308, 0x230C), 0x25CF,
    *range(0x27E8, 0x27EC), *range(0x2A00, 0x2A10), *range(0x1D538, 0x1D56C),
]  # fmt: skip
FACES = [
    ("KaTeX_Main", "KaTeX_Main-Regular.ttf", None, "ALL"),
    ("KaTeX_Math", "KaTeX_Math-Italic.ttf", None, "ALL"),
    ("DejaVu Serif", "DejaVuSerif.ttf", OTHERS, "ALL"),
    ("DejaVu Sans", "DejaVuSans.ttf", OTHERS, "ALL"),
    ("KaTeX_Main", "KaTeX_Main-Italic.ttf", [c for c in range(0x500) if chr(c).isalpha()], "WORDS"),
    ("KaTeX_AMS", "KaTeX_AMS-Regular.ttf", [ord(c) for c in "CHNPQRZ"], "DOUBLED"),
]

# What most formulas are written with, in files of their own; `addFaces` in element/shared.ts has the same ranges.
FREQUENT = {
    "KaTeX_Main-Regular.ttf": [
        *b" !()+,-./0123456789:<=>abcdefghilmnoprstux", 0x2032, 0x2212, 0x221A, 0x221E, 0x2264, 0x2265, 0x22C5,
    ],
    "KaTeX_Math-Italic.ttf": [*b"ABCDEFGHILMNPRSTVXabcdefghijklmnopqrstuvwxyz"],
}  # fmt: skip


def load(folders, name):
    for folder in folders:
        path = pathlib.Path(folder) / name
        if path.exists():
            return TTFont(path)
    sys.exit(f"make_fonts.py: {name} is in none of {', '.join(map(str, folders))}")


def choose(fonts):
    """The characters of each face: a fallback has only what no face before it has."""
    known, chosen = set(), []
    for (_, _, wanted, use), font in zip(FACES, fonts):
        has = set(font.getBestCmap())
        mine = has if wanted is None else has & set(wanted)
        if use == "ALL":
            mine = mine - known if wanted is not None else mine
            known |= mine
        chosen.append(sorted(c for c in mine if c <= 0xFFFF))
    return chosen


def table_file(tables):
    """A font file with these tables."""
    head = struct.pack(">IHHHH", 0x00010000, len(tables), 0, 0, 0)
    offset = len(head) + 16 * len(tables)
    body = b""
    for tag, data in sorted(tables.items()):
        head += struct.pack(">4sIII", tag.encode(), 0, offset + len(body), len(data))
        body += data + b"\0" * (-len(data) % 4)
    return head + body


def character_map(characters):
    """A map of format 4 to the glyphs 1, 2, ... in this order."""
    segments = []
    for glyph, c in enumerate(characters, 1):
        if segments and segments[-1][1] == c - 1:
            segments[-1][1] = c
        else:
            segments.append([c, c, (glyph - c) & 0xFFFF])
    segments.append([0xFFFF, 0xFFFF, 1])
    count = len(segments)
    columns = [[end for _, end, _ in segments], [0], [start for start, _, _ in segments]]
    columns += [[delta for _, _, delta in segments], [0] * count]
    arrays = b"".join(struct.pack(f">{len(column)}H", *column) for column in columns)
    table = struct.pack(">HHHHHHH", 4, 14 + len(arrays), 0, count * 2, 0, 0, 0) + arrays
    return struct.pack(">HHHHI", 0, 1, 3, 1, 12) + table


def metrics(font, characters):
    names, widths, outlines = font.getBestCmap(), font["hmtx"], font["glyf"]
    advances, places, heads = [0], [0, 0], b""
    for c in characters:
        advance, _ = widths[names[c]]
        advances.append(advance)
        right = getattr(outlines[names[c]], "xMax", 0)
        if right > advance:
            heads += struct.pack(">hhhhh", 0, 0, 0, right, 0)
        places.append(len(heads) // 2)
    return table_file(
        {
            "head": struct.pack(">18xH30xHxx", font["head"].unitsPerEm, 0),
            "hhea": struct.pack(">34xH", len(advances)),
            "maxp": struct.pack(">IH", 0x00005000, len(advances)),
            "hmtx": b"".join(struct.pack(">HH", advance, 0) for advance in advances),
            "cmap": character_map(characters),
            "loca": struct.pack(f">{len(places)}H", *places),
            "glyf": heads,
        }
    )


def write_metrics(output, folders):
    fonts = [load(folders, name) for _, name, _, _ in FACES]
    out = ['#include "hosts/web/bridge/font_metrics.h"', "", "#include <cstddef>", "", "namespace zolt::web {", "", "namespace {", ""]
    rows = []
    for i, ((name, _, _, use), font, characters) in enumerate(zip(FACES, fonts, choose(fonts))):
        data = metrics(font, characters)
        # A literal, since compilers take long over lists of numbers; in pieces, since some limit the length of one.
        out.append(f"constexpr char face_{i}[] =")
        pieces = ["".join(f"\\{byte:03o}" for byte in data[k : k + 32]) for k in range(0, len(data), 32)]
        out += [f'    "{piece}"' for piece in pieces]
        out[-1] += ";"
        rows.append(f'      {{"{name}", std::string(face_{i}, sizeof face_{i} - 1), surfaces::FACE_FOR_{use}}},')
    out += ["", "}  // namespace", "", "std::vector<surfaces::FontSetC::FileS> getFontMetrics() {", "  return {"]
    out += rows + ["  };", "}", "", "}  // namespace zolt::web", ""]
    pathlib.Path(output).write_text("\n".join(out))


def write_woff2(output, folders):
    folder = pathlib.Path(output)
    folder.mkdir(parents=True, exist_ok=True)
    fonts = [load(folders, name) for _, name, _, _ in FACES]
    cuts = [(name, "", characters) for (_, name, _, _), characters in zip(FACES, choose(fonts))]
    cuts += [(name, "-frequent", characters) for name, characters in FREQUENT.items()]
    for name, suffix, characters in cuts:
        font = load(folders, name)
        if suffix and not set(characters) <= set(font.getBestCmap()):
            sys.exit(f"make_fonts.py: {name} lacks a frequent character")
        options = subset.Options(flavor="woff2", hinting=False, layout_features=[], notdef_outline=False, name_IDs=[])
        options.drop_tables += ["gasp"]
        cutter = subset.Subsetter(options)
        cutter.populate(unicodes=characters)
        cutter.subset(font)
        font.flavor = "woff2"
        font.save(folder / (pathlib.Path(name).stem + suffix + ".woff2"))


def main():
    kinds = {"metrics": write_metrics, "woff2": write_woff2}
    if len(sys.argv) < 4 or sys.argv[1] not in kinds:
        sys.exit(__doc__)
    kinds[sys.argv[1]](sys.argv[2], sys.argv[3:])


if __name__ == "__main__":
    main()
