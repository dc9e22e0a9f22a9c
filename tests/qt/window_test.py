#!/usr/bin/env python3
"""Runs ved-desktop in a real window on a display of its own: with real keys, and with everything that can go wrong
around it.

usage: window_test.py <ved-desktop> <folder to work in>; exits with 77 (skipped) without Xvfb or xdotool.
"""

import os
import pathlib
import re
import shutil
import signal
import subprocess
import sys
import time

PATIENCE = 30  # seconds for anything to happen
OFFER = "Recover Unsaved Sheets"


def wait_for(condition, what):
    deadline = time.monotonic() + PATIENCE
    while time.monotonic() < deadline:
        if result := condition():
            return result
        time.sleep(0.05)
    raise SystemExit(f"waited in vain for {what}")


def expect(condition, what):
    if not condition:
        raise SystemExit(f"not so: {what}")


class Stage:
    """A folder, a virtual display and the program on it."""

    def __init__(self, program, folder):
        shutil.rmtree(folder, ignore_errors=True)
        folder.mkdir(parents=True)
        self.program, self.folder = program, folder
        self.sheet = folder / "sheet.zved"
        self.env = dict(os.environ, HOME=str(folder), LC_ALL="C.UTF-8")
        for name in ("config", "data", "runtime"):
            (folder / name).mkdir(mode=0o700)
        self.env.update(XDG_CONFIG_HOME=f"{folder}/config", XDG_DATA_HOME=f"{folder}/data")
        self.env.update(XDG_RUNTIME_DIR=f"{folder}/runtime")
        self.env.pop("QT_QPA_PLATFORM", None)
        self.server = self.desktop = None
        self.start_display()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        for process in (self.desktop, self.server):
            if process and process.poll() is None:
                process.kill()
                process.wait()

    def start_display(self):
        read_end, write_end = os.pipe()
        screen = ["-screen", "0", "1280x900x24", "-nolisten", "tcp", "-noreset"]
        self.server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(write_end), *screen], pass_fds=[write_end], stderr=subprocess.DEVNULL
        )
        os.close(write_end)
        with os.fdopen(read_end) as answer:
            self.env["DISPLAY"] = f":{answer.readline().strip()}"

    def start(self, *arguments, **more_env):
        self.desktop = subprocess.Popen(
            [self.program, "--appearance", "light", *map(str, arguments)],
            env=dict(self.env, **more_env),
            stderr=open(self.folder / "stderr", "wb"),
        )

    def xdotool(self, *arguments):
        return subprocess.run(["xdotool", *arguments], env=self.env, capture_output=True, text=True, check=False).stdout

    def enter(self, name):
        """Gives the keyboard to the window of that name."""
        window = wait_for(lambda: self.xdotool("search", "--onlyvisible", "--name", name).split(), f"the window {name}")
        self.xdotool("windowfocus", "--sync", window[0])

    def type(self, text):
        self.xdotool("type", "--delay", "20", text)

    def press(self, *keys):
        self.xdotool("key", *keys)

    def end(self, status=0):
        ended = self.desktop.wait(PATIENCE)
        expect(ended == status, f"the program ends with {status}, not with {ended}")

    def write(self, *lines):
        self.sheet.write_text("\n".join(["zolt-sheet 1", *lines, f"end {len(lines)}", ""]), encoding="utf-8")

    def saved(self):
        return self.sheet.read_text(encoding="utf-8")

    def recovery(self):
        """What the recovery files hold."""
        return [path.read_text(encoding="utf-8") for path in self.folder.glob("data/**/*.recovery")]


def test_typing_and_saving(stage):
    stage.write("formula")
    stage.start(stage.sheet)
    stage.enter("sheet.zved")
    stage.type("y=(a+b)/2")
    stage.press("Return")
    stage.type("sqrt(x")
    stage.press("ctrl+s")
    wait_for(lambda: "end 2" in stage.saved(), "the saved sheet")
    stage.press("ctrl+q")
    stage.end()
    expect(stage.saved() == "zolt-sheet 1\nformula =(y,/(+(a,b),2))\nformula sqrt(x)\nend 2\n", "all is saved")
    expect(not stage.recovery(), "nothing is left to be recovered")


def recover(stage):
    """Takes the offer of the next start; the sheet is saved under its name."""
    stage.start()
    stage.enter(OFFER)
    stage.press("Return")
    stage.enter("sheet.zved")
    stage.press("ctrl+s")
    wait_for(lambda: "sqrt(" in stage.saved(), "the recovered sheet")
    stage.press("ctrl+q")
    stage.end()
    expect(not stage.recovery(), "what was recovered and saved is offered no more")


def type_unsaved(stage):
    stage.write("formula a")
    stage.start(stage.sheet)
    stage.enter("sheet.zved")
    stage.type("+sqrt(q")
    # Keys arrive in order: with the help, all have arrived.
    stage.press("F1")
    wait_for(lambda: stage.xdotool("search", "--onlyvisible", "--name", "Keys and Typing").split(), "the help")


def test_display_goes_away(stage):
    type_unsaved(stage)
    stage.server.kill()
    stage.desktop.wait(PATIENCE)
    expect(len(stage.recovery()) == 1 and "sqrt<" in stage.recovery()[0], "what was typed last is kept")
    expect("sqrt" not in stage.saved(), "nobody has saved")
    stage.start_display()
    recover(stage)


def test_signals_keep_the_sheet(stage):
    for number in (signal.SIGTERM, signal.SIGKILL):
        type_unsaved(stage)
        if number == signal.SIGKILL:
            wait_for(stage.recovery, "the recovery file, shortly after the last change")
        stage.desktop.send_signal(number)
        stage.end(-number if number == signal.SIGKILL else 128 + number)
        recover(stage)


def test_signal_while_opening(stage):
    stage.write(*["formula " + "+(" * 9999 + "x" + ",y)" * 9999] * 300)
    stage.start(stage.sheet)
    status = pathlib.Path(f"/proc/{stage.desktop.pid}/status")
    caught = lambda: int(re.findall(r"SigCgt:\s*(\w+)", status.read_text())[0], 16)
    wait_for(lambda: caught() >> signal.SIGTERM - 1 & 1, "the handler of the signal")
    # The dialog about the progress takes the event, before there is an event loop that could end.
    stage.desktop.send_signal(signal.SIGTERM)
    stage.end(128 + signal.SIGTERM)


def test_damaged_font(stage):
    fonts = stage.folder / "fonts"
    fonts.mkdir()
    (fonts / "KaTeX_Main-Regular.ttf").write_bytes(b"\0\1\0\0" + b"garbage" * 100)
    stage.write("formula")
    stage.start(stage.sheet, ZOLT_FONT_DIR=str(fonts))
    stage.enter("sheet.zved")
    stage.type("1/2")
    stage.press("ctrl+s")
    wait_for(lambda: "/(1,2)" in stage.saved(), "the saved sheet")
    stage.press("ctrl+q")
    stage.end()
    told = (stage.folder / "stderr").read_text(encoding="utf-8")
    expect(len(re.findall("another font", told)) == 1, f"the fonts are told about once: {told}")


def main(program, folder, *chosen):
    if not shutil.which("Xvfb") or not shutil.which("xdotool"):
        print("Xvfb or xdotool is missing")
        return 77
    for name, test in list(globals().items()):
        if name.startswith("test_") and (not chosen or name in chosen):
            print(name, flush=True)
            with Stage(program, pathlib.Path(folder) / name) as stage:
                test(stage)
    return 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
