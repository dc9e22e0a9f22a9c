#!/usr/bin/env python3
"""Runs the tool as people do. usage: cli_test.py <ved> <version> [unittest arguments]"""

import os
import pathlib
import pty
import re
import select
import shlex
import shutil
import subprocess
import sys
import tempfile
import unicodedata
import unittest

HERE = pathlib.Path(__file__).resolve().parent
VED, VERSION = sys.argv[1:3]
OK, FAILED, USAGE = 0, 1, 2
MAGIC = {"svg": b"<", "png": b"\x89PNG\r\n\x1a\n", "pdf": b"%PDF-"}


def ved(*arguments, stdin=b"", folder=None):
    """Status, standard output and standard error as bytes."""
    if isinstance(stdin, str):
        stdin = stdin.encode()
    done = subprocess.run([VED, *arguments], input=stdin, capture_output=True, cwd=folder, timeout=120, check=False)
    return done.returncode, done.stdout, done.stderr


def cases(name):
    """Both sides of the lines of a case file."""
    lines = (HERE / name).read_text(encoding="utf-8").splitlines()
    return [line.split(" ⇒ ") for line in lines if line and not line.startswith("#")]


def width(text):
    return sum(0 if unicodedata.combining(c) else 2 if unicodedata.east_asian_width(c) in "WF" else 1 for c in text)


class ConvertTest(unittest.TestCase):
    def test_cases(self):
        for given, expected in cases("convert.cases"):
            head, _, text = given.partition(": ")
            source, target = head.split()
            with self.subTest(given):
                status, out, err = ved("convert", "--from", source, "--to", target, "--", text)
                self.assertEqual((out.decode(), err.decode(), status), (expected + "\n", "", OK))

    def test_what_the_readme_shows(self):
        text = (HERE.parent.parent / "README.md").read_text(encoding="utf-8")
        shown = re.findall(r"^\$ ved (.*)\n((?:(?!\$|```).*\n)+)", text, re.MULTILINE)
        self.assertGreater(len(shown), 5)
        for command, expected in shown:
            with self.subTest(command):
                self.assertEqual(ved(*shlex.split(command)), (OK, expected.encode(), b""))

    def test_faults_are_told_in_words_and_marked(self):
        for command, expected in cases("faults.cases"):
            cause, _, text = expected.partition(": ")
            before, _, rest = text.partition("⟦")
            fault, marked, after = rest.partition("⟧")
            lines = ["ved: " + cause, "  " + before + fault + after if text else ""]
            if marked:
                lines.append("  " + " " * width(before) + "^" + "~" * max(0, width(fault) - 1))
            with self.subTest(command):
                status, out, err = ved("convert", *shlex.split(command))
                self.assertEqual((err.decode().splitlines(), out, status), (list(filter(None, lines)), b"\n", FAILED))

    def test_every_notation_reads_what_it_wrote(self):
        texts = [line.partition(": ")[2] for line in gallery_lines()]
        _, prefixes, _ = ved("convert", stdin="\n".join(texts))
        for notation in "plain", "latex", "mathjson", "infix", "prefix", "tree":
            with self.subTest(notation):
                status, there, _ = ved("convert", "--from", "prefix", "--to", notation, stdin=prefixes)
                self.assertEqual(status, OK)
                status, back, _ = ved("convert", "--from", notation, "--to", "prefix", stdin=there)
                self.assertEqual((status, back.decode().splitlines()), (OK, prefixes.decode().splitlines()))

    def test_a_line_for_a_line_whatever_is_in_it(self):
        stdin = b"\xef\xbb\xbfa+b\r\n\na+\n \t\n\xff\nx\x00y\nc"
        status, out, err = ved("convert", "--to", "plain", stdin=stdin)
        self.assertEqual((status, out), (FAILED, b"a+b\n\n\n\n\n\nc\n"))
        self.assertEqual(
            [line for line in err.decode().splitlines() if line.startswith("ved:")],
            [
                "ved: standard input:3:3: an operand is missing",
                "ved: standard input:5:1: byte 1 is not UTF-8",
                "ved: standard input:6:2: this character has no meaning here",
            ],
        )
        self.assertNotIn(b"\x00", err)

    def test_wrong_bytes_are_refused_where_they_are(self):
        for wrong, byte in ((b"a+\xc3(", 3), (b"\xc3\xa9+\xed\xa0\x80", 4), (b"x\xf0\x9f\x98", 2), (b"a\xc0\x80", 2)):
            with self.subTest(wrong):
                status, out, err = ved("convert", wrong)
                self.assertEqual((status, out), (FAILED, b"\n"))
                self.assertIn(f"byte {byte} is not UTF-8", err.decode())

    def test_terminals_are_not_commanded(self):
        _, _, err = ved("convert", stdin="a+\x1b[31m*\u202eb\x9b")
        shown = err.decode()
        self.assertIn("␛", shown)
        self.assertEqual([c for c in shown if c != "\n" and (ord(c) < 32 or c in "\u202e\x9b")], [])

    def test_long_lines_show_what_surrounds_the_fault(self):
        for ahead, behind in ((5000, 5000), (0, 5000), (5000, 0)):
            text = "a+" * ahead + "+)" + "+b" * behind
            _, _, err = ved("convert", text)
            _, shown, marker = err.decode().splitlines()
            self.assertLessEqual(len(shown), 80)
            self.assertIn(shown[marker.index("^")], "+)")
            self.assertEqual("…" in shown[:4], ahead > 0)

    def test_blocks_are_parted_by_blank_lines(self):
        status, out, _ = ved("convert", "--to", "layout", "x", "a+", "x^2")
        first, second, third, rest = re.fullmatch(r"(.*?)\n\n(.*?)\n(.*?)\n\n(.*)", out.decode(), re.DOTALL).groups()
        self.assertEqual((status, second, rest), (FAILED, "", ""))
        size = "width 6 height 10 midHeight 5 depth 0"
        self.assertEqual(
            first.splitlines(),
            [f"root dx 0 dy 0 {size}", f"  line dx 0 dy 0 {size}", f'    text "x" dx 0 dy 0 {size}'],
        )
        self.assertRegex(third, r'(?m)^    power dx \d+ dy 0 .*\n      line .* depth 1\n        text "2" .* depth 1$')
        _, real, _ = ved("convert", "--to", "layout", "--surface", "typeset", "x")
        self.assertRegex(real.decode(), r"^root dx 0 dy 0 width \d+ height \d+ ")
        self.assertNotEqual(real.decode().splitlines()[:-1], first.splitlines())
        _, drawing, _ = ved("convert", "--to", "drawing", "a/b")
        self.assertRegex(drawing.decode(), r'(?s)\ndrawText "a" \d+ \d+\n.*drawHorizontalLine .*\n\n$')

    def test_answers_come_while_the_input_stays_open(self):
        with subprocess.Popen([VED, "convert"], stdin=subprocess.PIPE, stdout=subprocess.PIPE, bufsize=0) as process:
            for text, answer in ((b"a+b\n", b"+(a,b)\n"), (b"x\n", b"x\n")):
                process.stdin.write(text)
                self.assertTrue(select.select([process.stdout], [], [], 60)[0], "no answer")
                self.assertEqual(process.stdout.readline(), answer)
            process.stdin.close()
            self.assertEqual(process.wait(60), OK)


class BatchTest(unittest.TestCase):
    LINES = 100_000

    def test_large_batches_run_in_constant_memory(self):
        lines = [f"x{i}^2/(a+{i})" for i in range(self.LINES)]
        lines[50_000] = "a+"
        with tempfile.TemporaryDirectory() as folder:
            source, target = pathlib.Path(folder, "in"), pathlib.Path(folder, "out")
            source.write_text("\n".join(lines) + "\n", encoding="utf-8")
            with open(target, "wb") as out:
                process = subprocess.Popen([VED, "convert", "-i", source], stdout=out, stderr=subprocess.PIPE)
                err = process.stderr.read()
                process.stderr.close()
                _, status, usage = os.wait4(process.pid, 0)
                process.returncode = os.waitstatus_to_exitcode(status)
            written = target.read_text(encoding="utf-8").splitlines()
        self.assertEqual(process.returncode, FAILED)
        self.assertIn(f"{source}:50001:3: an operand is missing", err.decode())
        self.assertEqual((len(written), written[50_000], written[-1]), (self.LINES, "", "/(^(x99999,2),+(a,99999))"))
        self.assertLess(usage.ru_maxrss, 200_000)

    def test_progress_is_shown_on_terminals_only(self):
        stdin = b"x\n" * 5000
        self.assertEqual(ved("convert", stdin=stdin)[2], b"")
        terminal, end = pty.openpty()
        with subprocess.Popen([VED, "convert"], stdin=subprocess.PIPE, stdout=subprocess.DEVNULL, stderr=end) as process:
            os.close(end)
            process.stdin.write(stdin)
            process.stdin.close()
            shown = read_terminal(terminal)
        self.assertIn("2000 lines, 0 wrong", shown)
        self.assertTrue(shown.endswith("\r\x1b[K"), "the line stays behind")

    def test_endless_lines_are_refused(self):
        limit = 17 << 20
        status, out, err = ved("convert", stdin=b"a" * limit + b"\nx\n")
        self.assertEqual((status, out), (FAILED, b"\nx\n"))
        self.assertIn(b"longer than 16 megabytes", err)
        self.assertLess(len(err), 1000)


class EvalTest(unittest.TestCase):
    def test_a_value_for_a_line_and_what_lines_assign(self):
        lines = "a := 2/3\n1/(a-a)\n\nf(x) := a*x\nf(3)+0.5\nx+\n10^10^10"
        status, out, err = ved("eval", stdin=lines)
        self.assertEqual((status, out), (FAILED, b"2/3\n\n\na*x\n2.5\n\n\n"))
        self.assertEqual(
            [line for line in err.decode().splitlines() if line.startswith("ved:")],
            [
                "ved: standard input:2: this divides by zero",
                "ved: standard input:6:3: an operand is missing",
                "ved: standard input:7: this is too large to compute",
            ],
        )

    def test_operations(self):
        for options, text, expected in (
            (["--numeric", "--digits", "5"], "sqrt(2)", "1.4142"),
            (["--numeric", "--digits", "25", "--solve", "x"], "x^3=x+1", "x = 1.324717957244746025960909"),
            (["--solve", "x", "--to", "prefix"], "x^2=4", "list(=(x,−2),=(x,2))"),
            (["--diff", "x", "--to", "latex"], "x^3", "3x^{2}"),
            (["--integrate", "t"], "3*t^2", "t^3"),
            (["--expand"], "(x+1)^2", "x^2+2*x+1"),
            (["--factor"], "60", "2^2*3*5"),
            (["--degrees"], "sin(30)", "1/2"),
        ):
            with self.subTest(options):
                status, out, err = ved("eval", *options, text)
                self.assertEqual((out.decode(), err, status), (expected + "\n", b"", OK))
        self.assertEqual(ved("eval", "--factor", "--expand", "x")[0], USAGE)
        self.assertEqual(ved("eval", "--solve", "2", "x=1")[0], USAGE)
        missing = subprocess.run(
            [VED, "eval", "--engine", "giac", "1"], env={"ZOLT_GIAC_WORKER": "/nowhere"}, capture_output=True, check=False
        )
        self.assertEqual(missing.returncode, FAILED)
        self.assertIn(b"libgiac-dev", missing.stderr)


class RenderTest(unittest.TestCase):
    def setUp(self):
        holder = tempfile.TemporaryDirectory()
        self.addCleanup(holder.cleanup)
        self.folder = pathlib.Path(holder.name)

    def ved(self, *arguments, **others):
        return ved(*arguments, folder=self.folder, **others)

    def files(self):
        return sorted(path.name for path in self.folder.iterdir())

    def test_formats(self):
        for name, kind in (("a.svg", "svg"), ("b.PNG", "png"), ("c.pdf", "pdf")):
            status, out, err = self.ved("render", "-o", name, "a/b")
            self.assertEqual((status, out.decode(), err), (OK, name + "\n", b""))
            self.assertTrue((self.folder / name).read_bytes().startswith(MAGIC[kind]), name)
        for kind, magic in MAGIC.items():
            status, out, _ = self.ved("render", "-o", "-", "--format", kind, "a/b")
            self.assertEqual((status, out.startswith(magic)), (OK, True), kind)
        self.assertEqual(self.ved("render", "x")[:2], (OK, b"formula.svg\n"))

    def test_pictures_hold_the_expression(self):
        self.ved("render", "-o", "a.svg", "a<b")
        self.assertRegex((self.folder / "a.svg").read_text(encoding="utf-8"), r"<metadata>.*&lt;\(a,b\).*</metadata>")
        self.ved("render", "-o", "a.png", "a<b")
        self.assertIn(b"zolt:expression\0", (self.folder / "a.png").read_bytes())

    def test_options_change_the_picture(self):
        def png_size(*options):
            picture = self.ved("render", "-o", "-", "--format", "png", *options, "a/b")[1]
            return int.from_bytes(picture[16:20], "big"), int.from_bytes(picture[20:24], "big")

        width, height = png_size("--margin", "0")
        double = png_size("--margin", "0", "--scale", "2")
        self.assertTrue(abs(double[0] - 2 * width) <= 1 and abs(double[1] - 2 * height) <= 1)
        self.assertEqual(png_size("--margin", "4")[0], width + 14)
        svg = self.ved("render", "-o", "-", "--foreground", "#f08", "--background", "#00ff0080", "x")[1].decode().lower()
        self.assertIn("#ff0088", svg)
        self.assertIn("#00ff00", svg)
        self.assertNotIn("<text", svg)
        self.assertIn("<text", self.ved("render", "-o", "-", "--svg-text", "named", "x")[1].decode())
        svg = self.ved("render", "-o", "-", "--language", "german", "--verbosity", "full", "A")[1].decode()
        self.assertIn(' lang="de" role="img" aria-label="groß A"', svg)

    def test_sizes_lead_to_the_line_of_text(self):
        for name, unit, depth in (("a.svg", "px", 13.125), ("a.png", "px", 13), ("a.pdf", "pt", 9.844)):
            out = self.ved("render", "-o", name, "--sizes", "x")[1].decode()
            self.assertRegex(out, rf"^{name}\t[\d.]+{unit}\t[\d.]+{unit}\t{depth}{unit}\n$")
        self.assertIn('style="vertical-align:-13.125px"', (self.folder / "a.svg").read_text(encoding="utf-8"))
        for text, height, depth in (("x", 1.083, 0.292), ("x/2", 2.417, 0.958)):
            out = self.ved("render", "--svg-unit", "em", "--margin", "0", "--sizes", text)[1].decode()
            self.assertRegex(out, rf"^formula.svg\t[\d.]+em\t{height}em\t{depth}em\n$")
            self.assertIn(f'style="vertical-align:-{depth}em"', (self.folder / "formula.svg").read_text(encoding="utf-8"))

    def test_streams(self):
        lines = [f"x^{i}" for i in range(200)]
        lines[3:6] = ["", "b+", "\t"]
        stdin, results = "\n".join(lines), []
        for jobs in "1", "3":
            status, out, err = self.ved("render", "--stream", "-j", jobs, "-", stdin=stdin)
            self.assertEqual(status, FAILED)
            results.append((out, err))
        self.assertEqual(results[0], results[1])
        self.assertIn(b"standard input:5:3: an operand is missing\n", err)
        for number, line in enumerate(lines, 1):
            head, _, out = out.partition(b"\n")
            words = head.decode().split("\t")
            picture, out = out[: int(words[1])], out[int(words[1]) :]
            self.assertEqual((words[0], bool(picture), out[:1]), (str(number), line.strip() not in ("", "b+"), b"\n"))
            self.assertEqual(len(words), 5 if picture else 2)
            self.assertTrue(not picture or picture.endswith(b"</svg>\n"))
            out = out[1:]
        with subprocess.Popen([VED, "render", "--stream", "-j2"], stdin=subprocess.PIPE, stdout=subprocess.PIPE, bufsize=0) as process:
            process.stdin.write(b"x\n")
            self.assertTrue(select.select([process.stdout], [], [], 60)[0], "no answer")
            process.stdin.close()
            process.stdout.read()

    def test_several_expressions_get_numbers(self):
        status, out, err = self.ved("render", "-j4", "-o", "n.svg", *"abcdefghijk", "b+", "+")
        self.assertEqual((status, self.files()), (FAILED, [f"n-{i:02}.svg" for i in range(1, 12)]))
        self.assertEqual(out.decode().split(), self.files())
        self.assertRegex(err.decode(), r"(?s)^[^\n]*missing\n  b\+\n.*missing\n  \+\n")
        for file in self.folder.iterdir():
            file.unlink()
        status, out, err = self.ved("render", "-o", "p.q.svg", "-", stdin="a\n\nb+\nc\n")
        self.assertEqual((status, out), (FAILED, b"p.q-1.svg\np.q-4.svg\n"))
        self.assertIn(b"standard input:3:3: an operand is missing\n  b+\n    ^\n", err)
        self.assertEqual(self.files(), ["p.q-1.svg", "p.q-4.svg"])
        status, out, err = self.ved("render", "-o", "-", "a", "b")
        self.assertEqual((status, out), (USAGE, b""))
        self.assertIn(b"a single picture", err)
        self.assertEqual(self.ved("render", "-o", "-", stdin="a\nb")[:2], (USAGE, b""))

    def test_incomplete_formulas_can_be_drawn(self):
        status, _, err = self.ved("render", "--from", "tree", '["", /<[""] ; ["x"]>, ""]')
        self.assertEqual((status, err), (OK, b""))

    def test_unwritable_files(self):
        (self.folder / "old.svg").write_text("old", encoding="utf-8")
        status, _, err = self.ved("render", "-o", "old.svg", "--scale", "100", "+".join(["a"] * 999))
        self.assertEqual((status, (self.folder / "old.svg").read_text(encoding="utf-8")), (FAILED, "old"))
        self.assertIn(b"larger than", err)
        for path in "/dev/full", "missing/a.svg", ".", "/proc/a.svg":
            with self.subTest(path):
                status, out, err = self.ved("render", "-o", path, "--format", "svg", "x")
                self.assertEqual((status, out), (FAILED, b""))
                self.assertRegex(err.decode(), rf"^ved: cannot write .*{re.escape(path)}.*: \w.*\n$")
        line = f"ulimit -f 1; {shlex.quote(VED)} render -o old.svg {'x' * 99}"
        done = subprocess.run(["bash", "-c", line], cwd=self.folder, capture_output=True, timeout=60, check=False)
        self.assertEqual((done.returncode, done.stderr), (FAILED, b"ved: cannot write old.svg: File too large\n"))
        for arguments in ("convert", "x"), ("render", "-o", "-", "x"), ("completion", "bash"), ("--help",):
            with open("/dev/full", "wb") as full:
                done = subprocess.run([VED, *arguments], stdout=full, stderr=subprocess.PIPE, timeout=60, check=False)
            self.assertEqual(done.returncode, FAILED, arguments)
            self.assertIn(b"cannot write to standard output: No space left", done.stderr)
        self.assertEqual(self.files(), ["old.svg"])

    def test_nothing_controls_the_terminal(self):
        evil = "\x1b]0;P\x07\r\n\x7f\u009b2J\u202e\u2066"
        for words in """convert -i @;convert --@;convert --to @ x;convert -@ x;@;render --foreground @ x;gallery ./x/@
            render -o @ x;render -o a.svg/@.svg x;render --scale @ x;replay @;completion @;gallery a @""".split("\n"):
            for line in words.split(";"):
                (self.folder / "x").touch()
                status, _, err = self.ved(*(word.replace("@", evil) for word in line.split()))
                self.assertNotEqual(status, OK, line)
                self.assertIn("␛]0;P␇␍␊␡�2J��", err.decode(), line)
                self.assertEqual([c for c in err.decode() if c != "\n" and unicodedata.category(c) in ("Cc", "Cf")], [])
        for name, is_terminal in (evil[:5] + ".svg", False), (evil[:5] + ".svg", True):
            reader, end = pty.openpty() if is_terminal else os.pipe()
            subprocess.run([VED, "render", "-o", name, "x"], cwd=self.folder, stdout=end, timeout=60, check=True)
            os.close(end)
            self.assertEqual(read_terminal(reader).strip("\r\n"), "␛]0;P.svg" if is_terminal else name)

    def test_missing_fonts_are_an_error(self):
        # A folder that is searched first, with a file that is no font.
        (self.folder / "KaTeX_Main-Regular.ttf").write_bytes(b"no font")
        done = subprocess.run([VED, "render", "x"], cwd=self.folder, env={"ZOLT_FONT_DIR": str(self.folder)},
                              capture_output=True, timeout=60, check=False)  # fmt: skip
        self.assertEqual((done.returncode, done.stdout), (FAILED, b""))
        self.assertIn(b"KaTeX_Main", done.stderr)


class GalleryTest(unittest.TestCase):
    def test_gallery(self):
        with tempfile.TemporaryDirectory() as folder:
            target = pathlib.Path(folder, "new", "gallery")
            status, out, err = ved("gallery", str(target))
            self.assertEqual((status, err), (OK, b""))
            names = [line.partition(": ")[0] for line in gallery_lines()]
            self.assertEqual(len(names), len(set(names)), "two pictures of one name")
            self.assertIn(str(len(names)), out.decode())
            self.assertEqual(
                sorted(path.name for path in target.iterdir()),
                sorted([name + ".svg" for name in names] + ["gallery.png", "index.html"]),
            )
            page = (target / "index.html").read_text(encoding="utf-8")
            self.assertEqual(re.findall(r'img src="([^"]+)\.svg"', page), names)
            self.assertEqual(page.count("<main>"), page.count("</main>"))
            self.assertTrue((target / "gallery.png").read_bytes().startswith(MAGIC["png"]))
        for path in "/proc/gallery", VED, os.path.join(VED, "below"):
            status, _, err = ved("gallery", path)
            self.assertEqual((status, err.count(b"\n")), (FAILED, 1), path)


    def test_gallery_shows_every_operator(self):
        prefixes = ved("convert", stdin="\n".join(line.partition(": ")[2] for line in gallery_lines()))[1].decode()
        calls = re.findall(r"([^(),\s]+)\(", "\n".join(case[1] for case in cases("../formula/to_prefix.cases")))
        self.assertEqual(set(calls) - {"f", "g"} - set(re.split(r"[(),\n]", prefixes)), set())


class ReplayTest(unittest.TestCase):
    SCRIPT = '# a fraction\ntype "x/"\nkey left\nundo\nkey left key left\n'

    def test_end_and_trace(self):
        status, out, err = ved("replay", "-", stdin=self.SCRIPT)
        self.assertEqual((status, out.decode(), err), (OK, '["‸x"]\n', b""))
        status, out, err = ved("replay", "--trace", "-", stdin=self.SCRIPT)
        self.assertEqual((status, err), (OK, b""))
        self.assertEqual(
            out.decode().splitlines(),
            [
                'type "x/" → ["", /<["x"] ; ["‸"]>, ""]',
                'key left → ["", /<["x‸"] ; [""]>, ""]',
                'undo → ["x‸"]',
                'key left → ["‸x"]',
                'key left → ["‸x"] refused',
            ],
        )

    def test_signs_of_the_extended_catalogue_are_typed(self):
        for typed, tree in (
            ("x^n in(0,1)", '["x", P["n"], "∈", interval 00<["0"] ; ["1"]>, "‸"]'),
            ("RR^2 subseteq CC->in union ZZ ", '["ℝ", P["2"], "⊆ℂ→in∪ℤ ‸"]'),
            ("a=>b<=>c-5%^2!", '["a⇒b⇔c−5%", P["2!‸"], ""]'),
            ("x^2⊥3%/∂x", '["x", P["2"], "⊥", /<["3%"] ; ["∂x‸"]>, ""]'),
            ("∂f/∂x", '["", /<["∂f"] ; ["∂x‸"]>, ""]'),
            ("inx+NNx", '["inx+NNx‸"]'),
        ):
            with self.subTest(typed):
                script = 'type "' + typed + '"'
                self.assertEqual(ved("replay", "-", stdin=script)[1].decode(), tree + "\n")

    def test_pictures_show_the_end(self):
        with tempfile.TemporaryDirectory() as folder:
            pathlib.Path(folder, "s").write_text('type "1/2"', encoding="utf-8")
            self.assertEqual(ved("replay", "-o", "p.png", "s", folder=folder), (OK, b"p.png\n", b""))
            self.assertEqual(pathlib.Path(folder, "p.png").read_bytes()[:8], MAGIC["png"])

    def test_places_of_the_pointer(self):
        script = 'type "abc" pen down 7 5 pen up'
        self.assertEqual(ved("replay", "--surface", "recording", "-", stdin=script)[1].decode(), '["a‸bc"]\n')
        self.assertEqual(ved("replay", "-", stdin=script)[0], OK)

    def test_wrong_scripts(self):
        status, out, err = ved("replay", "-", stdin="undo\n  char ab redo\n")
        self.assertEqual((status, out), (FAILED, b""))
        self.assertEqual(
            err.decode().splitlines(),
            ["ved: standard input:2:3: this is no step of a script", "    char ab redo", "    ^~~~~~~~~~~~"],
        )
        _, _, err = ved("replay", "-", stdin='type "a\\"b" type "x\n')
        self.assertEqual(
            err.decode().splitlines(),
            ["ved: standard input:1:18: the quote after this text is missing", '  type "a\\"b" type "x', " " * 19 + "^~"],
        )
        self.assertEqual(ved("replay", "missing")[:2], (FAILED, b""))
        self.assertEqual(ved("replay", "-", stdin=b"char \xff")[:2], (FAILED, b""))


class CommandLineTest(unittest.TestCase):
    def test_version_and_help(self):
        for option in "--version", "-V":
            self.assertEqual(ved(option), (OK, f"ved {VERSION}\n".encode(), b""))
        self.assertEqual(ved("help"), ved("--help"))
        status, out, _ = ved("--help")
        self.assertEqual(status, OK)
        for command in "render", "convert", "gallery", "replay", "completion":
            self.assertIn(command, out.decode())
            status, own, err = ved(command, "--help")
            self.assertEqual((status, err), (OK, b""))
            self.assertEqual(ved("help", command)[1], own)
            self.assertIn(f"ved {command} ", own.decode().partition("Example")[2])

    def test_examples_of_the_help_work(self):
        with tempfile.TemporaryDirectory() as folder:
            pathlib.Path(folder, "formulas.txt").write_text("x\ny\n", encoding="utf-8")
            pathlib.Path(folder, "f").write_text("+(a,b)\n", encoding="utf-8")
            for command in "--help", "render --help", "convert --help":
                examples = re.findall(r"^  (ved \S.*?)(?:   .*|\| .*)?$", ved(*command.split())[1].decode(), re.MULTILINE)
                self.assertGreater(len(examples), 3)
                for example in examples:
                    with self.subTest(example):
                        line = example.replace("ved", shlex.quote(VED), 1)
                        done = subprocess.run(["bash", "-c", line], cwd=folder, capture_output=True, timeout=60, check=False)
                        self.assertEqual((done.returncode, done.stderr), (OK, b""))

    def test_wrong_usage(self):
        wrong = """
            draw;convert --from french x;convert --to;convert --frm plain x;convert -i f x;render -o a.gif x;render -o a x
            convert --surface typeset --to drawing x;render --scale 0 x;render --scale nan x;render --foreground #12 x
            render --foreground #1234zz x;gallery;gallery a b;replay;replay -o a.gif -;completion;completion ksh
            -v;help draw;help --man render;render -j 0 x;render --stream -o a.svg x;render --stream --sizes x
            render -o - a b;render -o - --sizes x"""
        for line in ["", *re.split("[;\n]", wrong.strip())]:
            with self.subTest(line):
                status, out, err = ved(*line.split())
                self.assertEqual((status, out), (USAGE, b""))
                self.assertNotEqual(err, b"")

    def test_wrong_usage_is_explained(self):
        self.assertEqual(ved("draw", "x")[2], b'ved: there is no command "draw"\nTry: ved --help\n')
        self.assertEqual(ved("-v")[2], b'ved: there is no option "-v"\nTry: ved --help\n')
        for line, meant in ("rednr", "render"), ("convert --form=plain x", "--from"), ("convert --to latout x", "layout"):
            self.assertIn(f'; did you mean "{meant}"?\n', ved(*line.split())[2].decode())
        for line, fault in ("render -j 2.5 x", "--jobs: \"2.5\" is no count"), ("render --scale big x", "--scale: \"big\" is no number"):
            self.assertEqual(ved(*line.split())[2].decode(), f"ved: {fault}\nTry: ved render --help\n")
        message = ved("convert", "-x")[2].decode()
        self.assertIn("-x", message.splitlines()[0])
        self.assertIn('needs "--" before it', message)
        self.assertTrue(message.endswith("Try: ved convert --help\n"))

    def test_inputs(self):
        self.assertEqual(ved("convert", "[a"), ved("convert", "-i", "-", stdin="[a")[:1] + ved("convert", "[a")[1:])
        self.assertEqual(ved("convert", "-", stdin="x")[:2], (OK, b"x\n"))
        self.assertEqual(ved("convert", stdin="")[:2], (OK, b""))
        self.assertEqual(ved("convert", "-2*x")[:2], (OK, "*(−2,x)\n".encode()))
        self.assertEqual(ved("convert", "--", "-x")[:2], (OK, b"_neg(x)\n"))
        for argument in "", " ":
            status, out, err = ved("convert", argument)
            self.assertEqual((status, out), (FAILED, b"\n"))
            self.assertIn(b"the formula is empty", err)
        for path in "missing", "/":
            status, out, err = ved("convert", "-i", path)
            self.assertEqual((status, out), (FAILED, b""))
            self.assertRegex(err.decode(), rf"^ved: cannot read {path}: \w.*\n$")

    def test_manual_page(self):
        status, page, _ = ved("help", "--man")
        self.assertEqual(status, OK)
        for part in b'.TH VED 1 "" "ved ', b".SS render\n", b"\n\\fB\\-\\-svg\\-text\\fR \\fIoutlines|named|embedded\\fR\n", b"(x^2+1)/2'":
            self.assertIn(part, page)
        self.assertNotRegex(page, rb"(?m)^['.](?!(TH|SH|SS|TP|PP|nf|fi|br|B|BR)\b)")
        if shutil.which("mandoc"):
            done = subprocess.run(["mandoc", "-T", "lint", "-W", "error"], input=page, capture_output=True, timeout=60, check=False)
            self.assertEqual((done.stdout, done.returncode), (b"", 0))

    def test_completion_by_other_shells(self):
        if shutil.which("fish"):
            program = ved("completion", "fish")[1].decode() + 'complete -C "ved re"; complete -C "ved convert x --to l"'
            done = subprocess.run(["fish", "-c", program], capture_output=True, timeout=60, check=False)
            self.assertEqual([line.split("\t")[0] for line in done.stdout.decode().splitlines()], ["render", "replay", "latex", "layout"])
        if shutil.which("zsh"):
            with tempfile.TemporaryDirectory() as folder:
                pathlib.Path(folder, "_ved").write_bytes(ved("completion", "zsh")[1])
                program = f"""zmodload zsh/zpty; zpty ved zsh -f
                    zpty -w ved $'PS1=; fpath=({folder} $fpath); autoload -U compinit; compinit -u -D; bindkey "^I" complete-word; echo re""ady'
                    zpty -r ved out '*ready*'; zpty -w -n ved $'ved convert x --to la\\t'; zpty -r ved out '*layout*'; print -r -- $out"""
                done = subprocess.run(["zsh", "-fc", program], capture_output=True, timeout=60, check=False)
                self.assertIn(b"layout", done.stdout)

    def test_completion(self):
        status, script, _ = ved("completion", "bash")
        self.assertEqual(status, OK)

        def complete(*words):
            program = script.decode() + (
                f'COMP_WORDS=({shlex.join(words)}); COMP_CWORD={len(words) - 1}; _ved; printf "%s\\n" "${{COMPREPLY[@]}}"'
            )
            done = subprocess.run(["bash", "-uc", program], capture_output=True, cwd=HERE, timeout=60, check=True)
            return done.stdout.decode().split()

        self.assertEqual(complete("ved", "re"), ["render", "replay"])
        self.assertEqual(complete("ved", "convert", "x", "--to", "l"), ["latex", "layout"])
        self.assertEqual(complete("ved", "render", "-o", "cli_"), ["cli_test.py"])
        self.assertEqual(complete("ved", "completion", ""), ["-h", "--help", "bash", "fish", "zsh"])
        status, script, _ = ved("completion", "zsh")
        self.assertEqual(status, OK)
        self.assertTrue(script.startswith(b"#compdef ved\n"))
        for word in b"--svg-text", b"(plain latex mathml content-mathml mathjson infix prefix tree)", b"_files -/":
            self.assertIn(word, script)


def gallery_lines():
    text = (HERE.parents[1] / "hosts/cli/gallery.txt").read_text(encoding="utf-8")
    return [line for line in text.splitlines() if line and line[0] not in "#["]


def read_terminal(terminal):
    shown = b""
    while True:
        try:
            chunk = os.read(terminal, 4096)
        except OSError:
            break
        if not chunk:
            break
        shown += chunk
    os.close(terminal)
    return shown.decode()


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1] + sys.argv[3:])
