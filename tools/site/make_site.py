#!/usr/bin/env python3
"""Makes the documentation site: make_site.py <folder of the element's package> <output folder> [<API reference>].

Every document of docs/ becomes a page, and so do the README, the element's README and the headers of the web host. In pages about a
notation there is a field to try it in. The site is files alone, and works where they are opened from disk: the element, the module
and the fonts are in one script and one style sheet."""

import base64
import html
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

import api_pages
import markdown

HERE = pathlib.Path(__file__).absolute().parent
ROOT = HERE.parents[1]

# The parts of the site, and the pages of each: file, title. A page about a notation has a field that speaks it.
PARTS = [
    ("Start", [("README.md", "Overview"), ("docs/web.md", "Web pages"), ("hosts/web/package/README.md", "The element's package"), ("docs/commands.md", "Commands"), ("docs/qt-widget.md", "The Qt widget"), ("docs/embedding.md", "Embedding in C++")]),
    ("Notations", [("docs/plain-text.md", "Plain text"), ("docs/latex.md", "LaTeX"), ("docs/mathml.md", "MathML"), ("docs/mathjson.md", "MathJSON"), ("docs/speech.md", "Speech"), ("docs/engines.md", "Engines")]),
    ("Formats", [("docs/event-scripts.md", "Event scripts"), ("docs/sheet-format.md", "Sheets"), ("docs/byte-format.md", "Bytes"), ("docs/pictures.md", "Pictures")]),
    ("API", [("types", "The element"), ("hosts/web/bridge/bridge.h", "bridge.h"), ("hosts/web/bridge/bridge_buffers.h", "bridge_buffers.h"), ("hosts/web/bridge/engine.h", "engine.h")]),
    ("Inside", [("docs/architecture.md", "Architecture"), ("docs/invariants.md", "Invariants"), ("docs/incremental.md", "Incremental work"), ("docs/performance.md", "Performance"), ("docs/reliability.md", "Reliability"), ("CONTRIBUTING.md", "Contributing"), ("SECURITY.md", "Security"), ("CHANGELOG.md", "Changes")]),
]  # fmt: skip
# The pages with tables of what can be written.
WITH_EXAMPLES = ("docs/plain-text.md", "docs/latex.md")
# The notation of a page's field, and a formula to begin with.
PLAYED = {
    "README.md": ("plain", "x = (-b±sqrt(b^2-4*a*c))/(2*a)"),
    "hosts/web/package/README.md": ("plain", "sqrt(x^2+1)/2"),
    "docs/web.md": ("plain", "lim(x->0,sin(x)/x) = 1"),
    "docs/commands.md": ("plain", "sum(k,1,n,k^2) = n*(n+1)*(2*n+1)/6"),
    "docs/embedding.md": ("prefix", "/(+(^(x,2),1),sqrt(x))"),
    "docs/plain-text.md": ("plain", "int(0,1,x^2,x) = 1/3"),
    "docs/latex.md": ("latex", r"\frac{-b\pm\sqrt{b^2-4ac}}{2a}"),
    "docs/mathml.md": ("mathml", "<math><mfrac><mi>a</mi><msqrt><mi>b</mi></msqrt></mfrac></math>"),
    "docs/speech.md": ("words", "(a+b)/(c-d)"),
    "docs/engines.md": ("plain", "1/3+1/6"),
}


def page_name(path):
    return "index.html" if path == "README.md" else re.sub(r"\W", "-", str(path).removesuffix(".md")).lower().removeprefix("docs-") + ".html"


ALL = {path: page_name(path) for _, pages in PARTS for path, _ in pages}
# Sources and folders that documents lead to, which get pages as well.
LINKED = {}


def link(target, of):
    """Where a link of a document leads in the site."""
    if "://" in target or target.startswith(("#", "mailto:")):
        return target
    file, mark, part = target.partition("#")
    path = (ROOT / of).parent.joinpath(file).resolve()
    if not path.exists() or not path.is_relative_to(ROOT):
        sys.exit(f"make_site.py: {of} leads to {target}, which is not there")
    if path.suffix in (".svg", ".png"):
        return f"files/{path.name}"
    name = path.relative_to(ROOT).as_posix()
    return (ALL.get(name) or LINKED.setdefault(name, page_name(name))) + mark + part


def source_page(name):
    """A file as it is, or what a folder has."""
    path = ROOT / name
    if path.is_file():
        return f"<h1>{html.escape(name)}</h1><pre><code>{html.escape(path.read_text(encoding='utf-8'))}</code></pre>"
    rows = [f'<li><a href="{link(one.name, name + "/index")}">{html.escape(one.name)}</a></li>' for one in sorted(path.iterdir()) if one.name[0] not in "._"]
    return f"<h1>{html.escape(name)}</h1><ul>{''.join(rows)}</ul>"


def body_of(path, package):
    if path == "types":
        return api_pages.types_page(package / "types")
    text = (ROOT / path).read_text(encoding="utf-8")
    if path.endswith(".h"):
        return api_pages.header_page(path, text)
    # What says which file a code block is part of is for a checker.
    text = re.sub(r"^```cpp \S+$", "```cpp", text, flags=re.MULTILINE)
    made = markdown.markdown(text, extensions=["tables", "fenced_code", "toc", "sane_lists"])
    # A table that needs no words above its columns has no headers.
    made = made.replace("<th></th>", "<td></td>")
    made = re.sub(r'(<a href=")([^"]*)"', lambda m: m.group(1) + html.escape(link(html.unescape(m.group(2)), path)) + '"', made)
    return re.sub(r'(<img [^>]*src=")([^"]*)"', lambda m: m.group(1) + link(m.group(2), path) + '"', made)


def player(path):
    if path not in PLAYED:
        return ""
    notation, formula = PLAYED[path]
    return (
        f'<section class="player" data-notation="{notation}"{" data-examples" if path in WITH_EXAMPLES else ""} aria-labelledby="try"><h2 id="try">Try it</h2>'
        f'<zolt-formula aria-label="A formula to edit" data-formula="{html.escape(formula)}"></zolt-formula>'
        f'<textarea rows="2" spellcheck="false" aria-label="The formula as text"{" readonly" if notation == "words" else ""}></textarea><p role="status"></p></section>'
    )


def navigation(of, has_reference):
    out = []
    for part, pages in PARTS:
        out.append(f"<h2>{part}</h2><ul>")
        for path, title in pages:
            current = ' aria-current="page"' if path == of else ""
            out.append(f'<li><a href="{ALL[path]}"{current}>{html.escape(title)}</a></li>')
        if part == "API" and has_reference:
            out.append('<li><a href="reference/index.html">C++ reference</a></li>')
        out.append("</ul>")
    return "".join(out)


def make_script(package, output):
    """The element and the module as one script that is no module, since browsers load none of these from disk."""
    encoded = base64.b64encode((package / "zolt.wasm").read_bytes()).decode()
    with tempfile.TemporaryDirectory() as folder:
        entry = pathlib.Path(folder) / "entry.js"
        entry.write_text(f'export * from "{(package / "zolt-formula.js").as_posix()}";\n')
        bundled = pathlib.Path(folder) / "bundle.js"
        esbuild = ROOT / "hosts/web/node_modules/.bin/esbuild"
        subprocess.run([esbuild, entry, "--bundle", "--format=iife", "--global-name=zolt", "--define:import.meta.url=\"\"", "--log-level=error", f"--outfile={bundled}"], check=True)
        text = bundled.read_text(encoding="utf-8")
    text += f'\nzolt.load({{ module: Uint8Array.from(atob("{encoded}"), (c) => c.charCodeAt(0)), fonts: null }});\n'
    (output / "formula.js").write_text(text, encoding="utf-8")


def make_faces(package):
    rules = []
    for file in sorted((package / "fonts").glob("*.woff2")):
        family, _, style = file.stem.partition("-")
        family = family.replace("DejaVu", "DejaVu ")
        data = base64.b64encode(file.read_bytes()).decode()
        italic = "font-style:italic;" if style == "Italic" else ""
        rules.append(f"@font-face{{font-family:'Zolt {family}';{italic}src:url(data:font/woff2;base64,{data})}}")
    return "\n".join(rules) + "\n"


def main():
    if len(sys.argv) not in (3, 4):
        sys.exit(__doc__)
    package, output = pathlib.Path(sys.argv[1]).resolve(), pathlib.Path(sys.argv[2])
    reference = pathlib.Path(sys.argv[3]) if len(sys.argv) == 4 else None
    shutil.rmtree(output, ignore_errors=True)
    (output / "files").mkdir(parents=True)
    make_script(package, output)
    (output / "site.css").write_text(make_faces(package) + (HERE / "site.css").read_text(encoding="utf-8"), encoding="utf-8")
    shutil.copy(HERE / "site.js", output)
    for picture in (ROOT / "docs/images").iterdir():
        shutil.copy(picture, output / "files")
    if reference:
        shutil.copytree(reference, output / "reference")
        # Of classes whose inner ones are all private, Doxygen promises a list that it leaves out.
        for page in (output / "reference").glob("*.html"):
            text = page.read_text(encoding="utf-8")
            if 'name="nested-classes"' not in text and '"#nested-classes"' in text:
                page.write_text(re.sub(r'<a href="#nested-classes">\w+</a>( &#124;\n)?', "", text), encoding="utf-8")
    forgotten = [path.name for path in (ROOT / "docs").glob("*.md") if f"docs/{path.name}" not in ALL]
    if forgotten:
        sys.exit(f"make_site.py: no part of the site has {', '.join(forgotten)}")
    frame = (HERE / "page.html").read_text(encoding="utf-8")

    def write(name, path, title, body):
        parts = {"title": html.escape(title), "navigation": navigation(path, reference is not None), "player": player(path), "body": body}
        (output / name).write_text(re.sub(r"\{\{(\w+)\}\}", lambda m: parts[m.group(1)], frame), encoding="utf-8")

    for _, pages in PARTS:
        for path, title in pages:
            write(ALL[path], path, title, body_of(path, package))
    # Pages of folders lead to further ones.
    written = set()
    while missing := LINKED.keys() - written:
        for path in missing:
            write(LINKED[path], path, path, source_page(path))
        written |= missing
    print(f"{len(ALL) + len(LINKED)} pages: {(output / 'index.html').resolve()}")


if __name__ == "__main__":
    main()
