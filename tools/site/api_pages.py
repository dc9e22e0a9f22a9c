"""The pages of the site about interfaces: C headers, and the TypeScript declarations of the element."""

import html
import re

# What the parts of the element need of it, and what the browser calls.
INNER = r"root|parts|handle|internals|shown|hasFocus|isLocked|act|say|refresh|useClipboard|constructor|formAssociated|observedAttributes|\w+Callback"


def marked(text):
    """A comment as HTML: names in backquotes are code."""
    return re.sub(r"`([^`]+)`", r"<code>\1</code>", html.escape(text, quote=False))


def told(comment):
    lines = [re.sub(r"^\s*(/\*\*?|\*(?!/))?\s?", "", line) for line in re.sub(r"\s*\*/\s*$", "", comment).splitlines()]
    return " ".join(line.strip() for line in lines).strip()


def header_page(path, text):
    """Each declaration of a C header, after the comment that tells of it."""
    text = re.sub(r"#pragma once\n|#include .*\n|#if\w* __cplusplus\n|#endif.*\n|extern \"C\" \{\n|#ifdef __cplusplus\n|^\}\n", "", text, flags=re.MULTILINE)
    out = [f"<h1>{html.escape(path)}</h1>"]
    code = []

    def end():
        if any(line.strip() for line in code):
            out.append("<pre><code>" + html.escape("\n".join(code).strip()) + "</code></pre>")
        code.clear()

    # Comments at the beginning of a line tell of what follows; others belong to their line.
    for part in re.split(r"^(/\*[^]*?\*/)\n".replace("[^]", r"[\s\S]"), text, flags=re.MULTILINE):
        if not part.startswith("/*"):
            code += part.splitlines()
            continue
        end()
        section = re.fullmatch(r"/\* -+ (.*?) -+ \*/", part)
        out.append(f"<h2>{marked(section.group(1))}</h2>" if section else f"<p>{marked(told(part))}</p>")
    end()
    return "\n".join(out)


def members_of(text):
    """The members of a class in a declaration file, those that are no inner ones: name, declaration, comment."""
    found = {}
    text = text[text.index(" class ") :]
    for comment, line in re.findall(r"^    (?:(/\*\*.*?\*/)\s+)?((?:get |set |readonly |abstract )*\w+[(?:].*;)$", text, flags=re.MULTILINE):
        kind, name = re.match(r"((?:get |set |readonly |abstract )*)(\w+)", line).groups()
        if re.fullmatch(INNER, name):
            continue
        if name in found and "set " in kind:
            found[name] = (found[name][0].replace("readonly ", ""), found[name][1])
        elif name not in found and "set " not in kind:
            shown = re.sub(r"^(abstract )?(get )?", "", line).rstrip(";")
            found[name] = ("readonly " + shown.replace("()", "", 1) if "get " in kind else shown, told(comment))
    return found


def list_of(members):
    rows = [f"<dt><code>{html.escape(declared)}</code></dt><dd>{marked(comment)}</dd>" for declared, comment in members]
    return "<dl>" + "".join(rows) + "</dl>"


def types_page(types):
    """The element as TypeScript sees it, from the package's declarations."""
    texts = {file.name.split(".")[0]: file.read_text(encoding="utf-8") for file in (types / "element").glob("*.d.ts")}
    members = members_of(texts["control"]) | members_of(texts["element"])
    methods = {name: one for name, one in members.items() if re.match(r"\w+\(", one[0])}
    out = ["<h1>The element in TypeScript</h1>", '<p><code>ZoltFormulaElement extends HTMLElement</code>; what it does is told in <a href="web.html">Web pages</a>.</p>']
    out += ["<h2>Properties</h2>", list_of(one for name, one in sorted(members.items()) if name not in methods)]
    out += ["<h2>Methods</h2>", list_of(one for _, one in sorted(methods.items())), "<h2>Functions and types</h2>"]
    exported = re.findall(r"export (?:type )?\{ ([^}]*) \} from '\./(\w+)\.js'", texts["index"])
    for names, file in exported:
        for name in (name.removeprefix("type ") for name in names.split(", ")):
            text = texts[file]
            if again := re.search(rf"export type \{{ {name} \}} from '(.*)\.mjs'", text):
                text = (types / "element" / (again.group(1) + ".d.mts")).resolve().read_text(encoding="utf-8")
            found = re.search(rf"^(?:/\*\*.*\*/\n)?export (?:declare )?(?:function|type|interface) {name}\b(?:.*\{{\n[\s\S]*?^\}};?|[\s\S]*?;)$", text, flags=re.MULTILINE)
            if found:
                out.append(f"<h3>{name}</h3><pre><code>{html.escape(found.group(0))}</code></pre>")
            elif name != "ZoltFormulaElement":
                raise SystemExit(f"api_pages.py: {name} is not found in {file}")
    return "\n".join(out)
