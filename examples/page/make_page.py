#!/usr/bin/env python3
"""Makes a page of a text with formulas between dollar signs, each on the line of the text around it.

usage: make_page.py <ved> html|latex <folder> < text
Writes page.html, or page.tex and a PDF picture for each formula, into the folder.
"""

import html
import pathlib
import re
import subprocess
import sys


def pictures(ved, formulas):
    """The formulas as SVG, from one process that writes all of them as a stream."""
    command = [ved, "render", "--stream", "--svg-unit", "em", "--scale", "1.1", "--margin", "0.5", "-j", "2", "-"]
    stream = subprocess.run(command, input="\n".join(formulas).encode(), stdout=subprocess.PIPE, check=True).stdout
    while stream:
        head, _, stream = stream.partition(b"\n")
        size = int(head.split(b"\t")[1])
        # An HTML page has no place for the first line, which belongs to files of XML.
        yield re.sub(r"^<\?xml.*\n", "", stream[:size].decode())
        stream = stream[size + 1 :]


def make_html(ved, folder, parts):
    svg = pictures(ved, parts[1::2])
    body = "".join(next(svg) if i % 2 else html.escape(part) for i, part in enumerate(parts))
    body = body.replace("\n\n", "\n<p>\n")
    page = f'<!DOCTYPE html>\n<meta charset="utf-8">\n<style>body {{ font: 20px/2 serif; margin: 1em }}</style>\n<p>\n{body}'
    pathlib.Path(folder, "page.html").write_text(page, encoding="utf-8")


def make_latex(ved, folder, parts):
    # Letters of 16 points, which is scale 1, become as large as LaTeX's of ten.
    command = [ved, "render", "--sizes", "--scale", "0.625", "--margin", "0.5", "-o", "formula.pdf", "-"]
    formulas = "\n".join(parts[1::2]).encode()
    names = subprocess.run(command, input=formulas, stdout=subprocess.PIPE, cwd=folder, check=True).stdout.decode()
    boxes = []
    for line in names.splitlines():
        name, _, _, depth = line.split("\t")
        # What PDF calls a point is a big point in TeX.
        boxes.append(f"\\raisebox{{-{depth.replace('pt', 'bp')}}}{{\\includegraphics{{{name}}}}}")
    body = "".join(boxes[i // 2] if i % 2 else part for i, part in enumerate(parts))
    page = f"\\documentclass{{article}}\n\\usepackage{{graphicx}}\n\\begin{{document}}\n{body}\\end{{document}}\n"
    pathlib.Path(folder, "page.tex").write_text(page, encoding="utf-8")


if __name__ == "__main__":
    tool, kind, target = sys.argv[1:]
    make = {"html": make_html, "latex": make_latex}[kind]
    make(str(pathlib.Path(tool).resolve()), target, re.split(r"\$([^$]+)\$", sys.stdin.read()))
